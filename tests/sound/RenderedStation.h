// A station whose list holds sound files of the test, and what is heard of it: it begins at
// 10:00:00, the first element sounds at 100 ms. Standard settings: PmixDef 1600, FadeOut 1600,
// VolumeMusique 16384 (1.0), VolumePubs 18000.
#pragma once

#include <cmath>
#include <string>

#include "Hearing.h"
#include "app/tests/BlackBox.h"

namespace zemo {

class RenderedStation : public BlackBox {
 protected:
  // Behind those before.
  void AddTitle(const std::string& file, double seconds, int exitMs = 0) {
    cards_ +=
        "+0 sql INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, POINTSORTIE) VALUES('" +
        file + "', " + Ms(seconds) + ", 'A', 'T', " + std::to_string(exitMs) + ")\n";
    list_ += "+0 insert music " + std::to_string(++music_) + "\n";
  }
  void AddSpot(const std::string& file, double seconds) {
    cards_ += "+0 sql INSERT INTO GrillePub(FILENAMEAUDIO, DUREE, ANNONCEUR, PUB) VALUES('" + file +
              "', " + Ms(seconds) + ", 'SPOT', -1)\n";
    list_ += "+0 insert spot " + std::to_string(++spots_) + "\n";
  }
  // The base, with orders of a script that give it other settings.
  void MakeBase(const std::string& settings = {}) const {
    Put("make", settings + cards_);
    EXPECT_EQ(Run("simulate --station station --in-place --no-start --for 0 --script make --trace "
                  "/dev/null")
                  .status,
              0);
  }
  // Leaves "heard.wav" and "trace".
  hearing::Recording Render(int seconds, const std::string& moreOrders = {},
                            const std::string& options = {}) const {
    Put("play", list_ + moreOrders);
    const Result result =
        Run("render --station station --from '2026-11-21 10:00:00' --for " +
            std::to_string(seconds) + " --script play --trace trace --audio heard.wav " + options);
    EXPECT_EQ(result.status, 0) << result.err;
    return hearing::ReadWav(Path("heard.wav"));
  }

 private:
  static std::string Ms(double seconds) { return std::to_string(std::lround(seconds * 1000)); }

  std::string cards_, list_;
  int music_ = 0, spots_ = 0;
};

}  // namespace zemo
