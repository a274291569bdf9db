// NAME=VALUE lines of the machine folder's files, which people edit by hand.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace zemo {

// Views into the bytes that were read.
struct NameValueLine {
  std::string_view name;   // without blanks around it
  std::string_view value;  // the same
  size_t valueBegin = 0;   // offset of all that stands behind '=' in the line, blanks included
  size_t valueLength = 0;
};

std::string_view WithoutBlanks(std::string_view text);  // around it: spaces and tabs

// The lines that hold a '=', in their order. Lines end with CR, LF or both; a byte order mark is
// passed over.
std::vector<NameValueLine> NameValueLines(std::string_view bytes);

}  // namespace zemo
