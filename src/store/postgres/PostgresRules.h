// The rules by which a server's base keeps the widths and ranges of fields. They are named for what
// they say: "007 width 40 AUTEUR", "012 range 16 INTRO". The number in front is the field's place:
// the server asks rules in the order of their names, and the first broken one is told.
#pragma once

#include <optional>
#include <string>

namespace zemo {

struct PostgresRule {
  bool isWidth = false;
  int number = 0;  // characters or bits
  std::string field;
};

std::string NameOfRule(size_t place, const PostgresRule& rule);
std::optional<PostgresRule> RuleNamed(const std::string& name);  // none: it is somebody else's

// A row that breaks the rule of this name, as the file refuses it; `message` is the server's.
// Throws StoreError.
[[noreturn]] void ThrowRule(const std::string& table, const std::string& name,
                            const std::string& message);

}  // namespace zemo
