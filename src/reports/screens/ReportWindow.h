// The window of the broadcast report: span and filters above, the rows and the rotations of their
// titles below, and beside them what they look like as pictures. It shows a ReportEditor and calls
// its routines.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "reports/ReportEditor.h"
#include "reports/ReportScreen.h"
#include "ui/OfficeWindow.h"
#include "ui/Questions.h"

class QBoxLayout;
class QLabel;
class QPushButton;

namespace zemo {

class ReportBar;
class ReportPicturePane;
class ReportTable;

// What the window is given besides the station.
struct ReportSources {
  Report::ExportFiles files;            // without `open` nothing is exported
  std::function<void()> openAffidavit;  // none: it is not on offer
  Questions questions;                  // with a dialogue of the system by default
};

// From this width of the window on the pictures stand beside the lists.
inline constexpr int kWidthOfPictures = 1280;

// Modeless beside the air. While rows are read the window can be worked in: what is typed meanwhile
// begins the reading anew. Thread: the logic's. The station outlives it.
class ReportWindow : public OfficeWindow {
 public:
  ReportWindow(Station& station, ReportSources sources);
  void Open();  // nothing while the menus are locked
  // Also while a reading that was ended by the closing comes to its end.
  bool IsOpen() const override { return editor_.open || editor_.working > 0 || Barred(); }
  bool LeaveNow() override;
  const ReportEditor& Editor() const { return editor_; }

 protected:
  void ArrangeParts(double unit) override;
  void ShowAll() override;
  bool TakeOver() override;
  void Left() override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  using Routine = void (*)(Station&, ReportEditor&);
  using ExportRoutine = void (*)(Station&, ReportEditor&, const std::string& path,
                                 const Report::ExportFiles& files);
  using PrintRoutine = PrintedPages (*)(Station&, ReportEditor&);
  void MakeBar();
  QWidget* ReportButtons();
  QWidget* StatisticsButtons();
  QWidget* Lists();
  QPushButton* Button(const char* name, std::function<void()> pressed, QWidget* parent);
  QPushButton* Working(const char* name, Routine routine, QWidget* parent);
  void ArrangePictures();
  void ShowLists();
  void Choose(uint32_t row);
  void SelectChosen();
  void TakeChosen();

  // An order after which rows are read, beside which the window stays free.
  void Read(std::function<void()> order);
  void TakeFilters();
  void PickDay(void (*take)(Station&, ReportEditor&, const LocalDateTime&));
  void Export(const char* name, size_t listed, ExportRoutine write, PrintRoutine print);
  void Print(PrintRoutine print);
  std::function<void()> Pause();

  ReportSources sources_;
  ReportEditor editor_;
  ReportBar* bar_ = nullptr;
  ReportTable *ListRap = nullptr, *ListStat = nullptr;
  QLabel* LblStat = nullptr;
  QPushButton* BtnVues = nullptr;
  QWidget* lists_ = nullptr;
  ReportPicturePane* pictures_ = nullptr;
  std::shared_ptr<const ReportRows> chosenOf_;
  std::optional<uint32_t> chosen_;  // row of the report whose title is pictured
};

}  // namespace zemo
