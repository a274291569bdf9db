// The one error log: "Messages.Txt", the screen's error line and the event, in this order. Whatever
// fails in here is swallowed, since nobody is left to be told.
#include <exception>
#include <stdexcept>
#include <string>

#include "platform/Clock.h"
#include "platform/Folder.h"
#include "platform/SerialPort.h"
#include "platform/SoundSource.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

// The same words again within this time are not logged; a base out of reach is met at every turn.
constexpr int64_t kSameFaultMs = 5000, kSameOutageMs = 60000;
constexpr int kErrProgram = 5;  // a fault of no other kind
constexpr int kErrSound = 321;  // a sound file or device that cannot be used

// Marks that the log is at work, so that a listener of the event that reports an error of its own
// does not begin the log anew.
class Reporting {
 public:
  explicit Reporting(bool& reporting) : reporting_(reporting) { reporting_ = true; }
  ~Reporting() { reporting_ = false; }
  Reporting(const Reporting&) = delete;

 private:
  bool& reporting_;
};

void AppendToLog(Station& station, const std::string& line) {
  try {
    const std::string& name = station.files.Messages;
    station.platform.stationFolder.Append(name.empty() ? "Messages.Txt" : name,
                                          EncodeAppended(line) + "\r\n");
  } catch (const std::exception&) {
    // A full disk or a folder without write permission: the screen still tells.
  }
}

// `tell` gets the place and the text as they were logged.
template <typename Tell>
void LogLine(Station& station, const std::string& where, int number, const std::string& text,
             int64_t withinMs, Tell tell) {
  if (station.engine.errorLogRunning) return;
  if (LoggedLately(station, where + "\t" + std::to_string(number) + "\t" + text, withinMs)) return;
  Reporting reporting(station.engine.errorLogRunning);
  try {
    const LocalDateTime now = station.Now();
    const std::string place = OneLine(where), fault = OneLine(text),
                      digits = std::to_string(number);
    AppendToLog(station,
                DateText(now) + " " + TimeText(now) + "\t" + place + "\t" + digits + "\t" + fault);
    station.notices.lastError =
        TimeText(now) + "  ERR n° " + digits + " - " + place + " - " + fault + "  - ";
    tell(place, fault);
  } catch (const std::exception&) {
    // Out of memory, or a listener that failed: the program goes on.
  }
}

}  // namespace

bool LoggedLately(Station& station, const std::string& fault, int64_t withinMs) {
  constexpr size_t kMostFaults = 64;  // remembered at a time
  auto& logged = station.engine.loggedFaults;
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  const auto found = logged.find(fault);
  if (found != logged.end() && nowMs - found->second < withinMs) return true;
  if (logged.size() >= kMostFaults) logged.clear();
  logged[fault] = nowMs;
  return false;
}

void LogError(Station& station, const std::string& where, int number, const std::string& text) {
  const int64_t withinMs = StoreError(number, text).MayPass() ? kSameOutageMs : kSameFaultMs;
  LogLine(station, where, number, text, withinMs,
          [&](const std::string& place, const std::string& fault) {
            station.events.Error(place, number, fault);
          });
}

void LogNotice(Station& station, const std::string& where, int number, const std::string& text) {
  LogLine(station, where, number, text, kSameErrorMs,
          [&](const std::string& place, const std::string& fault) {
            station.events.Notice(place, fault);
          });
}

void LogCurrentException(Station& station, const std::string& where, const std::string& detail) {
  const std::string behind = detail.empty() ? "" : " - " + detail;
  try {
    throw;
  } catch (const StoreError& error) {
    LogError(station, where, error.Number(), error.what() + behind);
  } catch (const FileError& error) {
    LogError(station, where, kErrFile, error.what() + behind);
  } catch (const SoundError& error) {
    LogError(station, where, kErrSound, error.what() + behind);
  } catch (const SerialError& error) {
    LogError(station, where, error.number, error.what() + behind);
  } catch (const std::exception& error) {
    LogError(station, where, kErrProgram, error.what() + behind);
  } catch (...) {
    LogError(station, where, kErrProgram, "unknown error" + behind);
  }
}

}  // namespace zemo
