#include "engine/AutomatonLine.h"

#include <array>
#include <string>

#include "engine/ExternalTriggers.h"
#include "platform/SerialPort.h"
#include "station/Station.h"

namespace zemo {

namespace {
constexpr char kPoll = 'E';
constexpr char kRelays = 'S';
constexpr size_t kReplyBytes = 2;
constexpr int kMostPolls = 5;  // half a second

// No poll goes out between the two bytes of a relay command.
class PollHold {
 public:
  explicit PollHold(EngineState& engine) : held_(engine.automaton.pollHeld) { held_ = true; }
  ~PollHold() { held_ = false; }
  PollHold(const PollHold&) = delete;

 private:
  bool& held_;
};
}  // namespace

void AskContacts(Station& station) {
  auto& line = station.engine.automaton;
  if (line.asked) return;
  station.platform.serial.Write({&kPoll, 1});
  line.asked = true;
  line.polls = 0;
  line.reply.clear();
}

std::optional<uint8_t> TakeContacts(Station& station) {
  auto& line = station.engine.automaton;
  line.reply += station.platform.serial.Read();
  const bool whole = line.reply.size() >= kReplyBytes;
  if (whole || ++line.polls >= kMostPolls) line.asked = false;
  if (line.reply.size() != kReplyBytes || line.reply[0] != kPoll) return std::nullopt;
  return static_cast<uint8_t>(line.reply[1]);
}

void SetRelays(Station& station, bool one, bool two, bool three, bool four) {
  auto& line = station.engine.automaton;
  try {
    const PollHold hold(station.engine);
    line.relays = {one, two, three, four};
    int sum = 0;
    for (size_t i = 0; i < line.relays.size(); ++i)
      if (line.relays[i]) sum += 1 << i;
    const std::array<char, 2> command = {kRelays, static_cast<char>(sum)};
    station.platform.serial.Write({command.data(), command.size()});
  } catch (const std::exception&) {
    LogCurrentException(station, "SetRelays");
  }
}

}  // namespace zemo
