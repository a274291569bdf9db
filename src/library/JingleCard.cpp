#include "library/JingleCard.h"

#include <algorithm>
#include <vector>

#include "library/MusicCard.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Recordset.h"

namespace zemo {

namespace {

constexpr size_t kJinFieldsNeeded = 11;  // up to the last hour mask

int32_t ExitMs(int64_t ms) {
  return static_cast<int32_t>(std::clamp<int64_t>(ms, 0, kLatestExitMs));
}

std::string PlayedText(double serial) {
  if (serial == 0) return {};
  const LocalDateTime moment = FromDateSerial(serial);
  return DateText(moment) + "   " + TimeText(moment);
}

const char* Digit(bool on) {
  return on ? "1" : "0";
}

}  // namespace

void TakeJingle(const Recordset& discothequeJingle, JingleCard& card, HourMasks& masks) {
  const Recordset& row = discothequeJingle;
  card.code = static_cast<int32_t>(row.Int("CODE"));
  card.ChFileJingle = row.Text("FILENAME");
  card.longeurJingle = row.Text("DUREE");
  card.ChLibJingle = row.Text("LIBELLE");
  card.CheckSurimpression = row.Bool("SURIMPRESSION");
  masks.TakeFrom(row);
  card.CodeAssocie = static_cast<int32_t>(row.Int("CODEASSOCIE"));
  card.artist = card.LblArtisteAssocie = row.Text("ARTISTEASSOCIE");
  card.LblDiff = PlayedText(row.Real("LASTDIFF"));
  card.GenreAssocie = row.Text("GENREASSOCIE");
  card.EndofTitre = row.Bool("ENDOFTITRE");
  card.SliderPSJ = ExitMs(row.Int("POINTSORTIE"));
  card.ChAuteurJingle = row.Text("AUTEURCOMPOSITEUR");
  card.JingleExtraitYN = row.Bool("JingleExtraitYN");
  card.LblMMJJDebutJ = row.Text("MMJJDebut");
  card.LblMMJJFinJ = row.Text("MMJJFin");
}

void PutJingle(const JingleCard& card, const HourMasks& masks, Recordset& discothequeJingle) {
  Recordset& row = discothequeJingle;
  const auto flag = [&](const char* field, bool on) { row.Set(field, int64_t{on ? 1 : 0}); };
  row.Set("FILENAME", Trim(card.ChFileJingle));
  row.Set("DUREE", int64_t{ValInt(card.longeurJingle)});
  row.Set("LIBELLE", card.ChLibJingle);
  flag("SURIMPRESSION", card.CheckSurimpression);
  masks.PutInto(row);
  row.Set("CODEASSOCIE", int64_t{card.CodeAssocie});
  if (card.CodeAssocie == 0) row.Set("ARTISTEASSOCIE", card.artist);
  row.Set("GENREASSOCIE", card.GenreAssocie);
  flag("ENDOFTITRE", card.EndofTitre);
  row.Set("POINTSORTIE", int64_t{card.SliderPSJ});
  row.Set("AUTEURCOMPOSITEUR", card.ChAuteurJingle);
  flag("JingleExtraitYN", card.JingleExtraitYN);
  row.Set("MMJJDebut", card.LblMMJJDebutJ);
  row.Set("MMJJFin", card.LblMMJJFinJ);
}

void TakeShortElement(const Recordset& discothequeVirgule, ShortElementCard& card) {
  const Recordset& row = discothequeVirgule;
  card.code = static_cast<int32_t>(row.Int("CODE"));
  card.ChFileVirgule = row.Text("FILENAME");
  card.LongeurVirgule = row.Text("DUREE");
  card.ChLibVirgule = row.Text("LIBELLE");
  card.PSAutre = ExitMs(row.Int("POINTSORTIE"));
  card.CheckJingleRacro = row.Int("JingleRacro") == 1;
  card.Tch = static_cast<int32_t>(row.Int("TOUCHE"));
}

void PutShortElement(const ShortElementCard& card, Recordset& discothequeVirgule) {
  Recordset& row = discothequeVirgule;
  row.Set("FILENAME", Trim(card.ChFileVirgule));
  row.Set("DUREE", int64_t{ValInt(card.LongeurVirgule)});
  row.Set("LIBELLE", card.ChLibVirgule);
  row.Set("TOUCHE", int64_t{card.Tch});
  row.Set("POINTSORTIE", int64_t{card.PSAutre});
  row.Set("JingleRacro", int64_t{card.CheckJingleRacro ? 1 : 0});
}

void SetBareJingle(JingleCard& card, HourMasks& masks, int32_t exitMs) {
  JingleCard bare;
  bare.code = card.code;
  bare.ChFileJingle = card.ChFileJingle;
  bare.longeurJingle = card.longeurJingle;
  bare.ChLibJingle = ArtistFromPath(card.ChFileJingle);
  bare.SliderPSJ = ExitMs(exitMs);
  card = bare;
  masks.AllowAll();
}

void SetBareShortElement(ShortElementCard& card, int32_t exitMs) {
  card.ChLibVirgule = ArtistFromPath(card.ChFileVirgule);
  card.PSAutre = ExitMs(exitMs);
  card.CheckJingleRacro = false;
  card.Tch = 0;
}

std::string JinText(const JingleCard& card, const HourMasks& masks) {
  std::string maskRecord;
  for (int day = 1; day <= HourMasks::kDays; ++day)
    maskRecord += (day == 1 ? "" : ",") + QuotedField(masks.Mask(day));
  return JoinLines({QuotedField(card.ChLibJingle) + "," + QuotedField(card.GenreAssocie) + "," +
                        std::to_string(card.SliderPSJ) + "," + Digit(card.CheckSurimpression),
                    maskRecord, QuotedField(card.ChAuteurJingle), Digit(card.JingleExtraitYN)});
}

bool TakeJin(std::string_view text, JingleCard& card, HourMasks& masks) {
  const std::vector<SideField> fields = ReadFields(text);
  if (fields.size() < kJinFieldsNeeded) return false;
  size_t next = 0;
  card.ChLibJingle = fields[next++].text;
  card.GenreAssocie = fields[next++].text;
  card.SliderPSJ = ExitMs(ValInt(fields[next++].text));
  card.CheckSurimpression = fields[next++].AsBool(false);
  for (int day = 1; day <= HourMasks::kDays; ++day) masks.Take(day, fields[next++].text);
  if (next < fields.size()) card.ChAuteurJingle = fields[next++].text;
  if (next < fields.size()) card.JingleExtraitYN = fields[next++].AsBool(false);
  return true;
}

std::string Tx2Text(const ShortElementCard& card) {
  return JoinLines({OneLine(card.ChLibVirgule)});
}

void TakeTx2(std::string_view text, ShortElementCard& card) {
  if (!text.empty()) card.ChLibVirgule = Trim(TakeLine(text));
}

}  // namespace zemo
