// A music card as the library screen shows it, under the names of its controls; its fields in
// Discotheque, and its exchange files beside the sound file.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "library/HourMasks.h"

namespace zemo {

class Recordset;
struct Station;

inline constexpr size_t kPlaysKept = 8;  // DIFFUSION01, the newest, to DIFFUSION08

// Texts as they are typed; numbers in them are read when the card is written.
struct MusicCard {
  std::string lblNumero = "0";  // CODE, "0" for a new card
  std::string ChFileName;       // stored path
  std::string Longeur = "0";    // ms
  std::string ChAuteur, ChTitre, ChGenre, ChVariete;
  std::string ChAnne;
  std::string ChIntro;         // s
  std::string ChNbPassJour;    // plays a day
  std::string ChEcartMinutes;  // between two plays
  std::string ChEcartJours;    // days between two plays
  std::string ChEcartArtiste;  // rows of the report
  std::string ChCommentaire;
  int32_t PointSortie = 0;  // ms, 0 to 32767
  std::string ChLabel, ChCD, ChAuteurCompositeur, ChRefAlbum;
  std::string LblMMJJDebut, LblMMJJFin;  // "MMDD", empty for no window
  std::array<std::string, kPlaysKept> ChDiffusion;

  bool operator==(const MusicCard&) const = default;
};

inline constexpr int32_t kLatestExitMs = 32767;  // what the field holds

// A file's name as the text of a card: Windows-1252 where it is no UTF-8, and a blank for each
// control character.
std::string TextOfName(std::string_view name);

// Text of a path behind its last slash of either slant, without the four characters of its ending.
std::string ArtistFromPath(std::string_view path);

// --- the row; both throw StoreError ---
void TakeMusicCard(const Recordset& discotheque, MusicCard& card, HourMasks& masks);
// Into the row in edit or insertion state, all but CODE, LASTDIFF and the plays. Throws for a text
// that no field holds at Update.
void PutMusicCard(const MusicCard& card, const HourMasks& masks, Recordset& discotheque);
// The plays: those of the boxes that `shown` had otherwise; all of them as of a card that never
// played where `shown` is null.
void PutPlays(const MusicCard& card, const MusicCard* shown, Recordset& discotheque);

// --- what a file without any card begins with: `exitMs` is PmixDef ---
void SetBareMusicCard(MusicCard& card, HourMasks& masks, int32_t exitMs);

// --- the exchange files, as decoded texts ---
std::string MusText(const MusicCard& card, const HourMasks& masks);
// False for a text that holds no card: nothing is changed then. What the older form lacks stays as
// it is.
bool TakeMus(std::string_view text, MusicCard& card, HourMasks& masks);
bool TakeOlderTxt(std::string_view text, MusicCard& card, HourMasks& masks);

}  // namespace zemo
