#include "platform/NameValueLines.h"

#include <algorithm>

namespace zemo {

namespace {
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
}

std::string_view WithoutBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<NameValueLine> NameValueLines(std::string_view bytes) {
  std::vector<NameValueLine> lines;
  size_t at = bytes.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  while (at < bytes.size()) {
    const size_t end = std::min(bytes.find_first_of("\r\n", at), bytes.size());
    const size_t inLine = bytes.substr(at, end - at).find('=');
    if (inLine != std::string_view::npos) {
      const size_t equals = at + inLine;
      const std::string_view behind = bytes.substr(equals + 1, end - equals - 1);
      lines.push_back({WithoutBlanks(bytes.substr(at, equals - at)), WithoutBlanks(behind),
                       equals + 1, behind.size()});
    }
    at = end + 1;
  }
  return lines;
}

}  // namespace zemo
