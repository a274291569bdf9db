// A station whose library screen is open, and what its tests make and look at.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/LibraryScreen.h"
#include "support/TestStation.h"

namespace zemo {

struct LibraryFixture : testing::Test {
  test::TestStation on;
  LibraryEditor editor;

  // Opens on the cards that a test has added.
  void Open() { Library::Discotheque_Click(on.station, editor); }

  std::string Message(size_t number) const {
    const auto messages = on.Events("message");
    return number < messages.size() ? messages[number]["text"] : std::string("(none)");
  }
  size_t Messages() const { return on.Events("message").size(); }

  void SetUp() override { on.Load(); }
};

inline const std::string kAllDay(24, '1');

}  // namespace zemo
