// Reading of the operator's choice of output.
#include "platform/real/sound/OutputSpec.h"

namespace zemo {

std::optional<OutputSpec> ParseOutputSpec(std::string_view text) {
  constexpr std::string_view kDevicePrefix = "device:";
  constexpr std::string_view kFilePrefix = "file:";
  if (text == "device") return OutputSpec{OutputSpec::Kind::kDevice, "", false};
  if (text == "null") return OutputSpec{OutputSpec::Kind::kNull, "", false};
  if (text.starts_with(kDevicePrefix) && text.size() > kDevicePrefix.size()) {
    return OutputSpec{OutputSpec::Kind::kDevice, std::string(text.substr(kDevicePrefix.size())),
                      false};
  }
  if (text.starts_with(kFilePrefix) && text.size() > kFilePrefix.size()) {
    return OutputSpec{OutputSpec::Kind::kFile, std::string(text.substr(kFilePrefix.size())), false};
  }
  return std::nullopt;
}

}  // namespace zemo
