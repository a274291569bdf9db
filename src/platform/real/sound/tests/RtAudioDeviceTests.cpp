// Sound systems that are asked by several threads at once.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "platform/real/sound/RtAudioDevice.h"
#include "platform/real/sound/tests/SoundTestSupport.h"

namespace zemo {
namespace {

// The air opens its device while another thread lists them all. The threads are left to themselves
// where they hang.
TEST(RtAudioDevices, AnswerThreadsThatAskAtTheSameTime) {
  constexpr int kThreads = 4, kQuestions = 40;
  const auto answers = std::make_shared<std::atomic<int>>(0);
  for (int thread = 0; thread < kThreads; ++thread)
    std::thread([answers] {
      for (int question = 0; question < kQuestions; ++question) {
        RtAudioInputs(RtAudioSystem::kJack);
        RtAudioDevices(RtAudioSystem::kJack);
        ++*answers;
      }
    }).detach();
  EXPECT_TRUE(
      testing::Within(testing::kBoundMs, [&] { return *answers == kThreads * kQuestions; }));
}

}  // namespace
}  // namespace zemo
