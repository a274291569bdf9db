// The broadcasts that a card remembers, DIFFUSION01 to 08, and their usual text in four bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zemo {

inline constexpr int kDiffusions = 8;  // the newest first

// Minutes since the first minute of 1900; up to 2^30.
using BroadcastMinute = uint32_t;
inline constexpr uint32_t kBroadcastDayMinutes = 1440;

// Of "dd/mm/yyyy à hh:mm", a day of the calendar from 1900 to 2899 and a time of day; none for
// every other text.
std::optional<BroadcastMinute> BroadcastMinuteOf(std::string_view text);

// The text again, to the byte.
using DiffusionText = std::array<char, 19>;
void WriteBroadcast(BroadcastMinute minute, DiffusionText& text);

// The day of BroadcastMinute on which that date falls; below 0 before 1900.
int32_t BroadcastDay(int year, int month, int day);

}  // namespace zemo
