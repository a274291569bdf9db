// `zemoradio models`: the week's models, percentages or skeleton as the station uses them, as a
// spreadsheet file or as lines. Works on a private copy and changes nothing of the station.
#include <cmath>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/AskedStation.h"
#include "app/Commands.h"
#include "platform/Folder.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/spreadsheet/XlsxWriter.h"
#include "scheduling/ModelEditor.h"

namespace zemo {

namespace {

// The sheet as lines, its cells between tabs.
class AskedLines : public SpreadsheetWriter {
 public:
  void Write(const std::string&, const Sheet& sheet) override {
    std::vector<std::vector<std::string>> rows;
    for (const SheetCell& cell : sheet.cells) {
      const auto row = static_cast<size_t>(cell.row), column = static_cast<size_t>(cell.column);
      if (rows.size() <= row) rows.resize(row + 1);
      if (rows[row].size() <= column) rows[row].resize(column + 1);
      rows[row][column] = cell.isNumber ? std::to_string(std::llround(cell.number)) : cell.text;
    }
    for (const std::vector<std::string>& row : rows) {
      for (size_t i = 0; i < row.size(); ++i) std::cout << (i > 0 ? "\t" : "") << row[i];
      std::cout << "\n";
    }
  }
};

// Keeps why the export failed, which a routine of the logic logs.
class LastError : public EventSink {
 public:
  std::string text;
  void OnEvent(const Event& event) override {
    if (event.name == "error") text = event.Text("text");
  }
};

void Export(const ModelsOptions& options, SpreadsheetWriter& writer) {
  const AskedStation asked(options);
  LastError error;
  const auto sim = OpenAsked(asked, RealClock().LocalNow());
  sim->station.events.SetSink(&error);
  const bool done = Models::MnuExport_Click(sim->station, options.file, writer);
  sim->station.events.SetSink(nullptr);
  if (!done) throw std::runtime_error(WithShownPaths(error.text, asked.Paths()));
}

}  // namespace

int RunModelsCommand(const ModelsOptions& options) {
  XlsxWriter file;
  AskedLines lines;
  Export(options, options.file.empty() ? static_cast<SpreadsheetWriter&>(lines) : file);
  return 0;
}

}  // namespace zemo
