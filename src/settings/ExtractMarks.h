// Marks of an extract, in the file beside a sound file: "x.mar", two numbers of ms.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zemo {

struct Station;

struct ExtractMarks {
  int32_t startMs = 0;
  int32_t endMs = 0;  // 0 without a second number
  bool operator==(const ExtractMarks&) const = default;
};

// Both throw FileError. Thread: the logic's.

// nullopt without the file.
std::optional<ExtractMarks> ReadExtractMarks(const Station& station, std::string_view soundFile);
// Over a file that is read-only as well. Without marks, both 0, the file goes.
void WriteExtractMarks(Station& station, std::string_view soundFile, const ExtractMarks& marks);

}  // namespace zemo
