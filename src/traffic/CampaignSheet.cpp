#include "traffic/CampaignSheet.h"

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

std::string GridLine(const TextGrid& grid, int row) {
  std::string line = Padded(grid.Cell(row, 0), kMomentWidth);
  for (int column = kFirstDayColumn; column < GridColumns(grid); ++column) {
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

}  // namespace

std::vector<std::string> GridLines(const TextGrid& grid) {
  std::vector<std::string> lines;
  for (int row = 0; row < grid.RowCount(); ++row) lines.push_back(GridLine(grid, row));
  return lines;
}

std::vector<std::string> SheetLines(const CampaignForm& form) {
  std::vector<std::string> lines = {
      " FICHE " + form.LblCode + " - " + form.ChAnnonceur + "  1",  // the page number last
      "Campagne du " + form.LblDepartPub + " au " + form.LblFinPub,
      "Heure de départ " + form.HDepPub + " Heure de fin " + form.HFinPub,
      "Découpage de l'heure " + Marks(form),
      "Fichier audio " + form.FichierAudio,
      "Durée " + form.LblTemp + "  Ordre de passage " + form.ComboPriority,
      "Soit " + form.LblTotalMsg + " messages sur " + form.LblTotalJours,
      ""};
  for (std::string& line : GridLines(form.GPub)) lines.push_back(std::move(line));
  for (std::string& line : lines) line = OneLine(line);
  return lines;
}

std::vector<std::string> Campaigns::BtnImprimer_Click(Station& station, const CampaignForm& form) {
  std::vector<std::string> lines = SheetLines(form);
  try {
    if (!form.FichierAudio.empty())
      CampaignFile(SideFilePath(form.FichierAudio, "Xlt")).Write(station, JoinLines(lines));
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnImprimer");
  }
  return lines;
}

}  // namespace zemo
