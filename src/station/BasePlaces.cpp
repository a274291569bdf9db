#include "station/BasePlaces.h"

#include <stdexcept>

#include "platform/Folder.h"
#include "station/BaseFiles.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/postgres/ServerUrl.h"

namespace zemo {

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";  // of UTF-8, which editors put ahead
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

BasePlace Faulty(const Folder& folder, std::string fault) {
  BasePlace place = FilePlace(folder.PathOf(BaseFile::kIni));
  place.isFile = false;
  place.fault = std::move(fault);
  return place;
}

BasePlace Named(const Folder& folder, const char* name) {
  try {
    return ServerPlace(ReadBaseUrl(folder, name));
  } catch (const std::exception& error) {
    return Faulty(folder, error.what());
  }
}

}  // namespace

std::string ReadBaseUrl(const Folder& folder, std::string_view name) {
  const std::string bytes = folder.Read(name).value_or("");  // FileError tells path and reason
  std::string_view text = bytes;
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  text = Trimmed(text);
  const std::string path = folder.PathOf(name);
  if (text.empty())
    throw std::runtime_error(path + " is empty: its line is the URL of the base on its server");
  if (text.find('\n') != std::string_view::npos || text.find('\r') != std::string_view::npos)
    throw std::runtime_error(path + " holds more than one line");
  std::string url(text);
  if (const std::string why = WhyNoServerUrl(url); !why.empty())
    throw std::runtime_error(path + ' ' + why);
  return url;
}

bool NamesBase(const Folder& folder) {
  return folder.Exists(BaseFile::kBase) || folder.Exists(BaseFile::kIni) ||
         folder.Exists(BaseFile::kMovedIni);
}

BasePlace PlaceOfBase(const Folder& folder) {
  const bool file = folder.Exists(BaseFile::kBase);
  if (folder.Exists(BaseFile::kIni)) {
    if (!file) return Named(folder, BaseFile::kIni);
    return Faulty(folder, folder.Path() + " holds both " + BaseFile::kBase + " and " +
                              BaseFile::kIni + ": only one of them can name the base");
  }
  if (!file && folder.Exists(BaseFile::kMovedIni)) return Named(folder, BaseFile::kMovedIni);
  return FilePlace(folder.PathOf(BaseFile::kBase));
}

}  // namespace zemo
