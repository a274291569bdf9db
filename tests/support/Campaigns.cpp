#include "support/Campaigns.h"

#include <algorithm>

#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/SqlText.h"
#include "store/Value.h"

namespace zemo::test {

namespace {
double SerialOf(const std::string& ddmmyyyy) {
  return DaySerial(ValInt(ddmmyyyy.substr(6)), ValInt(ddmmyyyy.substr(3, 2)),
                   ValInt(ddmmyyyy.substr(0, 2)));
}
}  // namespace

int DayColumns(const Campaign& campaign) {
  if (campaign.from == "JOURNALIER") return 7;
  if (campaign.to == "JOURNALIER") return 366;
  const auto days = static_cast<int>(SerialOf(campaign.to) - SerialOf(campaign.from)) + 1;
  return days >= 1 && days <= 365 ? days : 366;
}

std::string GridFileText(const Campaign& campaign) {
  const int columns = DayColumns(campaign);
  std::string text;
  for (int hour = campaign.firstHour; hour <= campaign.lastHour; ++hour)
    for (const std::string& mark : campaign.marks) {
      const std::string moment = TwoDigits(hour) + ":" + mark;
      const bool crossed = std::ranges::count(campaign.crosses, moment) > 0;
      for (int column = 1; column <= columns; ++column) {
        const bool day = campaign.column == 0 || campaign.column == column;
        text += crossed && day ? "X\r\n" : "\r\n";
      }
    }
  return text;
}

std::string GridFileOf(const std::string& soundFile) {
  return soundFile.substr(0, soundFile.size() - 3) + "GPB";
}

int32_t AddCampaign(TestStation& on, const Campaign& campaign) {
  std::string file = campaign.file;
  if (file.empty())
    file = on.MakeSound("campaign" + on.SqlText("SELECT COUNT(*) FROM GrillePub") + ".wav",
                        campaign.lengthMs);
  const std::string gridFile = GridFileOf(file);
  if (campaign.gridFile)
    on.MakeFile(gridFile.substr(on.stationDir.Path().size() + 1), GridFileText(campaign));
  std::string fields =
      "CAMPAGNEDEPART, CAMPAGNEFIN, HDEPART, HFIN, FILENAMEAUDIO, DUREE, ANNONCEUR, CATEGORIE, "
      "FILENAMEGRILLE, PRIORITY, CONTACT, PUB, GENREASSOCIE";
  std::string values = Quoted(campaign.from) + "," + Quoted(campaign.to) + "," +
                       Quoted(TwoDigits(campaign.firstHour)) + "," +
                       Quoted(TwoDigits(campaign.lastHour)) + "," + Quoted(file) + "," +
                       std::to_string(campaign.lengthMs) + "," + Quoted(campaign.advertiser) +
                       ",''," + Quoted(gridFile) + "," + std::to_string(campaign.priority) +
                       ",''," + (campaign.spot ? "-1" : "0") + "," + Quoted(campaign.genre);
  for (size_t i = 0; i < campaign.marks.size(); ++i) {
    fields += ", DECOUPEH" + std::to_string(i + 1);
    values += "," + Quoted(campaign.marks[i]);
  }
  on.Sql("INSERT INTO GrillePub (" + fields + ") VALUES (" + values + ")");
  return ValInt(on.SqlText("SELECT MAX(CODE) FROM GrillePub"));
}

}  // namespace zemo::test
