#include "settings/ExtractMarks.h"

#include <string>

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "settings/SideFiles.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr const char* kBetween = ",;\t\r\n ";
}

std::optional<ExtractMarks> ReadExtractMarks(const Station& station, std::string_view soundFile) {
  const auto bytes = ReadBounded(station.platform.soundFiles, SideFilePath(soundFile, "mar"));
  if (!bytes) return std::nullopt;
  ExtractMarks marks;
  marks.startMs = static_cast<int32_t>(Val(*bytes));
  const size_t gap = bytes->find_first_of(kBetween, bytes->find_first_not_of(" \t\r\n"));
  if (gap == std::string::npos) return marks;
  const size_t second = bytes->find_first_not_of(kBetween, gap);
  if (second != std::string::npos)
    marks.endMs = static_cast<int32_t>(Val(std::string_view(*bytes).substr(second)));
  return marks;
}

void WriteExtractMarks(Station& station, std::string_view soundFile, const ExtractMarks& marks) {
  SoundFiles& files = station.platform.soundFiles;
  const std::string path = SideFilePath(soundFile, "mar");
  files.ClearReadOnly(path);
  if (marks == ExtractMarks()) return files.Remove(path);
  files.Write(path, std::to_string(marks.startMs) + "," + std::to_string(marks.endMs) + "\r\n");
}

}  // namespace zemo
