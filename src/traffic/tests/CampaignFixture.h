// A station with campaigns in its table, and an editor to work on them.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/real/files/WholeFiles.h"
#include "station/TextForms.h"
#include "support/TestStation.h"
#include "traffic/CampaignEditor.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignGrid.h"

namespace zemo::test {

inline constexpr const char* kMemo = "2026-11-21 12:00:00";  // a Saturday

class CampaignStation : public TestStation {
 public:
  explicit CampaignStation(const std::string& begin = kMemo) : TestStation(begin) { Load(); }

  // A row of GrillePub, weekly from 07 to 08 h at 00 and 30 where `fields` says nothing else; texts
  // with their quotes. Its CODE.
  int32_t AddCampaign(const std::map<std::string, std::string>& fields) {
    std::map<std::string, std::string> row = {{"CAMPAGNEDEPART", "'JOURNALIER'"},
                                              {"CAMPAGNEFIN", "'JOURNALIER'"},
                                              {"HDEPART", "'07'"},
                                              {"HFIN", "'08'"},
                                              {"DECOUPEH1", "'00'"},
                                              {"DECOUPEH2", "'30'"},
                                              {"FILENAMEAUDIO", "'/none.wav'"},
                                              {"DUREE", "15000"},
                                              {"ANNONCEUR", "'Advertiser'"},
                                              {"CATEGORIE", "'FOOD'"},
                                              {"FILENAMEGRILLE", "''"},
                                              {"PRIORITY", "10"},
                                              {"CONTACT", "''"},
                                              {"PUB", "-1"}};
    for (const auto& [name, value] : fields) row[name] = value;
    std::string names, values;
    for (const auto& [name, value] : row) {
      names += (names.empty() ? "" : ", ") + name;
      values += (values.empty() ? "" : ", ") + value;
    }
    Sql("INSERT INTO GrillePub (" + names + ") VALUES (" + values + ")");
    return ValInt(SqlText("SELECT MAX(CODE) FROM GrillePub"));
  }

  std::string File(const std::string& name) const {
    return ReadWholeFile(stationDir.Path() + "/" + name).value_or("(no file)");
  }
  std::string InFolder(const std::string& name) const { return stationDir.Path() + "/" + name; }

  // The last message's text, or "" when none was shown.
  std::string LastMessage() const {
    const auto shown = Events("message");
    return shown.empty() ? std::string() : shown.back()["text"];
  }

  CampaignEditor editor;
};

// A form with these dates and hours and no marks but those given.
inline CampaignForm FormOf(const std::string& from, const std::string& to,
                           const std::vector<std::string>& marks = {"00"},
                           const std::string& firstHour = "07",
                           const std::string& lastHour = "07") {
  CampaignForm form;
  form.LblDepartPub = from;
  form.LblFinPub = to;
  form.HDepPub = firstHour;
  form.HFinPub = lastHour;
  for (size_t i = 0; i < marks.size(); ++i) form.DecoupagePub[i] = marks[i];
  return form;
}

// A row of the grid from column `first` on, its cells between blanks.
inline std::string RowText(const TextGrid& grid, int row, int first = 1) {
  std::string text;
  for (int column = first; column < GridColumns(grid); ++column)
    text += (column == first ? "" : " ") + grid.Cell(row, column);
  return text;
}

// The moments of the grid between blanks.
inline std::string MomentsText(const TextGrid& grid) {
  std::string text;
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row)
    text += (text.empty() ? "" : " ") + grid.Cell(row, 0);
  return text;
}

}  // namespace zemo::test
