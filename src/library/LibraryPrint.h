// The library on paper.
#pragma once

#include <string>
#include <vector>

namespace zemo {

struct LibraryEditor;
struct Station;

inline constexpr const char* kLibraryPrintFont = "Courier";

struct PrintedPages {
  std::string title;
  std::vector<std::vector<std::string>> pages;  // lines of equal character width
};

namespace Library {

// The rows of PLDisco in their order, or all titles by artist where it is empty. No page without a
// row. Yields. Throws StoreError.
PrintedPages MnuImp_Click(Station& station, LibraryEditor& editor);

}  // namespace Library

}  // namespace zemo
