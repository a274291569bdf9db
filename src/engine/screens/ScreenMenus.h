// The menus of the main screen. Entries of screens that the program does not have yet stand there,
// disabled, and say so.
#pragma once

#include <functional>

class QAction;
class QMenuBar;
class QMenu;

namespace zemo {

struct MainScreen;
struct Station;
class Translation;

struct MenuOrders {
  std::function<void()> library, campaigns, models, report, settings;  // empty: to come
  std::function<void()> storedLists, insertBreak, composeGrid, printList, forecast, password, quit;
};

class ScreenMenus {
 public:
  // Fills the bar, which owns the menus.
  ScreenMenus(Station& station, QMenuBar& bar, MenuOrders orders);
  void SetTexts(const Translation& texts);
  void Refresh(const MainScreen& screen);  // marks, and what may be used now

 private:
  QAction* Add(QMenu* menu, const char* name, std::function<void()> order);
  QAction* AddToCome(QMenu* menu, const char* name);
  // The entry of another screen; to come without an order.
  QAction* AddScreen(QMenu* menu, const char* name, const std::function<void()>& order);

  Station& station_;
  MenuOrders orders_;
  QMenu *MnuEdit_, *MnuModels_, *Options_;
  QAction *MnuPlaylist_, *MnuImprime_, *MnuStartStop_, *MnuPCProduction_, *MnuPasseWord_;
  QAction* MnuModelCaption_;
  QAction* MnuParametrage_ = nullptr;
};

}  // namespace zemo
