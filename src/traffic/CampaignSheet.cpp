#include "traffic/CampaignSheet.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

constexpr int kMomentWidth = 6, kDayWidth = 3;  // characters

std::string Padded(const std::string& text, int width) {
  const int missing = width - CharacterCount(text);
  return missing > 0 ? text + std::string(static_cast<size_t>(missing), ' ') : text;
}

// Of the columns from `first` on and ahead of `end`.
std::string GridLine(const TextGrid& grid, int row, int first, int end) {
  std::string line = Padded(grid.Cell(row, 0), kMomentWidth);
  for (int column = first; column < end; ++column) {
    const std::string& cell = grid.Cell(row, column);
    line += Padded(row >= kFirstMomentRow && cell == kCross ? "x" : cell, kDayWidth);
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::string Marks(const CampaignForm& form) {
  std::string text;
  for (const std::string& mark : form.DecoupagePub)
    if (!Trim(mark).empty()) text += (text.empty() ? "" : " ") + Trim(mark);
  return text;
}

// Puts lines on pages, each below its heading.
class Sheet {
 public:
  explicit Sheet(std::string heading) : heading_(std::move(heading)) { BeginPage(); }

  void Add(const std::string& line) { printed_.pages.back().push_back(OneLine(line)); }
  bool HasRoomFor(size_t lines) const {
    return printed_.pages.back().size() + lines <= kSheetLines;
  }
  void BeginPage() {
    printed_.pages.push_back({heading_ + "  " + std::to_string(printed_.pages.size() + 1)});
  }
  PrintedPages Pages() && {
    printed_.title = Trim(heading_);
    return std::move(printed_);
  }

 private:
  std::string heading_;
  PrintedPages printed_;
};

void AddRecord(const CampaignForm& form, Sheet& sheet) {
  for (const std::string& line :
       {"Campagne du " + form.LblDepartPub + " au " + form.LblFinPub,
        "Heure de départ " + form.HDepPub + " Heure de fin " + form.HFinPub,
        "Découpage de l'heure " + Marks(form), "Fichier audio " + form.FichierAudio,
        "Durée " + form.LblTemp + "  Ordre de passage " + form.ComboPriority,
        "Soit " + form.LblTotalMsg + " messages sur " + form.LblTotalJours})
    sheet.Add(line);
}

// The days of the columns from `first` on, and their moments; on each page the days anew.
void AddDays(const TextGrid& grid, int first, Sheet& sheet) {
  const int end = std::min(GridColumns(grid), first + static_cast<int>(kSheetDays));
  const auto add = [&](int row) { sheet.Add(GridLine(grid, row, first, end)); };
  const auto addHeads = [&] {
    sheet.Add("");
    for (int row = 0; row < std::min(kFirstMomentRow, grid.RowCount()); ++row) add(row);
  };
  if (!sheet.HasRoomFor(kFirstMomentRow + 2)) sheet.BeginPage();
  addHeads();
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row) {
    if (!sheet.HasRoomFor(1)) {
      sheet.BeginPage();
      addHeads();
    }
    add(row);
  }
}

}  // namespace

std::vector<std::string> GridLines(const TextGrid& grid) {
  std::vector<std::string> lines;
  for (int row = 0; row < grid.RowCount(); ++row)
    lines.push_back(GridLine(grid, row, kFirstDayColumn, GridColumns(grid)));
  return lines;
}

PrintedPages SheetPages(const CampaignForm& form) {
  Sheet sheet(OneLine(" FICHE " + form.LblCode + " - " + form.ChAnnonceur));
  AddRecord(form, sheet);
  for (int first = kFirstDayColumn; first < GridColumns(form.GPub);
       first += static_cast<int>(kSheetDays))
    AddDays(form.GPub, first, sheet);
  return std::move(sheet).Pages();
}

PrintedPages Campaigns::BtnImprimer_Click(Station& station, const CampaignForm& form) {
  PrintedPages printed = SheetPages(form);
  try {
    std::vector<std::string> lines;
    for (const auto& page : printed.pages) lines.insert(lines.end(), page.begin(), page.end());
    if (!form.FichierAudio.empty())
      CampaignFile(SideFilePath(form.FichierAudio, "Xlt")).Write(station, JoinLines(lines));
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnImprimer");
  }
  return printed;
}

}  // namespace zemo
