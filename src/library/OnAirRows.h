// On-air rows made from library records: the one place that knows which field goes to which column.
// Every procedure reads the current row of the cursor that it is given.
#pragma once

#include "station/OnAirList.h"

namespace zemo {

class Recordset;

// Music card. Without `lastPlayed` column 11 stays empty, as a dated list's load leaves it.
Cells MusicRow(const Recordset& discotheque, bool lastPlayed = true);
Cells JingleRow(const Recordset& discothequeJingle);
Cells SpotRow(const Recordset& grillePub);  // "PUB", code -2
Cells NewsRow(const Recordset& grillePub);  // "RUB", code -4
Cells OtherRow(const Recordset& discothequeVirgule);
Cells VoiceTrackRow(const Recordset& vt);
Cells BeginExtractRow();
Cells HourPipRow(const std::string& file);  // stored path of the pip
// "Start Playlist" or "End Playlist" around a dated list; `label` is the list's Libelle.
Cells PlaylistMarkerRow(int32_t code, const std::string& label);

// The title line of a row on air: text, two blanks, second line.
std::string TitleLine(const Cells& cells);

}  // namespace zemo
