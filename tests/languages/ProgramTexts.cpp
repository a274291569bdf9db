#include "languages/ProgramTexts.h"

#include <span>

#include "engine/screens/ForecastWindowTexts.h"
#include "engine/screens/OnAirWindowTexts.h"
#include "engine/screens/SkeletonWindowTexts.h"
#include "library/LibraryTexts.h"
#include "reports/ReportTexts.h"
#include "scheduling/ModelTexts.h"
#include "settings/SettingsTexts.h"
#include "station/OperatorWords.h"
#include "traffic/AffidavitTexts.h"
#include "traffic/CampaignTexts.h"
#include "ui/SharedTexts.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo::test {

namespace {

void Add(std::vector<TextRow>& rows, const std::string& table, std::span<const Word> words) {
  for (const Word& word : words) rows.push_back({table + ": " + word.name, word.texts});
}

void Add(std::vector<TextRow>& rows, const std::string& table, const WindowTexts& texts) {
  Add(rows, table, texts.words);
  for (const ScreenText& row : texts.controls)
    rows.push_back({table + ": " + row.control + " " + row.property, row.texts});
}

}  // namespace

std::vector<TextRow> ProgramTexts() {
  std::vector<TextRow> rows;
  Add(rows, "shared", SharedTexts());
  Add(rows, "main screen", OnAirWindowTexts());
  Add(rows, "forecast", ForecastWindowTexts());
  Add(rows, "skeleton", SkeletonWindowTexts());
  Add(rows, "library", LibraryCaptions());
  Add(rows, "selector", SelectorCaptions());
  Add(rows, "campaigns", CampaignCaptions());
  Add(rows, "affidavit", AffidavitCaptions());
  Add(rows, "models", ModelCaptions());
  Add(rows, "report", ReportCaptions());
  Add(rows, "settings", SettingsCaptions());
  Add(rows, "tips of the settings", SettingsTips());
  Add(rows, "voice track", VoiceTrackCaptions());
  for (const RoutineText& row : RoutineTexts()) {
    rows.push_back({std::string("routine: ") + row.routine, row.texts});
    if (!rows.back().texts[0]) rows.back().texts[0] = row.routine;
  }
  return rows;
}

}  // namespace zemo::test
