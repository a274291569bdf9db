// A station's status, as the control socket gives it, for who reads it on a terminal.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace zemo {

// Some lines. Throws nlohmann's exceptions where a member is missing or of another kind.
std::string StatusText(const nlohmann::json& status);

}  // namespace zemo
