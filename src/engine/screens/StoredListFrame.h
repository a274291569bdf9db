// CadrePL: the editor of stored lists above PL: which one, its date, time and jingle option.
#pragma once

#include <QFrame>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zemo {

struct Station;

class StoredListFrame : public QFrame {
 public:
  StoredListFrame(Station& station, int langue, QWidget* parent);
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
  void OpenCalendar();

  Station& station_;
  const int langue_;
  QComboBox *ComboPLS, *OptPls;
  QPushButton *LblDate, *BtnSauve, *BtnNew;
  QLineEdit* ChHeure;
  QLabel *LblCodePL, *ChkNoJingle;
};

}  // namespace zemo
