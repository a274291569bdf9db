// The controls of the voice track editor below its picture: the track, its place, the join, and
// what the machine has for them.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "ui/FieldPage.h"
#include "voicetrack/VoiceTrackScreen.h"

class QProgressBar;

namespace zemo {

class LevelMeter;

struct VoiceTrackOrders {
  std::function<void(const std::function<void()>&)> run;  // answers at once
  std::function<void(std::function<void()>)> work;        // may ask, yield or hold the tick
  std::function<void()> chooseFile, chooseEditor;
};

class VoiceTrackPage : public FieldPage {
 public:
  // All outlive the page.
  VoiceTrackPage(Station& station, VoiceTrackEditor& editor, const VoiceTrackOrders& orders,
                 const Translation& texts, QWidget* parent);
  void Arrange(double unit) override;
  void ShowLevels(int64_t nowMs);

 private:
  using Routine = void (*)(Station&, VoiceTrackEditor&);
  QPushButton* Order(const char* name, Routine routine, const char* keys, const bool* enabled);
  QPushButton* Asking(const char* name, const std::function<void()>& ask, const bool* enabled);
  void GiveKeys(QWidget& control, const char* name, const char* keys, std::function<void()> order);
  QWidget* Path(const char* name, const std::string& path);
  QCheckBox* Cut();
  QCheckBox* Test();
  QCheckBox* Latency();
  QWidget* ExitPoint();
  QWidget* Spinner(const char* name, int32_t& number, std::pair<int, int> range,
                   const char* suffix);
  using Devices = std::vector<SoundDeviceList::Device>;
  QWidget* DeviceList(const char* name, const int32_t& number, const Devices& devices,
                      void (*change)(Station&, VoiceTrackEditor&, int32_t));
  QWidget* Meters(const char* left, const char* right);
  QProgressBar* Gauge();
  QWidget* Low(QWidget* control);
  QLabel* Value(const char* name, std::function<std::string()> text, const char* widest);

  void TrackRow();
  void JoinRow();
  void PlaceRow();
  void DeviceRow();
  void ToolRow();

  Station& station_;
  VoiceTrackEditor& editor_;
  const VoiceTrackOrders& orders_;
  std::vector<std::pair<QLabel*, QString>> values_;  // with the widest text of each
  std::vector<std::pair<LevelMeter*, const float*>> meters_;
};

}  // namespace zemo
