#include "library/OnAirRows.h"

#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

#include "library/PackedCards.h"
#include "store/Recordset.h"

namespace zemo {

namespace {

// Nothing for Null, and for what is no number.
std::optional<int64_t> Number(const Recordset& record, std::string_view field) {
  const Value value = record.Field(field);
  return ReadsAsNumber(value) ? std::optional(AsInt(value)) : std::nullopt;
}

OnAirElement NewRow(int32_t code, std::string title, const char* kindsWord) {
  return {.code = code, .title = std::move(title), .genre = kindsWord};
}

OnAirElement CampaignRow(const Recordset& grillePub, const char* kindsWord, int32_t code) {
  OnAirElement element = NewRow(code, grillePub.Text("ANNONCEUR"), kindsWord);
  element.file = grillePub.Text("FILENAMEAUDIO");
  element.lengthMs = grillePub.Int("DUREE");
  return element;
}

OnAirElement LabelledRow(const Recordset& record, const char* kindsWord, int32_t code) {
  OnAirElement element = NewRow(code, record.Text("LIBELLE"), kindsWord);
  element.file = record.Text("FILENAME");
  element.lengthMs = record.Int("DUREE");
  element.exitMs = Number(record, "POINTSORTIE");
  return element;
}

}  // namespace

OnAirElement MusicRow(const Recordset& card, bool lastPlayed) {
  return {.code = static_cast<int32_t>(card.Int("CODE")),
          .title = card.Text("AUTEUR"),
          .secondLine = card.Text("TITRE"),
          .genre = card.Text("GENRE"),
          .variety = card.Text("VARIETE"),
          .file = card.Text("FILENAME"),
          .lengthMs = card.Int("DUREE"),
          .exitMs = Number(card, "POINTSORTIE"),
          .introSec = Number(card, "INTRO"),
          .lastPlayed = lastPlayed ? card.Real("LASTDIFF") : 0};
}

OnAirElement MusicRow(const PackedCard& card, const CardTexts& texts) {
  const auto known = [](int32_t number) {
    return number == PackedCard::kNull ? std::nullopt : std::optional<int64_t>(number);
  };
  return {.code = card.code,
          .title = texts.ArtistAt(card.artist).spelling,
          .secondLine = std::string(TitleOf(card)),
          .genre = texts.GenreAt(card.genre).text,
          .variety = std::string(texts.VarietyAt(card.variety)),
          .file = std::string(FileOf(card)),
          .lengthMs = known(card.lengthMs).value_or(0),
          .exitMs = known(card.exitMs),
          .introSec = known(card.introSec),
          .lastPlayed = std::isinf(card.lastdiff) ? 0 : card.lastdiff};
}

OnAirElement JingleRow(const Recordset& jingle) {
  return LabelledRow(jingle, "JINGLE", Element::kJingle);
}
OnAirElement SpotRow(const Recordset& campaign) {
  return CampaignRow(campaign, "PUB", Element::kSpot);
}
OnAirElement NewsRow(const Recordset& campaign) {
  return CampaignRow(campaign, "RUB", Element::kNews);
}
OnAirElement OtherRow(const Recordset& other) {
  return LabelledRow(other, "AUTRES", Element::kOther);
}

OnAirElement VoiceTrackRow(const Recordset& vt) {
  const bool cut = vt.Bool("CUT");
  OnAirElement element =
      NewRow(Element::kVoiceTrack, cut ? "Voice Track Cut" : "Voice Track", "Voice Track");
  element.secondLine = vt.Text("CODE");
  element.voiceTrack = vt.Int("CODE");
  element.file = vt.Text("FILENAME");
  element.lengthMs = vt.Int("DUREE");
  element.liesOver = !cut;
  if (cut)
    element.exitMs = Number(vt, "POINTSORTIE");
  else
    element.startMs = Number(vt, "START");
  return element;
}

OnAirElement BeginExtractRow() {
  return NewRow(Element::kBeginExtract, "Begin Extrait", "");
}

OnAirElement RowOfHourPip(const std::string& file) {
  OnAirElement element = NewRow(Element::kHourPip, "Top Horaire", "TOP-H");
  element.file = file;
  return element;
}

OnAirElement PlaylistMarkerRow(int32_t code, const std::string& label) {
  OnAirElement element =
      NewRow(code, code == Element::kStartPlaylist ? "Start Playlist" : "End Playlist", "PLAYLIST");
  element.secondLine = label;
  return element;
}

}  // namespace zemo
