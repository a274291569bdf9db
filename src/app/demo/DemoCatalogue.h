// What the demo station has on its shelves: the titles, and the short elements around them.
#pragma once

#include <span>
#include <string>

#include "app/demo/Composer.h"
#include "app/demo/SoundEncoder.h"

namespace zemo {

struct DemoTitle {
  const char* artist;
  const char* title;
  const char* genre;
  const char* variety;
  const char* year;
  double lengthSec;
  SoundForm form;
  Manner manner;
};

std::span<const DemoTitle> DemoTitles();

// A break's jingle goes around breaks only: it is allowed at no hour of its own.
enum class ShortKind { kJingle, kBreakJingle, kOther, kSpot, kNews, kPip };

struct DemoShort {
  ShortKind kind;
  const char* label;  // also the file's name
  double lengthSec;
  SoundForm form;
  const char* category;  // of a campaign
  bool overlay;          // a jingle that plays over the introduction of a title
  bool link = false;     // an element that leads back from another programme
};

std::span<const DemoShort> DemoShorts();

// The sound of a short element, made up from its place in the list.
StereoBuffer MakeShort(const DemoShort& element, uint64_t seed);

// The genres of the station, and the share of each in the hour (per cent) on a weekday 1 to 7.
std::span<const char* const> DemoGenres();
int DemoShare(size_t genre, int weekday, int hour);

}  // namespace zemo
