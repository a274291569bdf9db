// Lines of text on paper or in a PDF, through the system's printer.
#pragma once

#include <string>
#include <vector>

class QPrinter;
class QWidget;

namespace zemo {

struct Questions;

inline constexpr const char* kNewPage = "\f";  // a line that begins the next page

std::vector<std::string> LinesOfPages(const std::vector<std::vector<std::string>>& pages);

// Page after page, each line as it stands; too long ones go on indented. False when the printer did
// not take it.
bool PrintLines(QPrinter& printer, const std::vector<std::string>& lines, const char* family,
                int points);

// Asks for the printer first; a failure is told.
void PrintOnPaper(QWidget* parent, const Questions& questions,
                  const std::vector<std::string>& lines, const char* family, int points,
                  int langue);

}  // namespace zemo
