#include "library/LibraryPrint.h"

#include <array>
#include <string_view>

#include "library/LibraryEditor.h"
#include "library/LibraryScreen.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr size_t kRowsOfPage = 60;

struct PrintedColumn {
  const char* head;
  int column;      // of PLDisco
  int characters;  // of width, the blank behind it not counted
};
constexpr std::array<PrintedColumn, 5> kColumnsOfPage = {{
    {"Artiste", DiscoCol::kArtist, 28},
    {"Titre", DiscoCol::kTitle, 28},
    {"Genre", DiscoCol::kGenre, 16},
    {"Variété", DiscoCol::kVariety, 14},
    {"Durée", DiscoCol::kLength, 5},
}};

// By language and month.
constexpr std::array<std::array<const char*, 12>, 4> kShortMonths = {{
    {"janv.", "févr.", "mars", "avr.", "mai", "juin", "juil.", "août", "sept.", "oct.", "nov.",
     "déc."},
    {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"},
    {"jan", "fev", "mar", "abr", "mai", "jun", "jul", "ago", "set", "out", "nov", "dez"},
    {"ene", "feb", "mar", "abr", "may", "jun", "jul", "ago", "sep", "oct", "nov", "dic"},
}};

// Weekday, day, short month and year.
std::string PrintedDate(const LocalDateTime& today, int langue) {
  const std::string date = LongDateText(today, langue);
  const size_t language = langue >= 0 && langue < 4 ? static_cast<size_t>(langue) : 0;
  return date.substr(0, date.find(' ')) + " " + TwoDigits(today.day) + " " +
         kShortMonths[language][static_cast<size_t>(today.month - 1)] + " " +
         std::to_string(today.year);
}

template <typename CellOf>
std::string Line(CellOf cellOf) {
  std::string line;
  for (const PrintedColumn& column : kColumnsOfPage) {
    if (!line.empty()) line += ' ';
    line += PaddedText(cellOf(column), column.characters);
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::vector<std::string> NewPage(const std::string& title, size_t number) {
  return {title + "  Page " + std::to_string(number),
          Line([](const PrintedColumn& column) { return std::string_view(column.head); })};
}

}  // namespace

PrintedPages Library::MnuImp_Click(Station& station, LibraryEditor& editor) {
  const auto langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
  PrintedPages printed;
  printed.title = "Impression discothèque du " + PrintedDate(station.Now(), langue);
  const CardList all = editor.PLDisco.Count() == 0 ? CardsByArtist(station, editor) : CardList();
  const CardList& list = editor.PLDisco.Count() == 0 ? all : editor.PLDisco;
  for (size_t row = 0; row < list.Count(); ++row) {
    if (row % kRowsOfPage == 0)
      printed.pages.push_back(NewPage(printed.title, printed.pages.size() + 1));
    printed.pages.back().push_back(
        Line([&](const PrintedColumn& column) { return list.Cell(row, column.column); }));
  }
  return printed;
}

}  // namespace zemo
