// A window of the office beside the air, which Ctrl+W closes: while a routine of it works that
// yields, its controls are barred, and who closes it waits for the routine's end.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/BaseFollower.h"
#include "ui/Window.h"

namespace zemo {

// Thread: the logic's. The station outlives it.
class OfficeWindow : public Window {
 public:
  // Takes the stored paths that were picked in the sound file selector.
  using TakeFiles = std::function<void(const std::vector<std::string>& files)>;
  // Opens the selector over a window; `known` are the stored paths that it may leave out.
  using FileChooser = std::function<void(QWidget* over, const std::string& currentFile,
                                         const std::vector<std::string>& known, TakeFiles take)>;

  // `routine`: under which name the log has what its orders throw.
  OfficeWindow(Station& station, const char* name, const char* routine, const WindowTexts& texts);
  virtual bool IsOpen() const = 0;
  virtual bool LeaveNow();  // false while a routine works: it closes at its end

 protected:
  // An order that answers at once, and one that may ask or yield: it waits for a free moment.
  // Neither is begun while another works; what became of it is shown.
  void Run(const std::function<void()>& order);
  void Work(std::function<void()> order);
  void Busy(const std::function<void()>& order);  // the order now, with the controls barred
  bool Barred() const { return barred_; }
  void ShowSelf();  // in front of the others, if it is open; with its frame within the screen

  virtual void ShowAll() = 0;  // what its editor holds
  // Others have stored something, and no routine works: what is shown is read again, but for what
  // the operator has changed, and shown. False: not now; it is asked again soon.
  virtual bool TakeOver() { return true; }
  // Of the side files that it shows: another text where one of them has changed.
  virtual std::string SideSign() { return {}; }
  // Not while a routine works, in whose yield the moment may have come.
  bool MayLeave() override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Guarded(const std::function<void()>& order);
  void Bar(bool working);

  const char* routine_;
  BaseFollower follower_;
  bool barred_ = false;  // a routine works
  bool closes_ = false;  // at its end
};

}  // namespace zemo
