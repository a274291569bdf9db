// The day's grid on paper.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zemo {

class DayGrid;

// Words and figures of the print: font "Courier", its size asked with this question and default.
inline constexpr const char* kPrintFont = "Courier";
inline constexpr const char* kPrintSizeQuestion = "Entrez la taille de la police";
inline constexpr const char* kPrintSizeDefault = "6";
// Points; at least 6, also for an answer that is no number.
int PrintSize(std::string_view answer);

// A line a row, the heading first and an empty line behind it: the cells up to the first empty one,
// a blank between them.
std::vector<std::string> PrintedDayGrid(const DayGrid& grid);

}  // namespace zemo
