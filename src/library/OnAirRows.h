// Elements of the on-air list made from library records: the one place that knows which field goes
// where. Every procedure reads the current row of the cursor that it is given.
#pragma once

#include <string>

#include "station/OnAirElement.h"

namespace zemo {

class CardTexts;
class Recordset;
struct PackedCard;

// Music card. Without `lastPlayed` nobody asks when it played last, as in a dated list's load.
OnAirElement MusicRow(const Recordset& discotheque, bool lastPlayed = true);
// The same of a card in memory; not one with odd cells.
OnAirElement MusicRow(const PackedCard& card, const CardTexts& texts);
OnAirElement JingleRow(const Recordset& discothequeJingle);
OnAirElement SpotRow(const Recordset& grillePub);  // "PUB", code -2
OnAirElement NewsRow(const Recordset& grillePub);  // "RUB", code -4
OnAirElement OtherRow(const Recordset& discothequeVirgule);
OnAirElement VoiceTrackRow(const Recordset& vt);
OnAirElement BeginExtractRow();
OnAirElement RowOfHourPip(const std::string& file);  // stored path of the pip
// "Start Playlist" or "End Playlist" around a dated list; `label` is the list's Libelle.
OnAirElement PlaylistMarkerRow(int32_t code, const std::string& label);

}  // namespace zemo
