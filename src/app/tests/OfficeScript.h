// A script that works on the screens of the office, from outside: its trace, and the base behind
// it.
#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "BlackBox.h"

namespace zemo {

using Json = nlohmann::json;

class OfficeScript : public BlackBox {
 protected:
  std::vector<Json> trace_;

  // Each order a second behind the one before.
  void Drive(const std::vector<std::string>& orders) {
    std::string script;
    for (const std::string& order : orders) script += "+1 " + order + "\n";
    Put("script", script);
    const Result result =
        Run("simulate --station station --machine machine --in-place --no-start --for 120 "
            "--from \"2026-11-21 10:00:00\" --script script --trace trace");
    ASSERT_EQ(result.status, 0) << result.err;
    for (const std::string& line : LinesOf(ReadText(root_ / "trace")))
      trace_.push_back(Json::parse(line));
  }
  std::vector<Json> Events(const std::string& name) const {
    std::vector<Json> events;
    for (const Json& json : trace_)
      if (json["event"] == name) events.push_back(json);
    return events;
  }
  static bool IsOff(const Json& screen, const std::string& control) {
    const auto& off = screen["off"];
    return std::find(off.begin(), off.end(), control) != off.end();
  }
  std::string Sql(const std::string& query) const {
    return Shell("sqlite3 station/Triskin.MDB \"" + query + "\"").out;
  }
};

}  // namespace zemo
