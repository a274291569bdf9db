#include "glossary/Glossary.h"

#include <algorithm>
#include <regex>
#include <sstream>
#include <vector>

namespace zemo::test {

namespace {

// "TRANCHE01", "TRANCHE03": all from the one to the other, with as many digits.
std::vector<std::string> FromTo(const std::string& first, const std::string& last) {
  const size_t digits = first.find_last_not_of("0123456789") + 1;
  std::vector<std::string> names;
  for (int i = std::stoi(first.substr(digits)); i <= std::stoi(last.substr(digits)); ++i) {
    std::string number = std::to_string(i);
    number.insert(0, std::max(first.size() - digits, number.size()) - number.size(), '0');
    names.push_back(first.substr(0, digits) + number);
  }
  return names;
}

std::string WithoutComments(const std::string& code) {
  return std::regex_replace(code, std::regex("//[^\n]*"), "");
}

// Everything between a pair of brackets, the inner ones first, until there is none.
std::string WithoutInsides(std::string code, const std::string& pair) {
  const std::regex inside(pair);
  for (std::string next;; code = next) {
    next = std::regex_replace(code, inside, "");
    if (next == code) return code;
  }
}

// From "struct NAME" to the bracket that closes it.
std::string BodyOf(const std::string& code, const std::string& structName) {
  std::smatch head;
  if (!std::regex_search(code, head, std::regex("struct " + structName + "\\b[^;{]*\\{")))
    return {};
  const auto begin = static_cast<size_t>(head.position() + head.length());
  size_t end = begin;
  for (int depth = 1; end < code.size() && depth > 0; ++end)
    depth += code[end] == '{' ? 1 : code[end] == '}' ? -1 : 0;
  return code.substr(begin, end - begin - 1);
}

std::string ControlOf(const std::string& member) {
  static const std::regex property(
      "^(.+?)(Caption|Enabled|Visible|Checked|Pressed|Percent|Scrolling|Place)$");
  return std::regex_replace(member, property, "$1");
}

}  // namespace

std::map<std::string, Names> ReadGlossary(const std::string& text, Names& faults) {
  static const std::regex heading("^## (.*)$");
  static const std::regex row("^\\| `([^`]+)`(?: to `([^`]+)`)? \\| *(.*?) *\\|$");
  std::map<std::string, Names> sections;
  std::istringstream lines(text);
  std::string section;
  for (std::string line; std::getline(lines, line);) {
    std::smatch found;
    if (std::regex_match(line, found, heading)) section = found[1];
    if (!std::regex_match(line, found, row)) continue;
    const std::vector<std::string> names =
        found[2].matched ? FromTo(found[1], found[2]) : std::vector<std::string>{found[1]};
    if (found[3].length() == 0) faults.insert(section + ": " + names[0] + " has no text");
    for (const std::string& name : names)
      if (!sections[section].insert(name).second)
        faults.insert(section + ": " + name + " stands twice");
  }
  return sections;
}

Names ControlsIn(const std::string& header, const std::string& structName) {
  std::string body = BodyOf(WithoutComments(header), structName);
  body = std::regex_replace(body, std::regex("struct \\{"), "auto {");  // of one member alone
  body = WithoutInsides(std::regex_replace(body, std::regex("\"[^\"]*\""), ""), "\\{[^{}]*\\}");
  body = WithoutInsides(body, "<[^<>]*>");
  static const std::regex member("\\b([A-Z]\\w*)\\s*(\\[[^\\]]*\\])?\\s*(=[^,;]*)?(,|;|$)");
  Names names;
  std::istringstream statements(body);
  for (std::string statement; std::getline(statements, statement, ';');) {
    if (std::regex_match(statement, std::regex("\\s*(struct|enum class)\\s+\\w+\\s*"))) continue;
    for (std::sregex_iterator found(statement.begin(), statement.end(), member), end; found != end;
         ++found)
      names.insert(ControlOf((*found)[1]));
  }
  return names;
}

}  // namespace zemo::test
