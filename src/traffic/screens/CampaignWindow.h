// The window of the campaigns: a record above, its grid of crosses below, and the overview beside
// the grid while a record is looked for. It shows a CampaignEditor and calls its routines.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "traffic/CampaignEditor.h"
#include "traffic/screens/CampaignPage.h"
#include "ui/OfficeWindow.h"
#include "ui/Questions.h"

class QLabel;
class QPushButton;

namespace zemo {

class CampaignGridView;
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

 protected:
  void ArrangeParts(double unit) override;
  void ShowAll() override;
  void Left() override;

 private:
  using Routine = std::function<void(Station&, CampaignEditor&)>;
  void MakeOrders();
  QPushButton* Button(const char* name, std::function<void()> pressed, QWidget* parent);
  // One whose routine waits for a free moment.
  QPushButton* Working(const char* name, Routine routine, QWidget* parent);
  QWidget* RecordBar();
  QWidget* GridBar();
  void MakeGrid();
  void ShowOverview();

  void ChooseFile();
  void PickDay(int mode);
  void Print();

  CampaignSources sources_;
  CampaignEditor editor_;
  CampaignOrders orders_;
  CampaignPage* page_ = nullptr;
  CampaignGridView* GPub = nullptr;
  CampaignOverview* PLPub = nullptr;
  QLabel *LblInfoPub = nullptr, *LblTotalMsg = nullptr, *LblTotalJours = nullptr;
  QLabel* damage_ = nullptr;
  std::vector<std::pair<QPushButton*, const bool*>> offAtTimes_;
};

}  // namespace zemo
