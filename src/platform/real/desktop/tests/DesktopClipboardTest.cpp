// The clipboard of the desktop against another process, on a display of the test's own.
#include <gtest/gtest.h>

#include <QCoreApplication>

#include "platform/real/desktop/DesktopApplication.h"
#include "platform/real/desktop/RealEventLoop.h"
#include "support/VirtualScreen.h"

namespace zemo::test {
namespace {

class DesktopClipboard : public testing::Test {
 protected:
  bool TextBecomes(const std::string& text) {
    return WaitFor([&] { return clipboard_->Text() == text; }, Serve());
  }
  std::function<void()> Serve() {
    return [this] { loop_.WaitYield(); };
  }

  VirtualScreen screen_;
  int argc_ = 0;
  std::unique_ptr<QCoreApplication> application_ = MakeApplication(argc_);
  RealEventLoop loop_;
  std::unique_ptr<Clipboard> clipboard_ = MakeClipboard();
};

TEST_F(DesktopClipboard, AnotherProcessReadsWhatTheEnginePutThere) {
  for (const char* text : {"Info Sat On", "Fin Info Sat", "h\xC3\xA9 \xC3\xA0 12:00:00"}) {
    clipboard_->SetText(text);
    EXPECT_EQ(clipboard_->Text(), text);
    EXPECT_EQ(OthersClipboard(Serve()), text);
  }
}

TEST_F(DesktopClipboard, TheEngineReadsWhatAnotherProcessPutThere) {
  EXPECT_EQ(clipboard_->Text(), "");
  clipboard_->SetText("Topage");
  auto other = OtherHolds("Zemo Play Now");
  EXPECT_TRUE(TextBecomes("Zemo Play Now"));
  auto third = OtherHolds("h\xC3\xA9 \xC3\xA0");
  EXPECT_TRUE(TextBecomes("h\xC3\xA9 \xC3\xA0"));
}

TEST_F(DesktopClipboard, AHolderThatEndsLeavesNoText) {
  auto other = OtherHolds("Zemo Play Now");
  ASSERT_TRUE(TextBecomes("Zemo Play Now"));
  other.reset();
  EXPECT_TRUE(TextBecomes(""));
}

TEST(NoDesktop, WithoutADisplayTheClipboardIsATextOfTheProcess) {
  unsetenv("DISPLAY");
  int argc = 0;
  const std::unique_ptr<QCoreApplication> application = MakeApplication(argc);
  const std::unique_ptr<Clipboard> clipboard = MakeClipboard();
  EXPECT_EQ(clipboard->Text(), "");
  clipboard->SetText("Topage");
  EXPECT_EQ(clipboard->Text(), "Topage");
}

TEST(NoDesktop, ADisplayThatDoesNotAnswerIsOneLineAndNoMore) {
  setenv("DISPLAY", ":54321", 1);
  testing::internal::CaptureStderr();
  {
    int argc = 0;
    const std::unique_ptr<QCoreApplication> application = MakeApplication(argc);
    const std::unique_ptr<Clipboard> clipboard = MakeClipboard();
    clipboard->SetText("Topage");
    EXPECT_EQ(clipboard->Text(), "Topage");
  }
  unsetenv("DISPLAY");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "zemoradio: the display :54321 does not answer: no clipboard is shared with other "
            "programs\n");
}

}  // namespace
}  // namespace zemo::test
