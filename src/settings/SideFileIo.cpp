#include "settings/SideFileIo.h"

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"

namespace zemo {

bool IsLoad(std::string_view action) {
  return EqualNoCase(action, "Load");
}

bool IsSave(std::string_view action) {
  return EqualNoCase(action, "Save");
}

bool CanRead(const Folder& folder, std::string_view name) {
  try {
    ReadBounded(folder, name);
    return true;
  } catch (const FileError&) {
    return false;
  }
}

std::optional<std::string> ReadSideFile(const Folder& folder, std::string_view name) {
  const std::optional<std::string> bytes = ReadBounded(folder, name);
  if (!bytes) return std::nullopt;
  return DecodeSideFile(*bytes);
}

void WriteSideFile(Folder& folder, std::string_view name, std::string_view utf8) {
  folder.Write(name, EncodeSideFile(utf8));
}

void WriteSideFileDurably(Folder& folder, std::string_view name, std::string_view utf8) {
  folder.WriteDurably(name, EncodeSideFile(utf8));
}

void WriteLinesInCapitals(Folder& folder, std::string_view name,
                          const std::vector<std::string>& entries) {
  std::vector<std::string> lines;
  for (const std::string& entry : entries) lines.push_back(UpperLatin(OneLine(entry)));
  WriteSideFileDurably(folder, name, JoinLines(lines));
}

}  // namespace zemo
