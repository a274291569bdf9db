// How a command tells what went wrong: one line on standard error, beginning with the program's
// name.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

// Any thread. One line whatever the text holds: without control characters, and cut where it is
// longer than anybody reads.
void PrintError(std::string_view text);

// UTF-8, without what would move the cursor of a terminal or end the line.
std::string Printable(std::string_view text);

}  // namespace zemo
