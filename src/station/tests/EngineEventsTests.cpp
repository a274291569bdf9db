// What a listener reads of an event by the names of its members.
#include <gtest/gtest.h>

#include "station/EngineEvents.h"

namespace zemo {
namespace {

TEST(EventMembers, AreReadByTheirNames) {
  const Event event{"start",
                    {{"title", std::string("T")}, {"slot", int64_t{1}}, {"mix_ms", 1600.9}}};
  EXPECT_EQ(event.Text("title"), "T");
  EXPECT_EQ(event.Number("slot"), 1);
  EXPECT_EQ(event.Number("mix_ms"), 1600);
}

TEST(EventMembers, ThatAreMissingOrOfAnotherKindReadAsNothing) {
  const Event event{"start", {{"title", std::string("7")}, {"slot", int64_t{1}}, {"on", true}}};
  EXPECT_EQ(event.Text("file"), "");
  EXPECT_EQ(event.Text("slot"), "");
  EXPECT_EQ(event.Number("code"), 0);
  EXPECT_EQ(event.Number("title"), 0);
  EXPECT_EQ(event.Number("on"), 0);
}

}  // namespace
}  // namespace zemo
