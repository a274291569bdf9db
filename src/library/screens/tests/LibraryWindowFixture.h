// A station with a library and its window over it: QTest gives the keys and the mouse.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QTableView>
#include <QTest>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "library/screens/LibraryWindow.h"
#include "platform/Spreadsheet.h"
#include "platform/Waveforms.h"
#include "support/TestStation.h"
#include "ui/tests/WindowHands.h"

namespace zemo::test {

using Names = std::vector<std::string>;

// Keeps the sheet that it was given.
class KeptSheet : public SpreadsheetWriter {
 public:
  std::string path;
  Sheet sheet;
  void Write(const std::string& to, const Sheet& written) override {
    path = to;
    sheet = written;
  }
};

// A song's shape, of any file: loud from its middle on. `lengthFrames` is what the file tells.
class SongShapes : public Waveforms {
 public:
  int64_t lengthFrames = 0;
  bool parts = true;  // that are asked for are read
  struct Wish {
    int64_t fromFrame = 0, toFrame = 0;
    size_t most = 0;
  } wished;
  std::shared_ptr<const WavePeaks> PeaksOf(const std::string& path) override;
  std::shared_ptr<const WavePart> PartOf(const std::string& path, int64_t fromFrame,
                                         int64_t toFrame, size_t most) override;

 private:
  std::shared_ptr<const WavePeaks> whole_;
  std::shared_ptr<const WavePart> part_;
};

class LibraryScreenTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override { window.reset(); }

  // The window at this size, shown and active, as the menu opens it.
  void Open(int width = 1280, int height = 800);
  int32_t AddSong(const std::string& artist, const std::string& title);  // CODE
  void AddSongs();  // CHER - Believe (1), ABBA - Waterloo (2), Édith - Milord (3)
  void AddJingle(const std::string& label);
  void AddShortElement(const std::string& label);

  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = window->findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the window has no " << name;
    return control;
  }
  void Click(const char* name);                         // of a control that is seen and on
  void Menu(const char* name);                          // of an entry that is on
  void Tab(int number);                                 // from 1, by the mouse
  void Type(const char* box, const std::string& text);  // in place of what stands there
  std::string Text(const char* name);                   // of a label, a button or a box
  bool Seen(const char* name) { return Find(name)->isVisible(); }
  bool On(const char* action) { return Find<QAction>(action)->isEnabled(); }

  // --- a table: rows and columns from 0 ---
  QTableView& Table(const char* name) { return *Find<QTableView>(name); }
  Names Column(const char* table, int column);
  Names Selected(const char* table, int column);
  void ClickRow(const char* table, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void ClickCell(const char* table, int row, int column, bool twice = false);
  void ClickHead(const char* table, int column);

  std::string Stored(const std::string& column, int32_t code);  // of a music card
  const LibraryEditor& Editor() { return window->Editor(); }

  TestStation on;
  KeptSheet sheets;
  SongShapes shapes;
  LibrarySources sources;
  std::unique_ptr<LibraryWindow> window;
};

}  // namespace zemo::test
