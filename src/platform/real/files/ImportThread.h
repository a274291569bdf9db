// The files of an import, found and read by a thread that runs only while nothing else on this
// machine wants to.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ImportFiles.h"
#include "platform/SoundSource.h"
#include "platform/SoundTags.h"

namespace zemo {

// What a thread reads with: its own, as nobody else may use it meanwhile.
struct ImportTools {
  std::unique_ptr<SoundOpener> opener;
  std::unique_ptr<SoundTags> tags;
};

// Thread: the logic's; each import has its own. The logic never waits: where the other thread has
// the list at this moment nothing is taken, and one that was stopped ends by itself.
class ImportThread : public ImportFiles {
 public:
  // In `machineFolder` stands the map of the paths.
  ImportThread(std::function<ImportTools()> makeTools, std::string machineFolder);
  // Waits for the threads, which end with the file that they are at.
  ~ImportThread() override;

  void Begin(std::vector<std::string> paths, std::vector<std::string> known) override;
  void Stop() override;
  Count Found() const override;
  std::optional<SoundFileReading> Take() override;

 private:
  class Run;

  std::function<ImportTools()> makeTools_;
  std::string machineFolder_;
  std::vector<std::unique_ptr<Run>> runs_;  // the last one is the import, unless it was stopped
  bool atWork_ = false;
};

}  // namespace zemo
