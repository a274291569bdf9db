// The window of the models: the week's days above, the grid of the day with the varieties and the
// counts of the library beside it, and below what the library can give and how the day would air.
// It shows Station::modelEditor and calls the routines of scheduling/ModelScreen.h and
// ModelEditor.h.
#pragma once

#include <QTimer>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "scheduling/PlannedDay.h"
#include "scheduling/WeekModel.h"
#include "station/ModelEditor.h"
#include "ui/OfficeWindow.h"

class QHBoxLayout;
class QLabel;
class QMenu;
class QPushButton;

namespace zemo {

class BarTable;
class ModelGridView;
class OutlookPanel;
class SpreadsheetWriter;
class SupplyPanel;

// What the window is given besides the station. References are not owned and outlive it; without
// one its button is off.
struct ModelSources {
  SpreadsheetWriter* spreadsheets = nullptr;
  DayForecast* forecast = nullptr;
};

// Modeless beside the air. Thread: the logic's. The station outlives it.
class ModelWindow : public OfficeWindow {
 public:
  ModelWindow(Station& station, ModelSources sources);
  void Open();  // at a free moment; nothing while the menus are locked
  bool IsOpen() const override;
  // Asks about changes that were not saved; false where they keep the window.
  bool LeaveNow() override;

 protected:
  void ArrangeParts(double unit) override;
  void ShowAll() override;
  bool TakeOver() override;
  bool MayLeave() override;
  void Left() override;

 private:
  void MakeDays(QHBoxLayout& bar);
  void MakeOrders(QHBoxLayout& bar);
  QPushButton* Button(const char* name, std::function<void()> pressed);
  void MakeGrids();
  ModelGridView* Grid(const char* name, ModelGrid kind, bool (*click)(Station&, GridPlace));
  QWidget* Beside();

  void OpenPopUp(const QRect& cell);
  void FillMenu(QMenu& menu, const char* name, const std::vector<std::string>& entries,
                const std::function<void(const std::string& entry)>& chosen);
  void Choose(const std::function<void()>& choice);
  void ChooseFile();
  void BeginForecast();
  void FollowForecast();

  void ShowStats();

  // --- what the library gives ---
  int SelectedHour() const;
  // The genre and hour that a cell of the shown grid asks for; an empty genre for none.
  struct Wish {
    std::string genre;
    int hour = 0;
    bool planned = false;  // it gets a share there
  };
  Wish WishOf(GridPlace place) const;
  QString SupplyTip(GridPlace place) const;
  bool RunsDry(GridPlace place) const;

  ModelEditor& Editor() const;
  QString Word(const std::string& name) const { return Texts().Word(name); }

  ModelSources sources_;
  QTimer poll_;          // of a forecast that runs
  ModelEditor planned_;  // what it was asked for
  std::array<QPushButton*, kDaysOfWeek> JourSemaine{};
  QPushButton *MnuCompteur = nullptr, *MnuExport = nullptr;
  QLabel* LblNotSaved = nullptr;
  QMenu *MasterGenre = nullptr, *MasterPourCent = nullptr;
  ModelGridView *Models_ = nullptr, *ModelSquelette = nullptr, *GVariete = nullptr;
  BarTable* Stats = nullptr;
  SupplyPanel* supply_ = nullptr;
  OutlookPanel* outlook_ = nullptr;
};

}  // namespace zemo
