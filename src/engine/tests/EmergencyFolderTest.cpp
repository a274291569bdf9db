// Which files of the emergency folder count, and the order in which they come.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "engine/EmergencyFolder.h"
#include "platform/tests/MemoryFolder.h"

namespace zemo {
namespace {

using Names = std::vector<std::string>;

LocalDateTime At(int minute, int millisecond = 0) {
  return {2026, 11, 21, 12, minute, 0, millisecond};
}

TEST(EmergencyFolder, HoldsSoundFilesByTheirEndingInAnyCase) {
  MemoryFolder machine;
  auto& folder = dynamic_cast<MemoryFolder&>(machine.Subfolder("Secours"));
  for (const char* name : {"b.WAV", "a.mp3", "c.Flac", "d.ogg", "e.txt", ".f.wav", ".wav", "wav",
                           "g.wav.part", "h.m4a", "é.Ogg"})
    folder.Write(name, "x");
  EXPECT_EQ(EmergencyFiles(machine), (Names{"a.mp3", "b.WAV", "c.Flac", "d.ogg", "é.Ogg"}));
}

TEST(EmergencyFolder, ThatIsMissingHoldsNothing) {
  MemoryFolder machine;
  EXPECT_EQ(EmergencyFiles(machine), Names{});
}

TEST(EmergencyRound, HasEachFileOnceAndTheSameOrderForTheSameMoment) {
  const Names names{"a", "b", "c", "d", "e", "f", "g", "h"};
  const Names round = ShuffledRound(names, At(0), "");
  Names sorted = round;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(sorted, names);
  EXPECT_EQ(ShuffledRound(names, At(0), ""), round);
}

// 8 files have 40320 orders: of 50 moments hardly two share one.
TEST(EmergencyRound, HasAnotherOrderAtAnotherMoment) {
  const Names names{"a", "b", "c", "d", "e", "f", "g", "h"};
  std::set<Names> orders;
  std::set<std::string> firsts;
  for (int i = 0; i < 50; ++i) {
    const Names round = ShuffledRound(names, At(i % 25, i), "");
    orders.insert(round);
    firsts.insert(round.front());
  }
  EXPECT_GE(orders.size(), 45U);
  EXPECT_EQ(firsts.size(), 8U);
}

TEST(EmergencyRound, DoesNotBeginWithTheFileThatPlayedLast) {
  const Names names{"a", "b", "c"};
  for (int i = 0; i < 50; ++i)
    for (const std::string& last : names) {
      const Names round = ShuffledRound(names, At(0, i), last);
      EXPECT_NE(round.front(), last);
      EXPECT_EQ(round.size(), 3U);
    }
  EXPECT_EQ(ShuffledRound({"a"}, At(0), "a"), Names{"a"});
  EXPECT_EQ(ShuffledRound({}, At(0), "a"), Names{});
}

}  // namespace
}  // namespace zemo
