// The library's window: the tabs of music, jingles, short elements and hour pips, with the list of
// the cards beside the card where there is room for both. It shows a LibraryEditor and calls the
// routines of library/LibraryScreen.h.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "library/LibraryEditor.h"
#include "library/screens/CardPage.h"
#include "library/screens/ImportPane.h"
#include "library/screens/MusicListFiller.h"
#include "ui/OfficeWindow.h"
#include "ui/Questions.h"

class QAction;
class QBoxLayout;
class QLabel;
class QRadioButton;
class QSlider;
class QStackedWidget;
class QTabBar;

namespace zemo {

class CardListPane;
class CardState;
class HourPipPage;
class HoursFrame;
class MarkerPane;
class SpreadsheetWriter;
class Waveforms;

inline constexpr int kWidthOfBoth =
    1280;  // of the window, from which the list stands beside the card

// What the window is given besides the station. References are not owned and outlive it.
struct LibrarySources {
  using TakeFiles = OfficeWindow::TakeFiles;
  OfficeWindow::FileChooser chooseFiles;      // `known`: the files that have cards
  SpreadsheetWriter* spreadsheets = nullptr;  // none: nothing is exported
  ImportSources import;
  Waveforms* waveforms = nullptr;  // none: no waveform is drawn
  Questions questions;             // with a dialogue of the system by default
};

// Modeless beside the air. Sound files and folders that are dropped on it are imported as cards of
// the tab that is shown; who closes it meanwhile is asked whether to stop that. Thread: the
// logic's. The station outlives it.
class LibraryWindow : public OfficeWindow {
 public:
  LibraryWindow(Station& station, LibrarySources sources);
  void Open();                    // nothing while the menus are locked
  void OpenOnCard(int32_t code);  // of the music; while a routine works it only comes forward
  bool IsOpen() const override { return editor_.open; }
  bool LeaveNow() override;  // an import is stopped
  const LibraryEditor& Editor() const { return editor_; }

 protected:
  void ArrangeParts(double unit) override;
  bool MayLeave() override;
  void Left() override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void MakeOrders();
  void MakeMenus();
  void MakePages();
  void MakeLists();
  void MakeFrame();
  QWidget* Navigation();
  QWidget* SortOptions();
  QAction* AddMenu(QWidget* menu, const char* name, std::function<void()> order);
  CardListPane* AddList(const char* name, const char* search);
  // Of a routine of the editor.
  using Routine = void (*)(Station&, LibraryEditor&);
  std::function<void()> Doing(Routine routine);
  void ChangeCards(Routine routine);  // the tab's list is filled anew
  void ReplaceCard();
  void DeleteCards();

  void ShowAll() override;
  bool TakeOver() override;
  void ShowMenus();
  void ShowNavigation();
  void ShowLists();
  void ShowMarkers();
  void FillList();
  void FillListOfMusic();
  void RefillSmallList();
  CardList* ListOfTab();
  void ShowCardInPlaceOfList();
  void ChooseRows(size_t tab, const std::vector<size_t>& rows);

  void ChooseFiles();
  void PickDay(int mode);
  void Print();
  void Export();
  void ResetDates();
  void GiveToSelected();

  bool TakesDrops() const;
  void ChooseFolder();
  void ShowImported(LibraryTab kind);

  LibrarySources sources_;
  LibraryEditor editor_;
  LibraryOrders orders_;
  MusicListFiller musicList_;
  bool wide_ = true;                     // the list stands beside the card
  std::array<bool, kCardTabs> fresh_{};  // lists that show the cards as they are

  QWidget *body_ = nullptr, *card_ = nullptr, *sort_ = nullptr;
  QTabBar* TabStrip1 = nullptr;
  CardState* LblEtat = nullptr;
  QStackedWidget *pages_ = nullptr, *lists_ = nullptr;
  std::array<CardPage*, kCardTabs> cardPages_{};
  std::array<CardListPane*, kCardTabs> cardLists_{};
  HourPipPage* pips_ = nullptr;
  HoursFrame* hours_ = nullptr;
  MarkerPane* markers_ = nullptr;
  QWidget *column_ = nullptr, *navigation_ = nullptr;
  ImportPane* import_ = nullptr;
  QSlider* Slider1 = nullptr;
  std::array<QLabel*, kCardTabs> info_{};
  std::array<QRadioButton*, 6> OptionTri{};
  QAction *Nouveau_, *Ajouter_, *Replacer_, *MnuDelete_, *MnuListe_, *MnuImp_, *MnuExporter_,
      *MnuTxt_, *MnuGive_, *MnuInitDate_, *MnuImport_;
};

}  // namespace zemo
