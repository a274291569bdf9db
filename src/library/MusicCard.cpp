#include "library/MusicCard.h"

#include <algorithm>
#include <vector>

#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "store/Recordset.h"

namespace zemo {

namespace {

constexpr size_t kEnding = 4;             // ".WAV"
constexpr size_t kMusFieldsNeeded = 23;   // all but the date window
constexpr size_t kOlderFieldsNeeded = 9;  // the first record

std::string OrBlank(const std::string& text) {
  return text.empty() ? " " : text;
}

std::string PlayField(size_t play) {
  return "DIFFUSION" + TwoDigits(static_cast<int>(play) + 1);
}

std::string Number(const std::string& text) {
  return std::to_string(ValInt(text));
}

int32_t ExitMs(int32_t ms) {
  return std::clamp(ms, 0, kLatestExitMs);
}

// Hands out the fields of a text one after the other; what is missing leaves its place as it is.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : fields_(ReadFields(text)) {}
  size_t Count() const { return fields_.size(); }
  bool AtEnd() const { return next_ >= fields_.size(); }
  void Skip() { ++next_; }
  void To(std::string& place) {
    if (!AtEnd()) place = fields_[next_].text;
    ++next_;
  }
  void ToExit(int32_t& place) {
    if (!AtEnd()) place = ExitMs(ValInt(fields_[next_].text));
    ++next_;
  }
  void ToMasks(HourMasks& masks) {
    for (int day = 1; day <= HourMasks::kDays; ++day, ++next_)
      if (!AtEnd()) masks.Take(day, fields_[next_].text);
  }

 private:
  std::vector<SideField> fields_;
  size_t next_ = 0;
};

}  // namespace

std::string TextOfName(std::string_view name) {
  std::string text = DecodeSideFile(name);
  const auto isControl = [](unsigned char letter) { return letter < 0x20 || letter == 0x7f; };
  std::replace_if(text.begin(), text.end(), isControl, ' ');
  return text;
}

std::string ArtistFromPath(std::string_view path) {
  const std::string name = TextOfName(path.substr(path.find_last_of("/\\") + 1));
  return FirstCharacters(name, std::max(0, CharacterCount(name) - static_cast<int>(kEnding)));
}

void TakeMusicCard(const Recordset& discotheque, MusicCard& card, HourMasks& masks) {
  const Recordset& row = discotheque;
  card.lblNumero = row.Text("CODE");
  card.ChFileName = row.Text("FILENAME");
  card.Longeur = row.Text("DUREE");
  card.ChIntro = row.Text("INTRO");
  card.ChAuteur = row.Text("AUTEUR");
  card.ChTitre = row.Text("TITRE");
  card.ChGenre = row.Text("GENRE");
  card.ChVariete = row.Text("VARIETE");
  card.ChAnne = Trim(row.Text("ANNEE"));
  card.ChNbPassJour = row.Text("NBPASSJOUR");
  card.ChEcartMinutes = row.Text("ECARTMINUTES");
  card.ChEcartJours = row.Text("ECARTJOURS");
  card.ChEcartArtiste = row.Text("ECARTARTISTE");
  masks.TakeFrom(row);
  for (size_t play = 0; play < kPlaysKept; ++play)
    card.ChDiffusion[play] = Trim(row.Text(PlayField(play)));
  card.ChCommentaire = row.Text("COMMENTAIRE");
  card.PointSortie = ExitMs(static_cast<int32_t>(row.Int("POINTSORTIE")));
  card.ChLabel = row.Text("LABEL");
  card.ChCD = row.Text("CD");
  card.ChAuteurCompositeur = row.Text("AUTEURCOMPOSITEUR");
  card.ChRefAlbum = row.Text("REFERENCE");
  card.LblMMJJDebut = row.Text("MMJJDebut");
  card.LblMMJJFin = row.Text("MMJJFin");
}

void PutMusicCard(const MusicCard& card, const HourMasks& masks, Recordset& discotheque) {
  Recordset& row = discotheque;
  const auto number = [&](const char* field, const std::string& text) {
    row.Set(field, int64_t{ValInt(text)});
  };
  row.Set("FILENAME", Trim(card.ChFileName));
  number("DUREE", card.Longeur);
  number("INTRO", card.ChIntro);
  row.Set("AUTEUR", card.ChAuteur);
  row.Set("TITRE", card.ChTitre);
  row.Set("GENRE", card.ChGenre);
  row.Set("VARIETE", card.ChVariete);
  row.Set("ANNEE", OrBlank(card.ChAnne));
  number("NBPASSJOUR", card.ChNbPassJour);
  number("ECARTMINUTES", card.ChEcartMinutes);
  number("ECARTJOURS", card.ChEcartJours);
  number("ECARTARTISTE", card.ChEcartArtiste);
  masks.PutInto(row);
  row.Set("COMMENTAIRE", card.ChCommentaire);
  row.Set("POINTSORTIE", int64_t{card.PointSortie});
  row.Set("LABEL", card.ChLabel);
  row.Set("CD", card.ChCD);
  row.Set("AUTEURCOMPOSITEUR", Trim(card.ChAuteurCompositeur));
  row.Set("REFERENCE", Trim(card.ChRefAlbum));
  row.Set("MMJJDebut", card.LblMMJJDebut);
  row.Set("MMJJFin", card.LblMMJJFin);
}

