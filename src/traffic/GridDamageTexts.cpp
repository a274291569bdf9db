#include "traffic/GridDamageTexts.h"

#include <optional>
#include <string_view>
#include <vector>

#include "station/LanguageTexts.h"

namespace zemo {

namespace {

// Each "%" is a place, which the words have in the order of the name.
// clang-format off
constexpr Word kDamages[] = {
    {"the grid file has % lines, the campaign's grid % cells: %", {"le fichier de grille a % lignes, la grille de la campagne % cases : %", "the grid file has % lines, the campaign's grid % cells: %", "o ficheiro da tabela tem % linhas, a tabela da campanha % células: %", "el fichero de la tabla tiene % líneas, la tabla de la campaña % casillas: %"}},
    {"line % of the grid file is neither X nor empty: %", {"la ligne % du fichier de grille n'est ni X ni vide : %", "line % of the grid file is neither X nor empty: %", "a linha % do ficheiro da tabela não é X nem está vazia: %", "la línea % del fichero de la tabla no es X ni está vacía: %"}},
    {"the grid file is larger than any grid: %", {"le fichier de grille est plus grand que toute grille : %", "the grid file is larger than any grid: %", "o ficheiro da tabela é maior do que qualquer tabela: %", "el fichero de la tabla es mayor que cualquier tabla: %"}},
    {"there is no hour % (0 to %", {"il n'y a pas d'heure % (de 0 à %", "there is no hour % (0 to %", "não há hora % (0 a %", "no hay hora % (de 0 a %"}},
    {"there is no minute % (0 to %", {"il n'y a pas de minute % (de 0 à %", "there is no minute % (0 to %", "não há minuto % (0 a %", "no hay minuto % (de 0 a %"}},
};
// clang-format on
constexpr char kPlace = '%';

using Places = std::vector<std::string_view>;

// What stands in the pattern's places, each as short as it can be and the last to the end; nothing
// where the text is another.
std::optional<Places> PlacesOf(std::string_view pattern, std::string_view text) {
  Places places;
  size_t place = pattern.find(kPlace);
  if (!text.starts_with(pattern.substr(0, place))) return std::nullopt;
  text.remove_prefix(place);
  while (true) {
    const size_t next = pattern.find(kPlace, place + 1);
    if (next == std::string_view::npos) break;
    const size_t at = text.find(pattern.substr(place + 1, next - place - 1));
    if (at == std::string_view::npos) return std::nullopt;
    places.push_back(text.substr(0, at));
    text.remove_prefix(at + next - place - 1);
    place = next;
  }
  places.push_back(text);
  return places;
}

std::string Filled(std::string_view words, const Places& places) {
  std::string text;
  size_t place = 0;
  for (const char letter : words)
    if (letter == kPlace)
      text += places[place++];
    else
      text += letter;
  return text;
}

}  // namespace

std::string ShownDamage(const std::string& damage, int langue) {
  for (const Word& row : kDamages)
    if (const auto places = PlacesOf(row.name, damage))
      return Filled(InLanguage(row.texts, langue), *places);
  return damage;
}

}  // namespace zemo
