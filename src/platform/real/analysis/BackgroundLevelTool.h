// Brings sound files to a loudness beside the air: a long one takes seconds.
#pragma once

#include <memory>
#include <string>

#include "platform/LevelTool.h"

namespace zemo {

class EventLoop;

// Thread: the logic's. The work is done by a thread of its own, for which both wait in yields of
// the loop. The folder is one that any thread may use (LocalFolder).
class BackgroundLevelTool final : public LevelTool {
 public:
  // The loop is not owned, and outlives it.
  BackgroundLevelTool(EventLoop& loop, std::unique_ptr<LevelTool> tool)
      : loop_(loop), tool_(std::move(tool)) {}

  bool BringTo(const Level& level, const std::string& path, Folder& folder,
               const std::string& name) override;
  void Copy(Folder& folder, const std::string& from, const std::string& to) override;

 private:
  EventLoop& loop_;
  std::unique_ptr<LevelTool> tool_;
};

}  // namespace zemo
