#include "platform/real/analysis/BackgroundLevelTool.h"

#include <chrono>
#include <future>

#include "platform/EventLoop.h"

namespace zemo {

namespace {

template <typename Work>
auto Beside(EventLoop& loop, Work work) {
  auto done = std::async(std::launch::async, work);
  while (done.wait_for(std::chrono::seconds(0)) != std::future_status::ready) loop.WaitYield();
  return done.get();
}

}  // namespace

bool BackgroundLevelTool::BringTo(const Level& level, const std::string& path, Folder& folder,
                                  const std::string& name) {
  return Beside(loop_, [&] { return tool_->BringTo(level, path, folder, name); });
}

void BackgroundLevelTool::Copy(Folder& folder, const std::string& from, const std::string& to) {
  Beside(loop_, [&] { tool_->Copy(folder, from, to); });
}

}  // namespace zemo
