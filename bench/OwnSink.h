// A sound server of its own with a sink that plays into nothing, for a device that can be taken
// away: PulseAudio in a folder of its own, ended with this object or this process.
#pragma once

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/Child.h"

namespace zemo::bench {

class OwnSink {
 public:
  static bool Installed() {
    return std::system("command -v pulseaudio pactl >/dev/null 2>&1") == 0;
  }

  // From here on this process and its children find no other server. Throws std::runtime_error when
  // it does not come up.
  explicit OwnSink(const std::string& folder)
      : server_({"setpriv", "--pdeathsig", "KILL", "env", "HOME=" + folder,
                 "XDG_RUNTIME_DIR=" + folder, "pulseaudio", "-n", "--daemonize=no",
                 "--use-pid-file=no", "--exit-idle-time=-1", "--log-target=file:" + folder + "/log",
                 "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + folder + "/native",
                 "-L", kSink}) {
    setenv("PULSE_SERVER", ("unix:" + folder + "/native").c_str(), 1);
    if (!test::WaitFor([] { return std::system("pactl info >/dev/null 2>&1") == 0; },
                       [] { poll(nullptr, 0, 50); }))
      throw std::runtime_error("pulseaudio does not come up");
  }

  // By any process that was forked off this one.
  static bool Unload() {
    return std::system("pactl unload-module module-null-sink >/dev/null 2>&1") == 0;
  }
  static bool Load() {
    return std::system((std::string("pactl load-module ") + kSink + " >/dev/null 2>&1").c_str()) ==
           0;
  }

 private:
  static constexpr const char* kSink = "module-null-sink sink_name=zemo";
  test::Child server_;
};

}  // namespace zemo::bench
