// How a command tells what went wrong: one line on standard error, beginning with the program's
// name.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

// How grave a line is, as the system's log counts.
enum class Gravity { kError = 3, kWarning = 4 };

// Any thread. One line whatever the text holds: without control characters, and cut where it is
// longer than anybody reads. In the system's journal it has its gravity.
void PrintError(std::string_view text, Gravity gravity = Gravity::kError);

// UTF-8, without what would move the cursor of a terminal or end the line.
std::string Printable(std::string_view text);

}  // namespace zemo
