// Sound files become cards: what a file's card begins with, and how it enters the base. The library
// screen and the import both add this way.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "library/HourMasks.h"
#include "library/JingleCard.h"
#include "library/MusicCard.h"

namespace zemo {

struct Station;

// --- the card of a file, which is given as a stored path with its length in ms. In this order of
// preference from its exchange file, from its older one, or bare; one that is there and cannot be
// read is logged. What the card showed before stays where the text says nothing of it, as its
// number does. True where an exchange file spoke. Throw StoreError. ---
bool FillMusicCard(Station& station, const std::string& file, int32_t lengthMs, MusicCard& card,
                   HourMasks& masks);
bool FillJingle(Station& station, const std::string& file, int32_t lengthMs, JingleCard& card,
                HourMasks& masks);
bool FillShortElement(Station& station, const std::string& file, int32_t lengthMs,
                      ShortElementCard& card);

// CODE of the music card with that stored path. Throws StoreError.
std::optional<int32_t> MusicCardOfFile(Station& station, const std::string& file);

// --- a new row. Gives its CODE. Throw StoreError for a text that no field holds ---
int32_t InsertMusicCard(Station& station, const MusicCard& card, const HourMasks& masks);
int32_t InsertJingle(Station& station, const JingleCard& card, const HourMasks& masks);
int32_t InsertShortElement(Station& station, const ShortElementCard& card);

// --- a new row, and its exchange file beside the sound file. Gives the new CODE. Throw StoreError,
// with nothing stored, for a text that no field holds; an exchange file that cannot be written is
// logged. ---
int32_t AddMusicCard(Station& station, const MusicCard& card, const HourMasks& masks);
int32_t AddJingle(Station& station, const JingleCard& card, const HourMasks& masks);
int32_t AddShortElement(Station& station, const ShortElementCard& card);

// --- the exchange file alone; none for a card without a sound file. Throw FileError ---
void WriteMus(Station& station, const MusicCard& card, const HourMasks& masks);
void WriteJin(Station& station, const JingleCard& card, const HourMasks& masks);
void WriteTx2(Station& station, const ShortElementCard& card);

}  // namespace zemo
