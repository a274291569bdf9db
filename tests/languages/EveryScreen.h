// A station whose own texts all stand between marks, and every screen of the program over it, one
// after the other: what stands outside of marks is the program's word.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "support/Campaigns.h"
#include "support/TestStation.h"

class QFileDialog;

namespace zemo::test {

inline constexpr const char* kStationsMark = "¤";

class EveryScreen {
 public:
  explicit EveryScreen(int langue);

  // A window that is shown, and what it shows at that moment.
  using Visit = std::function<void(const std::string& name, QWidget& window)>;
  // Windows at this size, dialogues at their own.
  void Walk(int width, int height, const Visit& visit);

 private:
  void Fill();
  void FillReport();
  void WalkMainScreen();
  void WalkLiveMode(QWidget& window);
  void WalkLibrary();
  void WalkSelector(QWidget& over);
  void WalkCampaigns();
  void WalkAffidavit();
  void WalkModels();
  void WalkSettings();
  void WalkReport();
  void WalkVoiceTracks();
  void WalkBoxes();
  void WalkQtsDialogues();
  void WalkQtsMenus();
  void Size(QWidget& window) const;
  void Look(const std::string& name, QWidget& window);
  void LookAtPrint();
  void LookAtBox(const std::string& text);
  void LookAtFiles(const std::string& name, QFileDialog& dialogue);
  // The dialogue that `open` waits for, and then its end.
  void LookAtModal(const std::string& name, const std::function<void()>& open);

  static constexpr const char* kBegin = "2026-11-21 12:00:00";
  const int langue_;
  int width_ = 0, height_ = 0;
  Visit visit_;
  TestStation before_;  // whose base has the language when the screens' station starts on it
  TestStation on_{kBegin, before_.stationDir.Path()};
  TempFolder empty_;  // that file dialogues stand in
};

}  // namespace zemo::test
