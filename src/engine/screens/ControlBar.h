// The bar of the screen's main controls: Toolbar1 with its modes, start and stop, and the buttons
// for the next element, a request, a voice track and the overlay.
#pragma once

#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "ui/Translation.h"

class QAbstractButton;
class QHBoxLayout;
class QPushButton;
class QToolButton;

namespace zemo {

enum class Toolbar;
struct MainScreen;
struct Station;

struct ControlBarOrders {
  std::function<void(Toolbar)> toolbar;
  std::function<void()> next, request, overlay, info;
  std::function<void()> voiceTrack;  // none: the button stays off
};

class ControlBar : public QWidget {
 public:
  ControlBar(Station& station, ControlBarOrders orders, Translation texts, QWidget* parent);
  void SetTexts();
  void Arrange(double unit);
  void Refresh(const MainScreen& screen);
  // A row is selected in the editor, behind which a voice track can stand.
  void ShowVoiceTrack(bool visible);
  // Whether an element is chosen that can play over the air, and what the button says of it.
  void ShowOverlay(bool playable, const QString& tip);

 private:
  void ShowCut(bool cuts);
  void GiveKey(QAbstractButton* button, const char* key);  // null: none
  QToolButton* AddToolbarButton(QHBoxLayout* bar, Toolbar button, const char* key);
  QPushButton* AddButton(QHBoxLayout* bar, const char* name, const char* key,
                         std::function<void()> order);

  Station& station_;
  ControlBarOrders orders_;
  std::array<QToolButton*, 7> toolbar_{};  // by the button's number
  const Translation texts_;
  QPushButton *CmdStop, *CmdRequette, *BntVoiceTrack, *BtnSurImpression, *Info;
};

}  // namespace zemo
