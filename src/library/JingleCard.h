// A jingle and a short element as the library screen shows them, under the names of their controls;
// their fields, and their exchange files beside the sound file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "library/HourMasks.h"

namespace zemo {

class Recordset;

struct JingleCard {
  int32_t code = 0;                 // CODE, 0 for a new card
  std::string ChFileJingle;         // stored path
  std::string longeurJingle = "0";  // ms
  std::string ChLibJingle;
  bool CheckSurimpression = false;
  int32_t CodeAssocie = 0;        // CODE of the music card it belongs to, 0 for none
  std::string artist;             // ARTISTEASSOCIE as stored; written only where CodeAssocie is 0
  std::string LblArtisteAssocie;  // the linked card's artist and title, else `artist`
  std::string LblDiff;            // last play, "dd/mm/yyyy   hh:nn:ss"
  std::string GenreAssocie;
  bool EndofTitre = false;
  int32_t SliderPSJ = 0;  // ms
  std::string ChAuteurJingle;
  bool JingleExtraitYN = false;
  std::string LblMMJJDebutJ, LblMMJJFinJ;  // "MMDD"

  bool operator==(const JingleCard&) const = default;
};

struct ShortElementCard {
  int32_t code = 0;
  std::string ChFileVirgule;
  std::string LongeurVirgule = "0";  // ms
  std::string ChLibVirgule;
  int32_t PSAutre = 0;  // ms
  bool CheckJingleRacro = false;
  int32_t Tch = 0;  // hot key, 0 for none

  bool operator==(const ShortElementCard&) const = default;
};

// --- rows; all throw StoreError. The linked card of a jingle is the caller's to show ---
void TakeJingle(const Recordset& discothequeJingle, JingleCard& card, HourMasks& masks);
void PutJingle(const JingleCard& card, const HourMasks& masks, Recordset& discothequeJingle);
void TakeShortElement(const Recordset& discothequeVirgule, ShortElementCard& card);
void PutShortElement(const ShortElementCard& card, Recordset& discothequeVirgule);

// --- what a file without any card begins with: `exitMs` is PmixJingles ---
void SetBareJingle(JingleCard& card, HourMasks& masks, int32_t exitMs);
void SetBareShortElement(ShortElementCard& card, int32_t exitMs);

// --- the exchange files, as decoded texts: "Jin", and "Tx2" with the label on one line ---
std::string JinText(const JingleCard& card, const HourMasks& masks);
// False for a text that holds no card: nothing is changed then.
bool TakeJin(std::string_view text, JingleCard& card, HourMasks& masks);
std::string Tx2Text(const ShortElementCard& card);
void TakeTx2(std::string_view text, ShortElementCard& card);

}  // namespace zemo
