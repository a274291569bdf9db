// What every desk holds to: one window, brought forward where it is open, left before the station's
// end, and made anew in the language of the moment.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <functional>

namespace zemo::test {

// The desk has opened nothing yet. `speakEnglish` sets the station's language.
template <typename Desk>
void CheckDesk(Desk& desk, const std::function<void()>& speakEnglish, const QString& englishTitle) {
  EXPECT_TRUE(desk.Leave());
  desk.Open();
  auto* const first = desk.Window();
  ASSERT_TRUE(first);
  desk.Open();
  EXPECT_EQ(desk.Window(), first);
  EXPECT_TRUE(first->isVisible());
  EXPECT_TRUE(desk.Leave());
  EXPECT_FALSE(first->IsOpen());
  speakEnglish();
  desk.Open();
  EXPECT_EQ(desk.Window()->windowTitle(), englishTitle);
  EXPECT_TRUE(desk.Leave());
}

}  // namespace zemo::test
