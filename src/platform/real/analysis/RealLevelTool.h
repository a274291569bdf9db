// Brings a sound file to a loudness: measured whole, then written anew.
#pragma once

#include <memory>
#include <string>

#include "platform/LevelTool.h"
#include "platform/SoundSource.h"

namespace zemo {

// One thread at a time.
class RealLevelTool final : public LevelTool {
 public:
  explicit RealLevelTool(std::unique_ptr<SoundOpener> opener) : opener_(std::move(opener)) {}

  bool BringTo(const Level& level, const std::string& path, Folder& folder,
               const std::string& name) override;
  void Copy(Folder& folder, const std::string& from, const std::string& to) override;

 private:
  std::unique_ptr<SoundOpener> opener_;
};

}  // namespace zemo
