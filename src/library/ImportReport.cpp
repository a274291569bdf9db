#include "library/ImportReport.h"

#include <algorithm>
#include <span>
#include <utility>

#include "station/LanguageTexts.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kGenreShown = 30;    // characters
constexpr size_t kGenresTold = 8;  // the rest in one number

// clang-format off
constexpr Word kWords[] = {
    {"counts", {"%1 ajoutés, %2 déjà connus, %3 refusés", "%1 added, %2 known already, %3 refused", "%1 adicionados, %2 já conhecidos, %3 recusados", "%1 añadidos, %2 ya conocidos, %3 rechazados"}},
    {"refused", {"refusé", "refused", "recusado", "rechazado"}},
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

}  // namespace

std::string ImportRemark(const ImportedFile& file, int langue) {
  std::string remark = file.reason;
  const auto add = [&](const std::string& more) { remark += (remark.empty() ? "" : "; ") + more; };
  if (file.sameSoundAs > 0) add(Text("same", langue, file.sameSoundAs));
  for (const char* text : file.cut) add(WithPlace(Text("cut", langue), Text(text, langue)));
  return OneLine(remark);
}

void ImportReport::Add(const std::string& path, const ImportedFile& file) {
  ++counts_[static_cast<size_t>(file.result)];
  if (file.result == ImportedFile::Result::kAdded && file.foreignGenre)
    ++foreignGenres_[FirstCharacters(OneLine(*file.foreignGenre), kGenreShown)];
  if (file.result == ImportedFile::Result::kRefused)
    refused_.push_back({path, file});
  else if (file.sameSoundAs > 0 || !file.cut.empty())
    remarked_.push_back({path, file});
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
  for (size_t i = 0; i < std::min(genres.size(), kGenresTold); ++i) {
    list += (i > 0 ? ", " : "") + genres[i].second + " " + std::to_string(genres[i].first);
    told += genres[i].first;
  }
  if (told < titles) list += ", " + Text("others", langue) + " " + std::to_string(titles - told);
  return Text("foreign", langue, static_cast<int64_t>(titles)) + list;
}

std::string ImportReport::Lines(int langue) const {
  std::string lines;
  const auto add = [&](const std::string& result, const Told& told) {
    lines += result + "  " + OneLine(told.path) + ": " + ImportRemark(told.file, langue) + "\n";
  };
  for (const Told& told : refused_) add(Text("refused", langue), told);
  for (const Told& told : remarked_) add(Text("card", langue, told.file.code), told);
  return lines;
}

}  // namespace zemo
