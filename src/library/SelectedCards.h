// Several music cards get fields of the card shown at once: those that are selected in the list.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zemo {

struct LibraryEditor;
struct Station;

enum class SharedField {
  kGenre,
  kVariety,
  kPlaysADay,
  kMinutes,
  kDays,
  kArtistGap,
  kHours,
  kDates
};
inline constexpr size_t kSharedFields = 8;
using SharedFields = std::array<bool, kSharedFields>;  // which of them

namespace Library {

// The cards of the music that are selected in the list.
std::vector<int32_t> SelectedCards(const LibraryEditor& editor);

// What the boxes have otherwise than the card shown as it is stored. Throws StoreError.
SharedFields ChangedFields(Station& station, const LibraryEditor& editor);

// Stores those fields, as the boxes have them, in each of the cards, and writes its exchange file.
// What else was typed stays in the boxes. A card that is gone is left out; a text that no field
// holds, and a base that is out of reach, is told once and ends it. Yields after each card. Gives
// how many cards were stored.
size_t GiveFields(Station& station, LibraryEditor& editor, const std::vector<int32_t>& codes,
                  const SharedFields& fields);

}  // namespace Library

}  // namespace zemo
