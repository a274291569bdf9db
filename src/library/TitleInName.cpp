#include "library/TitleInName.h"

#include "library/MusicCard.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr std::string_view kArtistEnd = " - ";
constexpr size_t kTrackDigits = 2, kMostDigits = 3;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Where the name goes on behind a track number; 0 where it does not begin with one. "50 Cent",
// "311", "99.9 FM" and "7-Eleven" are names, "06 Title", "6. Title" and "1-06 Title" are not.
size_t BehindTrackNumber(std::string_view name) {
  size_t digits = 0;
  while (digits < name.size() && IsDigit(name[digits])) ++digits;
  const bool padded = digits > 1 && name[0] == '0';
  if (digits == 0 || digits > kMostDigits || (digits > kTrackDigits && !padded)) return 0;
  const std::string_view behind = name.substr(digits);
  if (behind.empty()) return digits;
  const bool numberFollows = behind.size() > 1 && IsDigit(behind[1]);
  const bool mark = behind[0] == ')' || behind[0] == '_' || (behind[0] == '.' && !numberFollows) ||
                    (behind[0] == '-' && (numberFollows || behind.starts_with("- ")));
  if (mark) return digits + 1;
  if (behind.starts_with(kArtistEnd)) return digits + kArtistEnd.size();
  return padded && behind[0] == ' ' ? digits + 1 : 0;
}

std::string WithoutTrackNumber(std::string_view name) {
  std::string rest = Trim(name);
  for (size_t behind = BehindTrackNumber(rest); behind > 0; behind = BehindTrackNumber(rest))
    rest = Trim(std::string_view(rest).substr(behind));
  return rest;
}

}  // namespace

std::string NameOfFile(const std::string& path) {
  const std::string name = TextOfName(path.substr(path.find_last_of('/') + 1));
  const size_t point = name.find_last_of('.');
  return Trim(point == std::string::npos || point == 0 ? name : name.substr(0, point));
}

TitleInName ReadTitleInName(std::string_view name) {
  const std::string told = WithoutTrackNumber(name);
  const size_t between = told.find(kArtistEnd);
  if (between == std::string::npos) return {{}, told};
  return {Trim(told.substr(0, between)), Trim(told.substr(between + kArtistEnd.size()))};
}

}  // namespace zemo
