// Where the sound goes, as the operator writes it: "device", "device:NAME", "null" or "file:PATH".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zemo {

struct OutputSpec {
  enum class Kind { kDevice, kNull, kFile };
  Kind kind = Kind::kDevice;
  std::string name;                // of the device, empty for the default one; path of the file
  bool wholeName = false;          // the device's name is whole, and a part of one will not do
  int64_t mostFrames = INT64_MAX;  // that the file takes
};

// nullopt when the text is none of the four forms.
std::optional<OutputSpec> ParseOutputSpec(std::string_view text);

}  // namespace zemo
