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
};

// nullopt without the file. Throws FileError. Thread: the logic's.
std::optional<ExtractMarks> ReadExtractMarks(const Station& station, std::string_view soundFile);

}  // namespace zemo
