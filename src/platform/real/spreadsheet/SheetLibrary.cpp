#include "platform/real/spreadsheet/SheetLibrary.h"

#include <stdexcept>
#include <string>

#include "platform/Folder.h"
#include "platform/LateLibrary.h"

namespace zemo {

namespace {

SheetLibrary Load() {
  try {
    const LateLibrary library(ZEMO_XLSX_LIBRARY);
    SheetLibrary functions;
#define ZEMO_XLSX_FIND(name) library.Find(functions.name, #name);
    ZEMO_XLSX_FUNCTIONS(ZEMO_XLSX_FIND)
#undef ZEMO_XLSX_FIND
    return functions;
  } catch (const std::runtime_error& error) {
    throw FileError(std::string("no spreadsheet can be written: ") + error.what());
  }
}

}  // namespace

const SheetLibrary& Xlsx() {
  static const SheetLibrary kFunctions = Load();
  return kFunctions;
}

}  // namespace zemo
