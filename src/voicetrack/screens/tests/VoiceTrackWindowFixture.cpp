#include "voicetrack/screens/tests/VoiceTrackWindowFixture.h"

#include <QApplication>
#include <QMouseEvent>
#include <cmath>

namespace zemo::test {

namespace {

WavePeaks Shape(size_t count) {
  WavePeaks peaks(count);
  for (size_t i = 0; i < count; ++i) {
    const double place = static_cast<double>(i) / 9;
    peaks[i] = static_cast<uint8_t>(130 + 90 * std::sin(place) * std::sin(place * 2.7));
  }
  return peaks;
}

}  // namespace

std::shared_ptr<const WavePeaks> SteadyShapes::PeaksOf(const std::string&) {
  static const auto shape = std::make_shared<const WavePeaks>(Shape(kWavePeaks));
  return shape;
}

std::shared_ptr<const WavePart> SteadyShapes::PartOf(const std::string&, int64_t fromFrame,
                                                     int64_t toFrame, size_t most) {
  return std::make_shared<WavePart>(WavePart{180 * 44100, fromFrame, toFrame, Shape(most)});
}

void VoiceTrackScreenTest::SetUp() {
  on.Load();
  on.AppendCard(on.AddCard({.artist = "ADA", .title = "SONG", .exitMs = 5000}));
  on.AppendCard(on.AddCard({.lengthMs = 200000, .artist = "BOB", .title = "TUNE", .introSec = 12}));
  on.AppendCard(on.AddCard({.artist = "CY", .title = "AIR", .introSec = 0}));
  over = std::make_unique<QWidget>();
  over->show();
}

void VoiceTrackScreenTest::TearDown() {
  if (window) window->LeaveNow();
  over.reset();
}

void VoiceTrackScreenTest::OpenOn(int row, int width, int height) {
  delete window;
  window = new VoiceTrackWindow(on.station, {&shapes}, *over);
  window->resize(width, height);
  window->Open(on.station.PL.Row(row).key);
  BringForward(*window, width, height);
  Wait(100);
}

void VoiceTrackScreenTest::Click(const char* name) {
  ClickOn(Find(name));
  QApplication::processEvents();
}

void VoiceTrackScreenTest::Key(Qt::Key key, Qt::KeyboardModifiers keys) {
  QWidget* focus = window->focusWidget() ? window->focusWidget() : window;
  QTest::keyClick(focus, key, keys);
  QApplication::processEvents();
}

QPoint VoiceTrackScreenTest::InTrack(int32_t ms) {
  return {View().XOf(ms), View().height() / 2};
}

void VoiceTrackScreenTest::Drag(const QPoint& from, const QPoint& to) {
  QTest::mousePress(&View(), Qt::LeftButton, Qt::NoModifier, from);
  for (const QPoint& point : {(from + to) / 2, to}) {
    QMouseEvent move(QEvent::MouseMove, point, View().mapToGlobal(point), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&View(), &move);
  }
  QTest::mouseRelease(&View(), Qt::LeftButton, Qt::NoModifier, to);
  QApplication::processEvents();
}

void VoiceTrackScreenTest::Wait(int64_t ms) {
  on.RunUntil(on.loop.MonotonicMs() + ms);
  window->Refresh();
  QApplication::processEvents();
}

std::string VoiceTrackScreenTest::Load(int64_t lengthMs, const std::string& name) {
  const std::string file = on.MakeSound(name, lengthMs);
  Click("BntLoadVT");
  SaveIn(*window, "FrmFichierSon", file);
  QApplication::setActiveWindow(window);
  QApplication::processEvents();
  return file;
}

std::string VoiceTrackScreenTest::LastMessage() {
  const auto messages = on.Events("message");
  return messages.empty() ? "" : messages.back()["text"];
}

}  // namespace zemo::test
