// What others store while the settings' window is open.
#include <QSpinBox>

#include "settings/screens/tests/SettingsWindowFixture.h"

namespace zemo::test {
namespace {

constexpr int kSoonMs = 5000;  // at most; a look comes twice a second

using OthersSettings = SettingsScreenTest;

TEST_F(OthersSettings, ShowWithoutTakingANumberThatIsHalfTyped) {
  Open();
  auto* spinner = Find<QSpinBox>("SpinVeille");
  spinner->setFocus();
  spinner->selectAll();
  QTest::keyClicks(spinner, "1");
  on.Sql("UPDATE Cnf SET Veille = 7, TextVeille = 'THEIRS'");
  EXPECT_TRUE(QTest::qWaitFor([&] { return Text("TexteV") == "THEIRS"; }, kSoonMs));
  QTest::keyClicks(spinner, "2");
  EXPECT_EQ(spinner->cleanText(), "12");
  on.messages.AnswerNext(Answer::kYes);  // they changed it, too
  Close();
  EXPECT_EQ(Stored("Veille"), "12");
}

}  // namespace
}  // namespace zemo::test
