#include "library/ImportReport.h"

#include <algorithm>
#include <span>
#include <utility>

#include "station/LanguageTexts.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kGenreShown = 30;  // characters
constexpr size_t kMostTold = 8;  // of genres or files in one line; the rest in one number

// clang-format off
constexpr Word kWords[] = {
    {"counts", {"%1 ajoutés, %2 déjà connus, %3 refusés", "%1 added, %2 known already, %3 refused", "%1 adicionados, %2 já conhecidos, %3 recusados", "%1 añadidos, %2 ya conocidos, %3 rechazados"}},
    {"refused", {"Refusés (%1) :", "Refused (%1):", "Recusados (%1):", "Rechazados (%1):"}},
    {"cuts", {"Textes coupés à la longueur de leur champ (%1) :", "Texts cut to their field (%1):", "Textos cortados à largura do campo (%1):", "Textos cortados al ancho de su campo (%1):"}},
    {"sames", {"Le même son sous un autre nom (%1) :", "The same sound under another name (%1):", "O mesmo som com outro nome (%1):", "El mismo sonido con otro nombre (%1):"}},
    {"short", {"%1 de moins d'une seconde de son : ", "%1 with less than a second of sound: ", "%1 com menos de um segundo de som: ", "%1 con menos de un segundo de sonido: "}},
    {"unknown", {"ImportGenres.Txt, ligne %1 : la station n'a pas le genre ", "ImportGenres.Txt, line %1: the station has no genre ", "ImportGenres.Txt, linha %1: a estação não tem o género ", "ImportGenres.Txt, línea %1: la emisora no tiene el género "}},
    {"card", {"fiche %1", "card %1", "ficha %1", "ficha %1"}},
    {"same", {"le même son que la fiche %1", "the same sound as card %1", "o mesmo som que a ficha %1", "el mismo sonido que la ficha %1"}},
    {"cut", {"%1 coupé à la longueur du champ", "%1 cut to its field", "%1 cortado à largura do campo", "%1 cortado al ancho del campo"}},
    {"foreign", {"%1 sans genre de la station, qu'aucun modèle ne demande (voir ImportGenres.Txt) : ", "%1 without a genre of the station's, which no model asks for (see ImportGenres.Txt): ", "%1 sem género da estação, que nenhum modelo pede (ver ImportGenres.Txt): ", "%1 sin género de la emisora, que ningún modelo pide (ver ImportGenres.Txt): "}},
    {"none", {"aucun", "none", "nenhum", "ninguno"}},
    {"others", {"autres", "others", "outros", "otros"}},
    {"artist", {"artiste", "artist", "artista", "artista"}},
    {"title", {"titre", "title", "título", "título"}},
    {"genre", {"genre", "genre", "género", "género"}},
    {"variety", {"variété", "variety", "variedade", "variedad"}},
    {"year", {"année", "year", "ano", "año"}},
    {"CD", {"CD", "CD", "CD", "CD"}},
    {"label", {"label", "label", "editora", "sello"}},
    {"composer", {"compositeur", "composer", "compositor", "compositor"}},
    {"album", {"album", "album", "álbum", "álbum"}},
    {"description", {"libellé", "description", "descrição", "descripción"}},
    {"author", {"auteur", "author", "autor", "autor"}},
};
// clang-format on

std::string Text(std::string_view name, int langue) {
  const char* text = FindWord(kWords, name, langue);
  return text ? text : std::string(name);
}

std::string Text(std::string_view name, int langue, int64_t number) {
  return WithPlace(Text(name, langue), std::to_string(number));
}

std::string CutTexts(const ImportedFile& file, int langue) {
  std::string texts;
  for (const char* text : file.cut)
    texts += (texts.empty() ? "" : "; ") + WithPlace(Text("cut", langue), Text(text, langue));
  return texts;
}

std::string SameSound(const ImportedFile& file, int langue) {
  return file.sameSoundAs > 0 ? Text("same", langue, file.sameSoundAs) : std::string();
}

}  // namespace

