#include "library/ImportReport.h"

#include <span>

#include "station/LanguageTexts.h"
#include "station/SideFileText.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kWords[] = {
    {"counts", {"%1 ajoutés, %2 déjà connus, %3 refusés", "%1 added, %2 known already, %3 refused", "%1 adicionados, %2 já conhecidos, %3 recusados", "%1 añadidos, %2 ya conocidos, %3 rechazados"}},
    {"refused", {"refusé", "refused", "recusado", "rechazado"}},
    {"card", {"fiche %1", "card %1", "ficha %1", "ficha %1"}},
    {"same", {"le même son que la fiche %1", "the same sound as card %1", "o mesmo som que a ficha %1", "el mismo sonido que la ficha %1"}},
    {"cut", {"%1 coupé à la longueur du champ", "%1 cut to its field", "%1 cortado à largura do campo", "%1 cortado al ancho del campo"}},
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
