#include "traffic/AffidavitTable.h"

#include <cstdlib>

#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/AffidavitTexts.h"
#include "traffic/GridDamageTexts.h"

namespace zemo {

namespace {

constexpr size_t kRowsOfPage = 56;
constexpr std::array<int, DiffCol::kCount> kCharacters = {19, 19, 7, 13,
                                                          82, 10, 8, 18};  // on paper
constexpr std::array<double, DiffCol::kCount> kSheetWidths = {20, 20, 8, 9, 34, 6, 10, 44};

std::string MomentText(const LocalDateTime& moment) {
  return DateText(moment) + " " + TimeText(moment);
}

AffidavitCells HeadsOf(int langue) {
  AffidavitCells heads;
  for (size_t column = 0; column < heads.size(); ++column)
    heads[column] = AffidavitWord("ListDiff." + std::to_string(column), langue);
  return heads;
}

const char* WordOf(CrossState state) {
  switch (state) {
    case CrossState::kAired:
      return "Aired";
    case CrossState::kMissed:
      return "Missed";
    case CrossState::kToCome:
      return "ToCome";
    case CrossState::kExtra:
      return "Extra";
    case CrossState::kDamaged:
      return "Damaged";
  }
  return "";
}

std::string KindWord(bool spot, int langue) {
  return AffidavitWord(spot ? "Spot" : "News", langue);
}

AffidavitRow RowOf(const AffidavitLine& line, int langue) {
  AffidavitRow row;
  row.state = line.aired   ? CrossState::kAired
              : line.isDue ? CrossState::kMissed
                           : CrossState::kToCome;
  row.cells = {MomentText(line.due),
               line.aired ? MomentText(*line.aired) : "",
               line.aired ? LateText(line.lateSec) : "",
               AffidavitWord(WordOf(row.state), langue),
               ShownReason(line.missed, langue),
               KindWord(line.spot, langue),
               std::to_string(line.campaign),
               line.file};
  return row;
}

// The file by its name alone.
std::string PaperLine(AffidavitCells cells) {
  std::string& file = cells[DiffCol::kFile];
  file.erase(0, file.find_last_of("/\\") + 1);
  std::string text;
  for (size_t column = 0; column < cells.size(); ++column)
    (text += column > 0 ? " " : "") += PaddedText(OneLine(cells[column]), kCharacters[column]);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string TitleOf(const AffidavitHead& head, int langue) {
  return AffidavitWord("title", langue) + " - " + head.advertiser + " " +
         AffidavitWord("From", langue) + " " + head.from + " " + AffidavitWord("To", langue) + " " +
         head.to;
}

}  // namespace

AffidavitTotals TotalsOf(const Affidavit& affidavit) {
  AffidavitTotals totals{.crosses = affidavit.lines.size(),
                         .extras = affidavit.extras.size(),
                         .damaged = affidavit.damages.size()};
  for (const AffidavitLine& line : affidavit.lines) {
    totals.aired += line.aired.has_value();
    totals.missed += !line.missed.empty();
    totals.toCome += !line.aired && line.missed.empty();
  }
  return totals;
}

std::string TotalsInWords(const AffidavitTotals& totals, int langue) {
  std::string text;
  const auto add = [&](const char* word, size_t count) {
    (text += text.empty() ? "" : ", ") +=
        WithPlace(AffidavitWord(word, langue), std::to_string(count));
  };
  add("Crosses", totals.crosses);
  add("AiredCount", totals.aired);
  add("MissedCount", totals.missed);
  if (totals.toCome > 0) add("ToComeCount", totals.toCome);
  if (totals.extras > 0) add("ExtraCount", totals.extras);
  if (totals.damaged > 0) add("DamagedCount", totals.damaged);
  return text;
}

std::string LateText(int64_t seconds) {
  const int64_t whole = std::abs(seconds);
  const std::string minutes = std::to_string(whole / 60);
  return (seconds < 0 ? "-" : "+") + (minutes.size() < 2 ? "0" + minutes : minutes) + ":" +
         TwoDigits(static_cast<int>(whole % 60));
}

std::vector<AffidavitRow> AffidavitRows(const Affidavit& affidavit, int langue) {
  std::vector<AffidavitRow> rows;
  for (const AffidavitLine& line : affidavit.lines) rows.push_back(RowOf(line, langue));
  for (const LocalDateTime& aired : affidavit.extras) {
    AffidavitRow& row = rows.emplace_back();
    row.state = CrossState::kExtra;
    row.cells[DiffCol::kAired] = MomentText(aired);
    row.cells[DiffCol::kState] = AffidavitWord(WordOf(row.state), langue);
  }
  for (const AffidavitDamage& damage : affidavit.damages) {
    AffidavitRow& row = rows.emplace_back();
    row.state = CrossState::kDamaged;
    row.cells = {"",
                 "",
                 "",
                 AffidavitWord(WordOf(row.state), langue),
                 ShownDamage(damage.why, langue),
                 KindWord(damage.spot, langue),
                 std::to_string(damage.campaign),
                 damage.file};
  }
  return rows;
}

PrintedPages AffidavitPages(const AffidavitHead& head, const Affidavit& affidavit, int langue) {
  PrintedPages printed{.title = TitleOf(head, langue), .pages = {}};
  const std::string heads = PaperLine(HeadsOf(langue));
  size_t onPage = kRowsOfPage;
  for (const AffidavitRow& row : AffidavitRows(affidavit, langue)) {
    if (onPage == kRowsOfPage) {
      const std::string number = std::to_string(printed.pages.size() + 1);
      printed.pages.push_back(
          {printed.title + "  " + WithPlace(AffidavitWord("Page", langue), number), "", heads});
      onPage = 0;
    }
    printed.pages.back().push_back(PaperLine(row.cells));
    ++onPage;
  }
  if (!printed.pages.empty()) {
    printed.pages.back().emplace_back();
    printed.pages.back().push_back(TotalsInWords(TotalsOf(affidavit), langue));
  }
  return printed;
}

Sheet AffidavitSheet(const std::string& line, const AffidavitCells& heads,
                     const std::vector<AffidavitCells>& rows) {
  Sheet sheet{
      .name = "Affidavit", .cells = {}, .columnWidths = {kSheetWidths.begin(), kSheetWidths.end()}};
  int row = 0;
  const auto put = [&](int column, const std::string& text, SheetCell::Style style) {
    const bool number = style == SheetCell::Style::kPlain &&
                        (column == DiffCol::kLate || column == DiffCol::kCampaign);
    sheet.cells.push_back({row, column, text, Val(text), number, style});
  };
  put(0, line, SheetCell::Style::kTotal);
  row = 2;
  for (int column = 0; column < DiffCol::kCount; ++column)
    put(column, heads[static_cast<size_t>(column)], SheetCell::Style::kHeading);
  for (const AffidavitCells& cells : rows) {
    ++row;
    for (int column = 0; column < DiffCol::kCount; ++column)
      if (const std::string& text = cells[static_cast<size_t>(column)]; !text.empty())
        put(column, text, SheetCell::Style::kPlain);
  }
  return sheet;
}

Sheet AffidavitSheet(const AffidavitHead& head, const Affidavit& affidavit, int langue) {
  std::vector<AffidavitCells> rows;
  for (const AffidavitRow& row : AffidavitRows(affidavit, langue)) rows.push_back(row.cells);
  for (size_t line = 0; line < affidavit.lines.size(); ++line)
    if (affidavit.lines[line].aired)
      rows[line][DiffCol::kLate] = std::to_string(affidavit.lines[line].lateSec);
  return AffidavitSheet(TitleOf(head, langue) + ": " + TotalsInWords(TotalsOf(affidavit), langue),
                        HeadsOf(langue), rows);
}

}  // namespace zemo
