// A station with an emergency folder, and how long its air was silent. Standard settings: PmixDef
// and FadeOut are 1600 ms. Silence counts from the tick that sees it: music that ends at t is
// followed by the folder two seconds and at most two ticks later.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "scenario/TriggerStation.h"

namespace zemo::test {

class EmergencyStation : public TriggerStation {
 public:
  explicit EmergencyStation(const std::string& begin = "2026-11-21 12:05:00")
      : TriggerStation(begin, {}) {}

  std::string Folder() const { return machineFolder.Path() + "Secours/"; }
  // Its stored path. A length of 0 is a file that no decoder reads.
  std::string PutEmergency(const std::string& name, int64_t lengthMs) {
    const std::string path = Folder() + name;
    std::filesystem::create_directories(Folder());
    std::ofstream(path, std::ios::binary) << "sound";
    if (lengthMs > 0) opener.lengthsMs[path] = lengthMs;
    return path;
  }
  void PutEmergencies(int count, int64_t lengthMs = 30000) {
    for (int i = 1; i <= count; ++i)
      PutEmergency("Musique " + std::to_string(i) + ".mp3", lengthMs);
  }
  // Titles on the list that nothing follows: the models are empty.
  void AppendTitles(int count, int64_t lengthMs) {
    for (int i = 0; i < count; ++i) AppendTitle(lengthMs);
  }

  bool IsEmergency(const Seen& start) const { return start["file"].starts_with(Folder()); }
  std::vector<Seen> EmergencyStarts() const {
    std::vector<Seen> starts = Starts();
    std::erase_if(starts, [this](const Seen& one) { return !IsEmergency(one); });
    return starts;
  }
  std::vector<Seen> OtherStarts() const {
    std::vector<Seen> starts = Starts();
    std::erase_if(starts, [this](const Seen& one) { return IsEmergency(one); });
    return starts;
  }
  // Names of the files of the folder in the order in which they began.
  std::vector<std::string> Played() const {
    std::vector<std::string> names;
    for (const Seen& one : EmergencyStarts()) names.push_back(one["file"].substr(Folder().size()));
    return names;
  }
  // Of the silences that lie in the run up to that moment.
  int64_t LongestSilenceMs(int64_t untilMs) const {
    int64_t longest = 0;
    int64_t beganMs = -1;
    for (const Seen& one : Events("silence")) {
      if (one["state"] == "begin") beganMs = one.atMs;
      if (one["state"] == "end" && beganMs >= 0) longest = std::max(longest, one.atMs - beganMs);
      if (one["state"] == "end") beganMs = -1;
    }
    return beganMs < 0 ? longest : std::max(longest, untilMs - beganMs);
  }
  // Texts of the log's lines that tell of the folder.
  std::vector<std::string> Notices() const {
    std::vector<std::string> texts;
    for (const Seen& one : Events("error"))
      if (one["where"] == "Secours") texts.push_back(one["text"]);
    return texts;
  }
};

}  // namespace zemo::test
