#include "app/demo/LocaleLanguage.h"

#include <array>
#include <cstdlib>
#include <exception>

#include "platform/Folder.h"
#include "station/BaseFiles.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

int LanguageOf(std::string_view locale) {
  constexpr std::array<std::string_view, 4> kByLangue{"fr", "en", "pt", "es"};
  const std::string_view word = locale.substr(0, locale.find_first_of("_.@"));
  for (size_t langue = 0; langue < kByLangue.size(); ++langue)
    if (EqualNoCase(word, kByLangue[langue])) return static_cast<int>(langue);
  return 0;
}

int LanguageOfLocale() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
    if (const char* locale = std::getenv(variable); locale && *locale) return LanguageOf(locale);
  return 0;
}

bool HoldsNoBase(const Station& station) {
  if (!station.base.IsFile()) return false;
  const Folder& folder = station.platform.stationFolder;
  for (const char* name : {BaseFile::kBackup, BaseFile::kCopy, BaseFile::kNew})
    if (folder.Exists(name)) return false;
  return !folder.Exists(BaseFileName(station));
}

void GiveNewStationItsLanguage(Station& station) {
  try {
    if (!station.base.IsOpen()) return;
    const auto row = station.base.Table("Cnf");
    row->Edit();
    row->Set("Langue", int64_t{LanguageOfLocale()});
    row->Update();
    station.base.CheckCnf();
  } catch (const std::exception&) {
    LogCurrentException(station, "Form_Load");
  }
}

}  // namespace zemo
