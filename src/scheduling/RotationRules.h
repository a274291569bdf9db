// Whether a music card may enter a list at this moment: gaps, passes of the day, date window,
// shift, and the two tests on the artist. A yes or no with its reasons; nothing is chosen or
// ordered here.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "library/CardBroadcasts.h"
#include "platform/Clock.h"

namespace zemo {

class Recordset;
struct Station;

// What the rules read of a card. The texts belong to whoever filled it.
struct CardRotation {
  int32_t Code = 0;  // 0: of no card of the base
  std::string_view Genre, Auteur, Titre;
  std::string_view MMJJDebut, MMJJFin;  // "MMDD", or blank
  int32_t NBPASSJOUR = 0;               // passes a day; 0 is out of rotation
  int32_t ECARTMINUTES = 0, ECARTJOURS = 0;
  std::string_view Tranche;                             // today's hours, 24 characters
  std::array<std::string_view, kDiffusions> Diffusion;  // "dd/mm/yyyy à hh:mm", the newest first
  // Minutes since Diffusion[0] by a clock that never jumps; none: not known. Where they are more
  // than the wall clock says, it went back, and they count.
  std::optional<int64_t> restedMinutes;
};

// A moment in the forms in which the rules compare it.
struct RotationMoment {
  explicit RotationMoment(const LocalDateTime& now);

  std::string general;   // "dd/mm/yyyy hh:mm:ss"
  std::string date;      // "dd/mm/yyyy"
  std::string monthDay;  // "MMDD"
  std::string hour;      // "hh"
  int minuteOfDay = 0;
  double daySerial = 0;
};

// May the card on which the cursor stands be listed now? A refusal adds its line to
// ListAutorisation. Throws StoreError, and RequestError for a DIFFUSION that is no date.
bool CheckRotation(Station& station, const Recordset& discotheque);
// The same for a card that was read already. A title that this run aired rests from then on,
// however the wall clock was set meanwhile.
bool CheckRotation(Station& station, const CardRotation& card, const RotationMoment& moment);
// The rules alone: `line` gets the refusal's line; it stays empty when there is none to log.
bool RotationAllows(const CardRotation& card, const RotationMoment& moment, int decalDiff,
                    std::string& line);

// Refills ECArtiste; called once at the start of a request, before any title is tested.
void LoadRecentArtists(Station& station);
// DernierCodeRapport; called once at the start of a request.
void LoadNewestReportCode(Station& station);
// Clears the flag when fewer than `gap` rows of the report lie behind the artist's last one.
void CheckArtistGapInReport(Station& station, const std::string& artist, int16_t gap,
                            bool& allowed);
// Clears the flag when the artist stands in ECArtiste, its first line left out; `artist` comes back
// in capitals.
void CheckRecentArtist(Station& station, std::string& artist, bool& allowed);

// The hour of the clock. Sets MinutesRequete to 60.
int16_t CurrentHour(Station& station);

}  // namespace zemo
