// The sound file selector's window: folders, files and the prelisten. It shows a SoundFileSelector
// and calls the routines of library/SoundFileSelector.h. One serves all windows and stays loaded
// between uses.
#pragma once

#include <QDialog>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "library/SoundFileSelector.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSlider;

namespace zemo {

class LevelMeter;
class Translation;

// Modal to the window that opened it and not to the air: nothing waits for it. Thread: the logic's.
// The station outlives it.
class SelectorDialog : public QDialog {
 public:
  explicit SelectorDialog(Station& station);
  ~SelectorDialog() override;

  using TakeFiles = std::function<void(const std::vector<std::string>& files)>;
  // Opens over a window, on the current file's folder; `known` are the stored paths that have
  // cards. OK gives the stored paths that were chosen; `take` may be empty, to listen only. While
  // it is open already nothing happens.
  void Choose(QWidget& over, const std::string& currentFile, const std::vector<std::string>& known,
              TakeFiles take);
  void Refresh();  // time, levels, and what is told
  const SoundFileSelector& State() const { return selector_; }

  void accept() override;  // BtnOk
  void reject() override;  // BtnCancel, Escape and the frame; not while files are filtered

 private:
  void MakeControls();
  void MakeBrowsing();
  void MakePlayer();
  void LayOut();
  void SetTexts(const Translation& texts);
  void Arrange(const QWidget& over);
  QPushButton* Button(const char* name, std::function<void()> pressed);
  void Run(const std::function<void()>& order);  // of the selector; shows what became of it
  void ShowAll();
  void ShowFiles();
  void ChooseRows();
  void EnterFolder(const std::string& name);
  void PutFolder(const std::string& path);
  void TakeAll(bool ticked);
  void ShowSelection();
  void End(bool ok);

  Station& station_;
  SoundFileSelector selector_;
  TakeFiles take_;
  QTimer poll_;
  bool showing_ = false, working_ = false;
  bool outputIsChosen_ = false;  // of the prelisten, as it was opened
  int langue_ = 0;
  std::string listed_;  // folder whose files are listed

  QComboBox* Drive1;
  QLineEdit *Dir1, *FileName;
  QListWidget *DirList, *File1;
  QCheckBox* SelectAll;
  QSlider* TrackBar;
  QLabel *LblTemp, *LblOut, *folderLabel_, *filesLabel_, *nameLabel_;
  LevelMeter *MMLevelX1, *MMLevelX2;
  QPushButton *BtnSelectAll, *btnPlay, *btnPause, *btnRestart, *BtnStop, *BtnOk, *BtnCancel;
};

}  // namespace zemo
