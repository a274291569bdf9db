// The test tone on an output, through the prelisten player, with the level that is heard.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <memory>

namespace zemo {

struct Station;

enum class TrialResult { kPlays, kNone, kInUse, kRefused };

// Thread: the logic's. The station outlives it. The tone ends by itself, and with the trial.
class OutputTrial {
 public:
  explicit OutputTrial(Station& station);
  ~OutputTrial();

  // Plays on the output of that number, from 0. While the air sounds not on its own, `airOutput`,
  // and on none where that is -1, not known; nor while the player is in use.
  TrialResult Begin(int output, int airOutput);
  void End();
  bool Plays() const { return plays_; }
  const QString& TonePath() const { return tone_; }

  std::function<void(float left, float right)> level;  // while it plays, and silence at its end
  std::function<void(bool refused)> ended;             // the output did not begin, or was lost

 private:
  void Poll();
  bool MayPlay(int output, int airOutput) const;

  Station& station_;
  QTemporaryDir folder_;  // of the tone
  QTimer poll_;
  const QString tone_;
  std::shared_ptr<bool> lost_;  // told by the player
  bool plays_ = false;
  int before_ = -1;  // the player's output
};

}  // namespace zemo
