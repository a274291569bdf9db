// Whole small files by their path on this system: read, replaced at one blow, written in part.
// Every fault but absence is a FileError: one line with the path and the system's reason.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zemo {

bool IsRegularFile(const std::string& path);
int64_t RegularFileSizeBytes(const std::string& path);  // -1 when absent

// nullopt when there is no such file, or no such folder.
std::optional<std::string> ReadWholeFile(const std::string& path);

// Writes beside the file and renames over it, so that a reader sees the old bytes or the new ones
// and a full disk leaves the old ones. The file keeps its permissions; a link stays and its target
// is replaced. Makes no folder.
void ReplaceWholeFile(const std::string& path, std::string_view bytes);

void AppendToFile(const std::string& path, std::string_view bytes);
// In place: bytes from `offset` on, all others as they were.
void PutIntoFile(const std::string& path, int64_t offset, std::string_view bytes);
void RemoveFile(const std::string& path);  // nothing when absent
void RenameFile(const std::string& from, const std::string& to);

}  // namespace zemo
