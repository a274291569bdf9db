// An import of the library window: its progress on a strip below the cards, and its report at the
// end. The air goes on beside it, and so does the window.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "library/ImportRun.h"

class QLabel;
class QProgressBar;

namespace zemo {

class Translation;

// What an import is given besides the station. The files are not owned and outlive it.
struct ImportSources {
  ImportFiles* files = nullptr;  // none: nothing is imported
  ImportRun::BareCard bareCard;  // may be empty
};

// Thread: the logic's; a file or a slice of some milliseconds at a time, at free moments
// (engine/FreeMoment.h).
class ImportPane : public QWidget {
 public:
  struct Hooks {
    std::function<bool()> mayWork;               // false: ask again
    std::function<void(LibraryTab kind)> ended;  // cards of that kind may have come
  };
  ImportPane(Station& station, ImportSources sources, const Translation& texts, Hooks hooks,
             QWidget* parent);

  bool CanBegin() const { return sources_.files && !run_; }
  void Begin(LibraryTab kind, std::vector<std::string> paths);
  bool AtWork() const { return run_.has_value(); }
  void Wait(bool waits) { waits_ = waits; }
  void Stop();  // nothing is told; the cards that it made stay

 private:
  void Turn();
  void ShowProgress();
  void End(bool stopped);
  void ShowReport(const ImportReport& report, bool stopped);

  Station& station_;
  ImportSources sources_;
  const Translation& texts_;
  Hooks hooks_;
  std::optional<ImportRun> run_;
  bool waits_ = false;  // for an answer
  QTimer timer_;
  QElapsedTimer shown_;
  QProgressBar* bar_;
  QLabel* text_;
};

}  // namespace zemo
