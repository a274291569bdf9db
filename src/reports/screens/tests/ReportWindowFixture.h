// A station with a report and its window over it: QTest gives the keys and the mouse.
#pragma once

#include <QTest>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Spreadsheet.h"
#include "reports/screens/ReportPictures.h"
#include "reports/screens/ReportTable.h"
#include "reports/screens/ReportWindow.h"
#include "reports/tests/ReportFixture.h"
#include "ui/tests/WindowHands.h"

namespace zemo::test {

class ReportScreenTest : public ReportFixture {
 protected:
  void SetUp() override;
  void TearDown() override { window.reset(); }

  // The window at this size, shown and active, as the menu opens it.
  void OpenWindow(int width = 1280, int height = 800);
  void AddSongs();         // of today, 10:00 to 10:12: Zoo One, Abba Two, a spot, Abba Two
  void AddMany(int rows);  // from today's midnight on, half of them by Even, half by Odd

  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = window->findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the window has no " << name;
    return control;
  }
  void Click(const char* name, Qt::MouseButton button = Qt::LeftButton);
  void ClickHead(const char* list, int column);
  void ClickRow(const char* list, int row);
  void Type(const char* box, const std::string& text);  // behind what stands there
  void PickInCalendar(int year, int month, int day);
  void SaveAs(const std::string& path);  // in the dialogue that is open; its ending names the kind
  std::string Text(const char* name);    // of a label, a button or a box
  std::vector<std::string> Column(const char* list, int column);
  const ReportEditor& Editor() { return window->Editor(); }

  std::string InFolder(const std::string& name) const { return on.machineDir.Path() + "/" + name; }
  std::string Bytes(const std::string& name) const;  // of a file there

  ReportSources sources;
  std::map<std::string, std::string> files;  // that were exported
  std::function<void()> onPart;              // while one is
  struct KeptSheet : SpreadsheetWriter {
    void Write(const std::string& toPath, const Sheet& written) override {
      path = toPath, sheet = written;
    }
    std::string path;
    Sheet sheet;
  } sheets;
  std::unique_ptr<ReportWindow> window;
};

}  // namespace zemo::test
