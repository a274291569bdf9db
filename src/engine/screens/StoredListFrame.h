// CadrePL: the editor of stored lists above PL: which one, its date, time and jingle option.
#pragma once

#include <QFrame>
#include <functional>

#include "ui/Translation.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zemo {

struct Station;

class StoredListFrame : public QFrame {
 public:
  // `tell` puts a line at the bottom of the screen.
  StoredListFrame(Station& station, std::function<void(const QString&)> tell, Translation texts,
                  QWidget* parent);
  void Refresh();  // from the panel's fields
  void Arrange(double unit);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeControls();
  void LayOut();
  void Connect();
  void FillItems();
  void ChooseList(int item);
  bool DeleteKey();
  void NewList();
  void Save();
  bool MaySave();
  bool Confirmed(const char* title, const char* question);
  void OpenCalendar();

  Station& station_;
  const std::function<void(const QString&)> tell_;
  const Translation texts_;
  QComboBox *ComboPLS, *OptPls;
  QPushButton *LblDate, *BtnSauve, *BtnNew;
  QLineEdit* ChHeure;
  QLabel *LblCodePL, *ChkNoJingle;
};

}  // namespace zemo
