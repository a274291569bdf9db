// A folder of music as people have it: some two hundred files of every kind and quality, and what
// lies between them.
#pragma once

#include <set>
#include <string>

namespace zemo::test {

struct MusicFolder {
  // Paths below the folder.
  std::set<std::string> good;      // sounds that have to become cards
  std::set<std::string> bad;       // by their endings sounds, which they are not
  std::set<std::string> doubtful;  // damaged: whether anything is to be heard of them is open
};

// Made below `folder`, which is there. The same each time.
MusicFolder MakeMusicFolder(const std::string& folder);

}  // namespace zemo::test
