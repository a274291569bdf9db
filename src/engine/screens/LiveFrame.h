// CadreRech: the live mode's search and browse list, from where elements are dragged into PL.
#pragma once

#include <QFrame>
#include <QTimer>

#include "engine/screens/BrowseView.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zemo {

class OnAirListView;
struct MainScreen;
struct Station;

class LiveFrame : public QFrame {
 public:
  LiveFrame(Station& station, OnAirListView& list, BrowseOrders orders, Translation texts,
            QWidget* parent);

  void LoadGenres();  // of the station, into RechGenre
  void Arrange(double unit);
  void Refresh(const MainScreen& screen);
  void Browse(BrowseList list);  // as MenuLive's entry
  void Opened();                 // by whoever entered the live mode: shows it from the start
  void TakeFocus();
  void SearchMusic();     // the keyboard goes into Rech
  int ChosenRow() const;  // of ListRech, from 0; -1: none, or the frame is hidden
  bool Searching() const { return work_.isActive(); }
  bool ReadingAhead() const;  // the library is not wholly known yet

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeControls();
  void LayOut();
  void Connect();
  void SearchText();
  void GoToResults();
  void TellShortText();
  void Work();  // one slice of what the search has begun
  void ShowList();
  void ShowRows();

  Station& station_;
  BrowseModel* model_;
  const Translation texts_;
  const std::function<void(const QString&)> tell_;
  double unit_ = 1;
  bool toldShort_ = false;  // how many characters a search wants
  QComboBox *MenuLive, *RechGenre;
  QLineEdit* Rech;
  QLabel *LblRech, *PictureNoJingle;
  QCheckBox *CheckExtrait, *OptionDirect, *CheckNoJingle;
  QPushButton* CmdMarqueurExtrait;
  BrowseView* ListRech;
  OnAirListView& list_;
  QTimer work_, readAhead_;
};

}  // namespace zemo
