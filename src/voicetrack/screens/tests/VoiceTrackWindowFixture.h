// A list of three titles and the window of the voice tracks opened on the first: 180 s with an exit
// point of 5 s, so that the second comes in at 175 s; the second has an intro of 12 s. QTest gives
// the keys and the mouse.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>
#include <memory>
#include <string>

#include "support/TestStation.h"
#include "ui/tests/WindowHands.h"
#include "voicetrack/screens/JoinList.h"
#include "voicetrack/screens/JoinView.h"
#include "voicetrack/screens/VoiceTrackWindow.h"

namespace zemo::test {

// Every sound has the same shape; parts come at once.
class SteadyShapes : public Waveforms {
 public:
  std::shared_ptr<const WavePeaks> PeaksOf(const std::string& path) override;
  std::shared_ptr<const WavePart> PartOf(const std::string& path, int64_t fromFrame,
                                         int64_t toFrame, size_t most) override;
};

class VoiceTrackScreenTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  void OpenOn(int row, int width = 1280, int height = 800);  // of PL
  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = window->findChild<Control*>(QString::fromUtf8(name));
    if (!control) ADD_FAILURE() << "the window has no " << name;
    return control;
  }
  void Click(const char* name);
  void Key(Qt::Key key, Qt::KeyboardModifiers keys = Qt::NoModifier);  // where the keyboard is
  std::string Text(const char* name) { return TextOn(Find(name)); }
  bool On(const char* name) { return Find(name)->isEnabled(); }
  bool IsSeen(const char* name) { return Find(name)->isVisible(); }

  JoinView& View() { return *Find<JoinView>("VueRaccord"); }
  QPoint InTrack(int32_t ms);  // of the time line, in the lane of the track
  void Drag(const QPoint& from, const QPoint& to);

  void Wait(int64_t ms);  // of the virtual clock, and what the window shows then
  std::string Load(int64_t lengthMs, const std::string& name = "link.wav");  // as the track
  std::string LastMessage();
  const VoiceTrackEditor& Editor() { return window->Editor(); }

  TestStation on;
  SteadyShapes shapes;
  std::unique_ptr<QWidget> over;  // in place of the main screen; owns the window
  VoiceTrackWindow* window = nullptr;
};

}  // namespace zemo::test
