// The main on-air screen: one window with its controls under their names. It shows the station's
// state, collects what the operator does and calls the engine's routines; it decides nothing.
#pragma once

#include <QPointer>
#include <QTimer>
#include <memory>
#include <vector>

#include "engine/HealthLine.h"
#include "engine/screens/ScreenSources.h"
#include "ui/BaseFollower.h"
#include "ui/Window.h"

class QLabel;

namespace zemo {

class BottomStrip;
class ControlBar;
class DayGridFrame;
class ForecastWindow;
class LiveFrame;
class OnAirListModel;
class OnAirListView;
struct OnAirListOrders;
class SaverWindow;
class ScreenMenus;
class SkeletonWindow;
class StatusHeader;
class StoredListFrame;
enum class Toolbar;
struct MainScreen;
struct Station;

// After Form_Load, whose Langue it speaks. Thread: the logic's, which is the screen's. The station
// outlives it.
class OnAirWindow : public Window {
 public:
  OnAirWindow(Station& station, ScreenSources sources);
  ~OnAirWindow() override;

  void Begin();    // draws 25 times a second from now on, once while it is minimized
  void Refresh();  // draws the state, without a look at the base
  void Observe();  // once a second: health, and the pip of the next hour

  void OpenForecast();

 protected:
  void ArrangeParts(double unit) override;
  bool MayLeave() override;
  void Left() override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeParts();
  void MakeMenus();
  void MakeBody();
  OnAirListOrders ListOrders();
  void SyncList();
  void DropBrowseRows(const std::vector<int>& rows, int row);
  void DeleteListRow(int64_t key);
  void LayOut();
  void Translate();
  void ArrangeBody();
  void PressToolbar(Toolbar button);
  void Tell(const QString& text);  // a line at the bottom
  void TakeBack(int64_t orderMeant);
  void RequestWhereNothingPlays();
  void ComposeGrid();
  void OpenCardOrTell(int32_t code, bool hasCard);
  void AskPassword();
  void ShowGridForInsertion();
  void PlayOverlay();
  void AdaptOverlay();  // the button to ListRech's chosen row
  void OpenCard(int32_t code);
  void OpenSelector(const std::string& storedPath);
  void OpenVoiceTrack();
  void PrintList();
  void ShowShortcuts();
  void RefreshFrames(const MainScreen& screen);
  bool TakeOver();  // what others stored
  void RefreshSaver();
  void RefreshSkeleton();
  void ShowLater();
  int64_t NowMs() const;
  int DrawMs() const;  // from one drawing to the next

  ScreenSources sources_;
  HealthLine health_;
  OutputFigures output_;
  bool pip_ = false;
  int64_t planShiftMs_ = 0;  // of the planned times on the screen
  int shownFrames_ = -1;

  std::unique_ptr<ScreenMenus> menus_;
  ControlBar* bar_;
  StatusHeader* header_;
  QWidget* left_;
  OnAirListModel* model_;
  OnAirListView* list_;
  StoredListFrame* stored_;
  LiveFrame* live_ = nullptr;
  DayGridFrame* grid_;
  BottomStrip* bottom_;
  QLabel* LblVerrou;  // what the lock bars
  QPointer<ForecastWindow> forecast_;
  QPointer<SkeletonWindow> skeleton_;
  std::unique_ptr<SaverWindow> saver_;
  QTimer draw_, observe_;
  BaseFollower follower_;
};

}  // namespace zemo