std::string ImportRemark(const ImportedFile& file, int langue) {
  std::string remark = file.reason;
  for (const std::string& more : {SameSound(file, langue), CutTexts(file, langue)})
    if (!more.empty()) remark += (remark.empty() ? "" : "; ") + more;
  return OneLine(remark);
}

void ImportReport::Add(const std::string& path, const ImportedFile& file) {
  ++counts_[static_cast<size_t>(file.result)];
  if (file.result == ImportedFile::Result::kRefused) {
    refused_.push_back({path, file});
    return;
  }
  if (file.result == ImportedFile::Result::kAdded && file.foreignGenre)
    ++foreignGenres_[FirstCharacters(OneLine(*file.foreignGenre), kGenreShown)];
  if (!file.cut.empty()) cut_.push_back({path, file});
  if (file.sameSoundAs > 0) same_.push_back({path, file});
  if (file.hardlySounds) hardlySound_.push_back({path, file});
}

std::string ImportReport::Counts(int langue) const {
  std::string text = Text("counts", langue);
  for (size_t result = 0; result < counts_.size(); ++result) {
    const std::string place = "%" + std::to_string(result + 1);
    text.replace(text.find(place), place.size(), std::to_string(counts_[result]));
  }
  return text;
}

std::string ImportReport::ForeignGenres(int langue) const {
  if (foreignGenres_.empty()) return {};
  std::vector<std::pair<size_t, std::string>> genres;  // the most frequent first
  size_t titles = 0;
  for (const auto& [genre, count] : foreignGenres_) {
    genres.emplace_back(count, genre.empty() ? Text("none", langue) : genre);
    titles += count;
  }
  std::stable_sort(genres.begin(), genres.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::string list;
  size_t told = 0;
  for (size_t i = 0; i < std::min(genres.size(), kMostTold); ++i) {
    list += (i > 0 ? ", " : "") + genres[i].second + " " + std::to_string(genres[i].first);
    told += genres[i].first;
  }
  if (told < titles) list += ", " + Text("others", langue) + " " + std::to_string(titles - told);
  return Text("foreign", langue, static_cast<int64_t>(titles)) + list;
}

std::string ImportReport::HardlySound(int langue) const {
  if (hardlySound_.empty()) return {};
  std::string list;
  const size_t told = std::min(hardlySound_.size(), kMostTold);
  for (size_t i = 0; i < told; ++i) {
    const auto& [path, file] = hardlySound_[i];
    list += (i > 0 ? ", " : "") + OneLine(path.substr(path.find_last_of('/') + 1)) + " (" +
            Text("card", langue, file.code) + ")";
  }
  if (told < hardlySound_.size())
    list += ", " + Text("others", langue) + " " + std::to_string(hardlySound_.size() - told);
  return Text("short", langue, static_cast<int64_t>(hardlySound_.size())) + list;
}

std::string ImportReport::Notes(int langue) const {
  std::string notes;
  const auto add = [&](const std::string& note) {
    if (!note.empty()) notes += note + "\n";
  };
  add(ForeignGenres(langue));
  for (const UnknownGenre& unknown : unknownGenres_)
    add(Text("unknown", langue, static_cast<int64_t>(unknown.line)) + OneLine(unknown.genre));
  add(HardlySound(langue));
  return notes;
}

std::string ImportReport::Lines(int langue) const {
  std::string lines;
  const auto begin = [&](const char* head, const std::vector<Told>& told) {
    if (!told.empty())
      lines += (lines.empty() ? "" : "\n") + Text(head, langue, static_cast<int64_t>(told.size())) +
               "\n";
  };
  begin("refused", refused_);
  for (const Told& told : refused_)
    lines += OneLine(told.path) + ": " + ImportRemark(told.file, langue) + "\n";
  const auto addCard = [&](const Told& told, const std::string& remark) {
    lines +=
        Text("card", langue, told.file.code) + "  " + OneLine(told.path) + ": " + remark + "\n";
  };
  begin("cuts", cut_);
  for (const Told& told : cut_) addCard(told, CutTexts(told.file, langue));
  begin("sames", same_);
  for (const Told& told : same_) addCard(told, SameSound(told.file, langue));
  return lines;
}

}  // namespace zemo
