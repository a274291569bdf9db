// Where the parts of the check put what they find.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "app/check/Check.h"

namespace zemo {

class Findings {
 public:
  explicit Findings(const std::function<void(const Finding&)>& found) : found_(found) {}

  void Error(std::string kind, std::string what, std::string why) {
    found_({Severity::kError, std::move(kind), std::move(what), std::move(why)});
  }
  void Warning(std::string kind, std::string what, std::string why) {
    found_({Severity::kWarning, std::move(kind), std::move(what), std::move(why)});
  }

 private:
  const std::function<void(const Finding&)>& found_;  // the caller's
};

}  // namespace zemo