void PutPlays(const MusicCard& card, const MusicCard* shown, Recordset& discotheque) {
  for (size_t play = 0; play < kPlaysKept; ++play) {
    if (!shown)
      discotheque.Set(PlayField(play), std::string(" "));
    else if (card.ChDiffusion[play] != shown->ChDiffusion[play])
      discotheque.Set(PlayField(play), OrBlank(card.ChDiffusion[play]));
  }
}

void SetBareMusicCard(MusicCard& card, HourMasks& masks, int32_t exitMs) {
  MusicCard bare;
  bare.lblNumero = card.lblNumero;
  bare.ChFileName = card.ChFileName;
  bare.Longeur = card.Longeur;
  bare.ChDiffusion = card.ChDiffusion;
  bare.ChAuteur = ArtistFromPath(card.ChFileName);
  bare.ChGenre = "NOGENRE";
  bare.ChVariete = "NATIONAL";
  bare.ChNbPassJour = "1";
  bare.ChEcartMinutes = "120";
  bare.ChEcartJours = "0";
  bare.ChEcartArtiste = "0";
  bare.PointSortie = ExitMs(exitMs);
  card = bare;
  masks.AllowAll();
}

std::string MusText(const MusicCard& card, const HourMasks& masks) {
  const auto quoted = [](const std::string& text) { return QuotedField(text); };
  std::string maskRecord;
  for (int day = 1; day <= HourMasks::kDays; ++day)
    maskRecord += (day == 1 ? "" : ",") + quoted(masks.Mask(day));
  return JoinLines({quoted(card.ChAuteur) + "," + quoted(card.ChTitre) + "," +
                        quoted(card.ChGenre) + "," + quoted(card.ChVariete) + "," +
                        quoted(card.ChAnne) + "," + Number(card.ChIntro) + "," +
                        Number(card.ChNbPassJour) + "," + Number(card.ChEcartMinutes) + "," +
                        Number(card.ChEcartJours) + "," + Number(card.ChEcartArtiste),
                    std::to_string(card.PointSortie) + "," + quoted(card.ChLabel) + "," +
                        quoted(Trim(card.ChAuteurCompositeur)) + "," +
                        quoted(Trim(card.ChRefAlbum)) + "," + quoted(card.ChCD),
                    maskRecord, quoted(card.ChCommentaire),
                    quoted(card.LblMMJJDebut) + "," + quoted(card.LblMMJJFin)});
}

bool TakeMus(std::string_view text, MusicCard& card, HourMasks& masks) {
  FieldReader fields(text);
  if (fields.Count() < kMusFieldsNeeded) return false;
  for (std::string* place :
       {&card.ChAuteur, &card.ChTitre, &card.ChGenre, &card.ChVariete, &card.ChAnne, &card.ChIntro,
        &card.ChNbPassJour, &card.ChEcartMinutes, &card.ChEcartJours, &card.ChEcartArtiste})
    fields.To(*place);
  fields.ToExit(card.PointSortie);
  for (std::string* place :
       {&card.ChLabel, &card.ChAuteurCompositeur, &card.ChRefAlbum, &card.ChCD})
    fields.To(*place);
  fields.ToMasks(masks);
  fields.To(card.ChCommentaire);
  card.LblMMJJDebut.clear();
  card.LblMMJJFin.clear();
  fields.To(card.LblMMJJDebut);
  fields.To(card.LblMMJJFin);
  card.ChAnne = Trim(card.ChAnne);
  return true;
}

bool TakeOlderTxt(std::string_view text, MusicCard& card, HourMasks& masks) {
  FieldReader fields(text);
  if (fields.Count() < kOlderFieldsNeeded) return false;
  std::string varietyAsStored;
  for (std::string* place : {&card.ChAuteur, &card.ChTitre, &card.ChGenre, &varietyAsStored,
                             &card.ChAnne, &card.ChIntro, &card.ChNbPassJour})
    fields.To(*place);
  fields.Skip();
  fields.To(card.ChEcartMinutes);
  fields.To(card.ChEcartJours);
  fields.To(card.ChEcartArtiste);
  fields.ToExit(card.PointSortie);
  fields.To(card.ChLabel);
  fields.To(card.ChAuteurCompositeur);
  fields.To(card.ChRefAlbum);
  fields.ToMasks(masks);
  // Stations that come from the older form have their French titles by genre.
  const bool french = UpperLatin(card.ChGenre) == UpperLatin("FRANçAISE");
  card.ChVariete = french ? "NATIONAL" : "INTERNATIONAL";
  card.ChAnne = Trim(card.ChAnne);
  return true;
}

}  // namespace zemo
