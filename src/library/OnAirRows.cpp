#include "library/OnAirRows.h"

#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Recordset.h"

namespace zemo {

namespace {
Cells Row(std::string text, const char* kind, int32_t code) {
  Cells cells;
  cells[Col::kText] = std::move(text);
  cells[Col::kKind] = kind;
  cells[Col::kCode] = std::to_string(code);
  return cells;
}

void SetLength(Cells& cells, const Recordset& record) {
  const int64_t lengthMs = record.Int("DUREE");
  cells[Col::kLength] = FormatDuration(lengthMs);
  cells[Col::kLengthMs] = std::to_string(lengthMs);
}

Cells CampaignRow(const Recordset& grillePub, const char* kind, int32_t code) {
  Cells cells = Row(grillePub.Text("ANNONCEUR"), kind, code);
  cells[Col::kFile] = grillePub.Text("FILENAMEAUDIO");
  SetLength(cells, grillePub);
  return cells;
}

Cells LabelledRow(const Recordset& record, const char* kind, int32_t code) {
  Cells cells = Row(record.Text("LIBELLE"), kind, code);
  cells[Col::kFile] = record.Text("FILENAME");
  cells[Col::kExitMs] = record.Text("POINTSORTIE");
  SetLength(cells, record);
  return cells;
}
}  // namespace

Cells MusicRow(const Recordset& card, bool lastPlayed) {
  Cells cells = Row(card.Text("AUTEUR"), "", static_cast<int32_t>(card.Int("CODE")));
  cells[Col::kSecond] = card.Text("TITRE");
  cells[Col::kKind] = card.Text("GENRE");
  cells[Col::kVariety] = card.Text("VARIETE");
  cells[Col::kFile] = card.Text("FILENAME");
  cells[Col::kExitMs] = card.Text("POINTSORTIE");
  cells[Col::kIntro] = card.Text("INTRO");
  if (lastPlayed) cells[Col::kLastPlayed] = LastPlayedText(card.Real("LASTDIFF"));
  SetLength(cells, card);
  return cells;
}

Cells JingleRow(const Recordset& jingle) {
  return LabelledRow(jingle, "JINGLE", Element::kJingle);
}
Cells SpotRow(const Recordset& campaign) {
  return CampaignRow(campaign, "PUB", Element::kSpot);
}
Cells NewsRow(const Recordset& campaign) {
  return CampaignRow(campaign, "RUB", Element::kNews);
}
Cells OtherRow(const Recordset& other) {
  return LabelledRow(other, "AUTRES", Element::kOther);
}

Cells VoiceTrackRow(const Recordset& vt) {
  const bool cut = vt.Bool("CUT");
  Cells cells = Row(cut ? "Voice Track Cut" : "Voice Track", "Voice Track", Element::kVoiceTrack);
  cells[Col::kSecond] = vt.Text("CODE");
  cells[Col::kFile] = vt.Text("FILENAME");
  SetLength(cells, vt);
  if (cut) {
    cells[Col::kExitMs] = vt.Text("POINTSORTIE");
  } else {
    cells[Col::kLengthMs] = "0";  // it plays over the element before and takes no time of its own
    cells[Col::kIntro] = vt.Text("START");
  }
  return cells;
}

Cells BeginExtractRow() {
  return Row("Begin Extrait", "", Element::kBeginExtract);
}

Cells HourPipRow(const std::string& file) {
  Cells cells = Row("Top Horaire", "TOP-H", Element::kHourPip);
  cells[Col::kFile] = file;
  return cells;
}

Cells PlaylistMarkerRow(int32_t code, const std::string& label) {
  Cells cells =
      Row(code == Element::kStartPlaylist ? "Start Playlist" : "End Playlist", "PLAYLIST", code);
  cells[Col::kSecond] = label;
  return cells;
}

std::string TitleLine(const Cells& cells) {
  return cells[Col::kText] + "  " + cells[Col::kSecond];
}

}  // namespace zemo
