// A station with a library and models, and their window over it: QTest gives the keys and the
// mouse. It is Saturday, 21 November 2026.
#pragma once

#include <QMenu>
#include <QTableWidget>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "platform/Spreadsheet.h"
#include "scheduling/screens/ModelDesk.h"
#include "scheduling/screens/ModelGridView.h"
#include "scheduling/tests/RequestFixture.h"
#include "ui/tests/WindowHands.h"

namespace zemo::test {

using Texts = std::vector<std::string>;

struct GivenForecast : DayForecast {
  State state = State::kIdle;
  PlannedDay asked;
  std::vector<AiredTitle> aired;
  void Start(const PlannedDay& day) override {
    asked = day;
    state = State::kRunning;
  }
  State Now() const override { return state; }
  std::vector<AiredTitle> Aired() const override { return aired; }
  std::string Fault() const override { return "no room"; }
};

struct KeptSheet : SpreadsheetWriter {
  std::string path;
  void Write(const std::string& to, const Sheet&) override { path = to; }
};

class ModelWindowTest : public testing::Test {
 protected:
  void SetUp() override;  // POP and ROCK with two titles and one, JAZZ with none
  void Open(int width = 1280, int height = 800);
  ModelWindow& Window() { return *desk->Window(); }
  ModelEditor& Editor() { return s.station.modelEditor; }

  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = Window().findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the window has no " << name;
    return control;
  }
  void Click(const char* button);
  // Row and column of the editor's grid.
  void ClickCell(const char* grid, int row, int column);
  void Key(QWidget* control, Qt::Key key);
  // Takes an entry of the open pop-up by the keys.
  void Choose(const char* menu, const std::string& entry);
  std::string Cell(const char* grid, int row, int column);
  std::string Head(const char* grid, int column, int role = Qt::DisplayRole);
  Texts Row(const char* table, int row);  // of a table of figures
  std::string Text(const char* label);

  RequestStation s;
  GivenForecast forecast;
  KeptSheet sheets;
  std::unique_ptr<ModelDesk> desk;
};

}  // namespace zemo::test
