// What the name of a sound file tells of its artist and its title, where tags do not.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

// Of a stored path: without its folder and its ending, of whatever length that is.
std::string NameOfFile(const std::string& path);

struct TitleInName {
  std::string artist;  // empty where the name tells a title alone
  std::string title;   // empty for a name that is a number
};
// "Artist - Title", with or without a track number ahead.
TitleInName ReadTitleInName(std::string_view name);

}  // namespace zemo
