// What is said at the control socket: JSON lines. docs/control-socket.md tells all of them.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ControlLine.h"

namespace zemo {

inline constexpr int kControlVersion = 1;  // of the words

// A request, as the logic gets it.
struct ControlAsk {
  enum class What { kStatus, kMetrics, kWatchEvents, kWatchStatus, kOrder };
  What what = What::kStatus;
  std::string id = "null";           // as JSON
  std::vector<std::string> words{};  // of an order
};

// Texts hold no zero character.
std::string PackedAsk(const ControlAsk& ask);
ControlAsk UnpackedAsk(std::string_view packed);

// Answers. `id` and `value` are JSON already; the value stands under the name.
std::string DoneAnswer(std::string_view id);
std::string DoneAnswer(std::string_view id, std::string_view name, std::string_view value);
std::string ErrorAnswer(std::string_view id, std::string_view text);
std::string JsonText(std::string_view text);

// The folders of a run, and how much room there is beside them; bytes, -1 while unknown.
struct FreeSpace {
  std::string station, machine;
  std::atomic<int64_t> stationBytes = -1, machineBytes = -1;
  void Look();  // may wait for a disk: never on the logic's thread
};

// Thread: that of the line.
class JsonWords : public ControlWords {
 public:
  explicit JsonWords(FreeSpace& space) : space_(space) {}  // not owned

  std::string Greeting() override;
  Understood Understand(std::string_view line) override;
  std::string Farewell(ControlCut why) override;
  void EverySecond() override { space_.Look(); }

 private:
  FreeSpace& space_;
};

}  // namespace zemo
