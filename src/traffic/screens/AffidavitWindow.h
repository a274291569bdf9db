// The window of the affidavit: advertiser and span above, what became of each cross below, on
// paper, as a PDF and as a spreadsheet. It shows an AffidavitEditor and calls its routines.
#pragma once

#include <functional>

#include "traffic/AffidavitScreen.h"
#include "ui/FieldPage.h"
#include "ui/OfficeWindow.h"
#include "ui/Questions.h"

class QLabel;
class QTableView;

namespace zemo {

class AffidavitListModel;
class FreeEntryBox;

// What the window is given besides the station.
struct AffidavitSources {
  SpreadsheetWriter* spreadsheets = nullptr;  // none: no spreadsheet is made
  Questions questions;                        // with a dialogue of the system by default
};

// The fields above the list.
class AffidavitBar : public FieldPage {
 public:
  struct Orders {
    std::function<void()> pickFirst, pickLast, make;
  };
  // Editor and texts outlive the bar.
  AffidavitBar(AffidavitEditor& editor, Orders orders, const Translation& texts, QWidget* parent);

 private:
  const Orders orders_;
};

// Modeless beside the air. Thread: the logic's. The station outlives it.
class AffidavitWindow : public OfficeWindow {
 public:
  AffidavitWindow(Station& station, AffidavitSources sources);
  void Open();  // nothing while the menus are locked
  bool IsOpen() const override { return editor_.open || Barred(); }
  const AffidavitEditor& Editor() const { return editor_; }

 protected:
  void ArrangeParts(double unit) override;
  void ShowAll() override;
  void Left() override;

 private:
  QWidget* Buttons();
  void MakeList();
  void ArrangeColumns();
  void PickDay(void (*take)(AffidavitEditor&, const LocalDateTime&));
  void Print();
  void Save(const char* name, const char* kind, const char* ending,
            std::function<void(const std::string& path)> write);

  AffidavitSources sources_;
  AffidavitEditor editor_;
  AffidavitBar* bar_ = nullptr;
  QTableView* ListDiff = nullptr;
  AffidavitListModel* model_ = nullptr;
  QLabel* LblTotaux = nullptr;
};

}  // namespace zemo
