// The window of the campaigns: a record above, its grid of crosses below, and the overview beside
// the grid while a record is looked for. It shows a CampaignEditor and calls its routines.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "traffic/BreakLoads.h"
#include "traffic/CampaignEditor.h"
#include "traffic/screens/CampaignPage.h"
#include "ui/OfficeWindow.h"
#include "ui/Questions.h"
#include "ui/SlicedWork.h"

class QKeySequence;
class QLabel;
class QPushButton;

namespace zemo {

class CampaignGridView;
class CampaignLegend;
class CampaignOverview;

// What the window is given besides the station.
struct CampaignSources {
  OfficeWindow::FileChooser chooseFiles;  // none: no sound file is chosen
  Questions questions;                    // with a dialogue of the system by default
};

// Modeless beside the air. Thread: the logic's. The station outlives it.
class CampaignWindow : public OfficeWindow {
 public:
  CampaignWindow(Station& station, CampaignSources sources);
  void Open();  // nothing while the menus are locked
  bool IsOpen() const override { return editor_.open || Barred(); }
  const CampaignEditor& Editor() const { return editor_; }
  const BreakLoads& Loads() const { return loads_; }

 protected:
  void ArrangeParts(double unit) override;
  void ShowAll() override;
  bool TakeOver() override;
  std::string SideSign() override;
  void Left() override;

 private:
  using Routine = std::function<void(Station&, CampaignEditor&)>;
  using GridRoutine = void (*)(CampaignEditor&);
  void MakeOrders();
  QPushButton* Button(const char* name, std::function<void()> pressed, QWidget* parent);
  // One whose routine waits for a free moment.
  QPushButton* Working(const char* name, Routine routine, const QKeySequence& keys,
                       QWidget* parent);
  QWidget* RecordBar();
  QWidget* GridBar();
  void MakeGrid();
  void MakeOverview();
  void ShowFields();
  void ShowNote();
  void ShowOverview();
  void ShowLoads();

  void RunOnGrid(GridRoutine routine);
  void ChooseFile();
  void PickDay(int mode);
  void Print();

  CampaignSources sources_;
  CampaignEditor editor_;
  CampaignOrders orders_;
  BreakLoads loads_;
  SlicedWork reading_;  // of the loads
  CampaignPage* page_ = nullptr;
  CampaignGridView* GPub = nullptr;
  CampaignOverview* PLPub = nullptr;
  CampaignLegend* legend_ = nullptr;
  QLabel *LblInfoPub = nullptr, *LblTotalMsg = nullptr, *LblTotalJours = nullptr;
  QLabel* note_ = nullptr;
  bool isNew_ = false;  // the record that is shown
  std::vector<std::pair<QPushButton*, const bool*>> offAtTimes_;
};

}  // namespace zemo
