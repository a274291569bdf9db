// What the side-file routines share: their word, and texts read and written in the encoding of side
// files; none is read above kMostTextBytes. Both throw FileError.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zemo {

class Folder;

bool IsLoad(std::string_view action);
bool IsSave(std::string_view action);

// False for a file that is there and cannot be read. Never throws.
bool CanRead(const Folder& folder, std::string_view name);
std::optional<std::string> ReadSideFile(const Folder& folder, std::string_view name);  // UTF-8
void WriteSideFile(Folder& folder, std::string_view name, std::string_view utf8);
// The same for what the operator or the machine must find again after a power cut (see Folder).
void WriteSideFileDurably(Folder& folder, std::string_view name, std::string_view utf8);
// A line list, durably: an entry a line, in capitals.
void WriteLinesInCapitals(Folder& folder, std::string_view name,
                          const std::vector<std::string>& entries);

}  // namespace zemo
