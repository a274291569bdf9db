// Brings a sound file to a loudness: measured whole, then written anew.
#pragma once

#include <memory>
#include <string>

#include "platform/LevelTool.h"
#include "platform/SoundSource.h"

namespace zemo {

// Thread: the logic's.
class RealLevelTool final : public LevelTool {
 public:
  explicit RealLevelTool(std::unique_ptr<SoundOpener> opener) : opener_(std::move(opener)) {}

  bool BringTo(const Level& level, const std::string& path, Folder& folder,
               const std::string& name) override;

 private:
  std::unique_ptr<SoundOpener> opener_;
};

}  // namespace zemo
