// The sound files of the cards, measured in the background while the program runs: those of an
// import first, which get their exit points by it, and with a LoudnessTarget the whole library.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "library/ImportedExit.h"
#include "platform/Folder.h"
#include "platform/SoundMeasurer.h"

namespace zemo {

struct Station;

// Thread: the logic's.
class CardMeasuring {
 public:
  // Neither is owned. Goes on with what an earlier run of the program has left.
  CardMeasuring(Station& station, SoundMeasurer& measurer);

  // The newest is measured first. Kept in the station's folder until it is.
  void Add(int32_t code, const std::string& file);

  // What one free moment is used for: stores what was measured of one file, wishes for some, looks
  // at some cards of the library. A few ms; waits for no lock: what the base cannot take stays for
  // later. Throws nothing. False while there is nothing to measure and none to look for.
  bool Turn();

 private:
  struct Wished {
    std::string file;  // stored path
    SoundFileStamp stamp;
    std::optional<BareExit> bare;
  };

  void Work();
  void DropWhatIsRefused();
  void StoreMeasured();
  void WishForImported();
  void LookThroughLibrary();
  bool LookAt(const std::string& file);  // false: no wish is taken now
  bool Wish(const std::string& file, const SoundFileStamp& stamp,
            const std::optional<BareExit>& bare);
  void ForgetKept();

  Station& station_;
  SoundMeasurer& measurer_;
  std::vector<BareExit> imported_;         // the newest last
  std::map<std::string, Wished> wished_;   // by path of this system
  std::optional<MeasuredSound> measured_;  // one that the base could not take yet
  std::unordered_map<std::string, SoundFileStamp> unmeasurable_;  // by stored path
  bool kept_ = false;  // the file in the station's folder
  // --- of the library: newest card first, one kind after the other ---
  size_t kind_ = 0;
  int64_t belowCode_;
  std::optional<int64_t> lookedThroughMs_;  // by the clock that never jumps
  bool looks_ = false;                      // in the midst of them at the last turn
};

}  // namespace zemo
