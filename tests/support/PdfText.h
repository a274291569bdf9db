// What a PDF says, read back by other hands than ours.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "support/Child.h"

namespace zemo::test {

// The words of a line with one blank between them.
inline std::string WordsOf(const std::string& line) {
  std::istringstream words(line);
  std::string text;
  for (std::string word; words >> word;) text += (text.empty() ? "" : " ") + word;
  return text;
}

// Page by page the lines that are not blank, by WordsOf.
inline std::vector<std::vector<std::string>> PagesOfPdf(const std::string& path) {
  std::vector<std::vector<std::string>> pages;
  std::string text = Child({"pdftotext", "-layout", path, "-"}).All();
  for (size_t end = text.find('\f'); end != std::string::npos; end = text.find('\f')) {
    std::istringstream lines(text.substr(0, end));
    pages.emplace_back();
    for (std::string line; std::getline(lines, line);)
      if (const std::string words = WordsOf(line); !words.empty()) pages.back().push_back(words);
    text.erase(0, end + 1);
  }
  return pages;
}

}  // namespace zemo::test
