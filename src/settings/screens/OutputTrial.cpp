#include "settings/screens/OutputTrial.h"

#include <QFile>
#include <exception>

#include "platform/Prelisten.h"
#include "platform/SoundSource.h"
#include "settings/TestTone.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr int kPollMs = 50;

void WriteTone(const QString& path) {
  QFile file(path);
  if (file.exists()) return;
  const std::string wav = TestToneWav();
  if (!file.open(QIODevice::WriteOnly) ||
      file.write(wav.data(), static_cast<qint64>(wav.size())) != static_cast<qint64>(wav.size()))
    throw SoundError(path.toStdString() + " cannot be written");
}

}  // namespace

OutputTrial::OutputTrial(Station& station)
    : station_(station), tone_(folder_.filePath(QStringLiteral("TestTone.wav"))) {
  poll_.setInterval(kPollMs);
  QObject::connect(&poll_, &QTimer::timeout, [this] { Poll(); });
}

OutputTrial::~OutputTrial() {
  level = nullptr;
  ended = nullptr;
  End();
}

bool OutputTrial::MayPlay(int output, int airOutput) const {
  const Prelisten* player = station_.platform.prelisten;
  const bool sounds = station_.Sound().State() == OutputState::kStarted;
  const bool heard = sounds && (airOutput < 0 || airOutput == output);
  return player && player->PlayerState() == Prelisten::State::kClosed && !heard;
}

TrialResult OutputTrial::Begin(int output, int airOutput) {
  End();
  if (output < 0) return TrialResult::kNone;
  if (!MayPlay(output, airOutput)) return TrialResult::kInUse;
  Prelisten& player = *station_.platform.prelisten;
  before_ = player.Device();
  try {
    player.SetDevice(output);
    plays_ = true;
    WriteTone(tone_);
    player.Open(tone_.toStdString());
    lost_ = std::make_shared<bool>(false);
    player.OnEnd([lost = lost_](bool outputLost) { *lost = outputLost; });
    player.Start();
  } catch (const std::exception&) {
    LogCurrentException(station_, "TestTone");
    End();
    return TrialResult::kRefused;
  }
  poll_.start();
  return TrialResult::kPlays;
}

void OutputTrial::End() {
  if (!plays_) return;
  plays_ = false;
  poll_.stop();
  Prelisten& player = *station_.platform.prelisten;
  if (player.FileName() == tone_.toStdString()) player.Close();
  player.SetDevice(before_);  // not taken where somebody else plays meanwhile
  if (level) level(0, 0);
  if (ended) ended(lost_ && *lost_);
}

void OutputTrial::Poll() {
  const Prelisten& player = *station_.platform.prelisten;
  if (player.PlayerState() != Prelisten::State::kPlaying ||
      player.FileName() != tone_.toStdString())
    return End();
  const Prelisten::Levels heard = player.HeardLevels();
  if (level) level(heard.left, heard.right);
}

}  // namespace zemo
