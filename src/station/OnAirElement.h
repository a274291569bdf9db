// An element of the on-air list: what it is, what is played, how long it takes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "station/TrackNeighbours.h"

namespace zemo {

// What an element is; above 0 stands the CODE of a music card.
namespace Element {
enum Code : int32_t {
  kJingle = -1,
  kSpot = -2,
  kHourPip = -3,
  kNews = -4,
  kOther = -5,
  kBeginExtract = -6,
  kStartPlaylist = -10,
  kEndPlaylist = -20,
  kVoiceTrack = -30
};
}  // namespace Element

inline constexpr const char* kExtractAnnouncement = "Jingle annonce extrait";

// Made by library/OnAirRows from a record, by the inserters, the requests and the emergency air.
// What nobody said is empty; where a number is reckoned with it counts 0 then.
struct OnAirElement {
  int32_t code = 0;          // see Element
  std::string title{};       // title line: artist, label, advertiser, or the kind's own word
  std::string secondLine{};  // title of the music, label of a dated list, CODE of a voice track
  std::string genre{};       // GENRE of music, else the kind's word as the maker of the row has it
  std::string variety{};
  std::string file{};                 // stored path
  std::optional<int64_t> lengthMs{};  // of the whole file
  std::optional<int64_t> exitMs{};    // exit point, before the end
  std::optional<int64_t> introSec{};  // of music
  double lastPlayed = 0;              // day serial; 0: never, or not asked
  std::optional<double> plannedMs{};  // begin, since midnight, not wrapped; see PlanTimes

  // Of voice tracks. One that lies over speaks over the element before, from startMs of it on, and
  // takes no time; any other is an element of its own.
  int64_t voiceTrack = 0;  // CODE of VT
  bool liesOver = false;
  std::optional<int64_t> startMs{};
  std::optional<TrackNeighbours> madeFor{};  // nothing where it was never kept

  // What the element takes of the list's time, ms: whole, and up to its exit point.
  double TakenMs() const { return liesOver ? 0 : static_cast<double>(lengthMs.value_or(0)); }
  double AirMs() const { return TakenMs() - static_cast<double>(exitMs.value_or(0)); }
  // The tick plays the titles behind a jingle of this text as extracts, whoever named it so.
  bool AnnouncesExtracts() const { return title == kExtractAnnouncement; }
  bool operator==(const OnAirElement&) const = default;
};

// The title of an element on air: title line, two blanks, second line.
std::string TitleOf(const OnAirElement& element);

}  // namespace zemo
