// Where something is saved: the path that the window gets, by what was typed.
#include <gtest/gtest.h>

#include <QWidget>

#include "support/TestStation.h"
#include "ui/SaveDialogue.h"
#include "ui/tests/WindowHands.h"

namespace zemo::test {
namespace {

class SaveDialogue : public testing::Test {
 protected:
  std::string InFolder(const std::string& name) { return folder.Path() + "/" + name; }
  auto Take() {
    return [this](const std::string& path) { taken.push_back(path); };
  }
  TempFolder folder;
  QWidget window;
  std::vector<std::string> taken;
};

TEST_F(SaveDialogue, ASheetEndsInXlsxUnlessAnotherEndingWasTyped) {
  window.show();
  for (const char* name : {"week", "week.ods"}) {
    OpenSaveDialogue(window, "FrmSheet", QStringLiteral("Export"), {ExcelFile()}, Take());
    SaveIn(window, "FrmSheet", InFolder(name));
  }
  EXPECT_EQ(taken, (std::vector<std::string>{InFolder("week.xlsx"), InFolder("week.ods")}));
}

TEST_F(SaveDialogue, OfSeveralKindsTheFirstNamesTheEnding) {
  window.show();
  OpenSaveDialogue(window, "FrmExport", QStringLiteral("Export"),
                   {{QStringLiteral("Excel"), QStringLiteral("xlt")},
                    {QStringLiteral("PDF"), QStringLiteral("pdf")}},
                   Take());
  SaveIn(window, "FrmExport", InFolder("day"));
  EXPECT_EQ(taken, (std::vector<std::string>{InFolder("day.xlt")}));
}

}  // namespace
}  // namespace zemo::test
