// The tables of README.md that stand in the program, too: a test holds the one against the other.
// When it fails it shows the rows as README.md should have them.
#pragma once

#include <fstream>
#include <string>

namespace zemo::test {

// The rows of the table with this head, a line each; empty where there is none.
inline std::string ReadmeTable(const std::string& path, const std::string& head) {
  std::ifstream file(path);
  std::string line, rows;
  while (std::getline(file, line) && line != head) {
  }
  std::getline(file, line);  // the rule below the head
  while (std::getline(file, line) && line.starts_with("|")) rows += line + "\n";
  return rows;
}

// A row of two cells, the first one as code.
inline std::string ReadmeRow(std::string code, const std::string& text) {
  for (size_t at = 0; (at = code.find('|', at)) != std::string::npos; at += 2)
    code.insert(at, "\\");
  return "| `" + code + "` | " + text + " |\n";
}

}  // namespace zemo::test
