#include "app/MetricsText.h"

#include <charconv>
#include <cstdio>

#include "app/Version.h"
#include "platform/BaseLink.h"
#include "platform/SoundSource.h"
#include "station/PlanTimes.h"
#include "station/Station.h"

namespace zemo {

namespace {

const char* const kCutNames[] = {"user", "number", "slow", "flood", "rubbish", "full"};
static_assert(std::size(kCutNames) == kControlCuts);

// Whole numbers without a point, others with all their digits.
std::string Number(double value) {
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}
std::string Number(uint64_t value) {
  return std::to_string(value);
}

std::string Label(const char* name, const std::string& value) {
  std::string escaped;
  for (const char byte : value) {
    if (byte == '\\' || byte == '"') escaped += '\\';
    if (byte == '\n')
      escaped += "\\n";
    else
      escaped += byte;
  }
  return std::string("{") + name + "=\"" + escaped + "\"}";
}

class Metrics {
 public:
  void Head(const char* name, const char* type, const char* help) {
    text_ += std::string("# HELP zemoradio_") + name + " " + help + "\n# TYPE zemoradio_" + name +
             " " + type + "\n";
  }
  template <typename Value>
  void Row(const std::string& name, Value value) {
    text_ += "zemoradio_" + name + " " + Number(value) + "\n";
  }
  void Gauge(const char* name, const char* help, double value) {
    Head(name, "gauge", help);
    Row(name, value);
  }
  template <typename Value>
  void Counter(const char* name, const char* help, Value value) {
    Head(name, "counter", help);
    Row(name, value);
  }
  std::string Text() { return std::move(text_); }

 private:
  std::string text_;
};

double Seconds(int64_t ms) {
  return static_cast<double>(ms) / 1000;
}

double SecondsOfFrames(uint64_t frames) {
  return static_cast<double>(frames) / kSampleRate;
}

void AddAir(Metrics& metrics, const Station& station) {
  const EngineState& engine = station.engine;
  const bool sounds = station.platform.sound.ElementSounds();
  metrics.Gauge("on_air", "1 while the engine runs.", engine.IsRunning);
  metrics.Gauge("automatic", "1 in automatic mode, 0 in live mode.", engine.IsAutomatic);
  metrics.Gauge("element_sounds", "1 while an element plays.", sounds);
  metrics.Gauge("emergency", "1 while the emergency folder plays.", engine.EmergencyOnAir);
  metrics.Gauge("element_position_seconds", "Of the element on air, read so far.",
                sounds ? Seconds(engine.ElementPositionMs) : 0);
  metrics.Gauge("element_length_seconds", "Of the element on air.",
                sounds ? Seconds(engine.ElementLengthMs) : 0);
  metrics.Gauge("list_elements", "Rows of the on-air list.", station.PL.Count());
  metrics.Gauge("list_seconds", "What the rows of the on-air list take together.",
                ListTotalSec(station));
}

void AddLateStarts(Metrics& metrics, const LateStarts& late) {
  const char* const name = "start_lateness_seconds";
  metrics.Head(name, "histogram",
               "How far behind the exit point of the element before an element began to be heard.");
  uint64_t count = 0;
  for (size_t at = 0; at < late.counts.size(); ++at) {
    count += late.counts[at];
    const bool last = at == LateStarts::kBoundsSec.size();
    metrics.Row(std::string(name) + "_bucket" +
                    Label("le", last ? "+Inf" : Number(LateStarts::kBoundsSec[at])),
                count);
  }
  metrics.Row(std::string(name) + "_sum", late.sumSec);
  metrics.Row(std::string(name) + "_count", count);
}

void AddOutput(Metrics& metrics, const SoundHealth& output) {
  metrics.Gauge("output_heard", "1 while a device or a file takes the sound.", output.heard);
  metrics.Gauge("output_is_device", "1 where the output is a device, 0 for a file or none.",
                output.device);
  metrics.Counter("output_underruns_total", "Times that the output found too little to play.",
                  output.underruns);
  metrics.Counter("output_late_seconds_total", "Silence in the place of sound decoded too late.",
                  SecondsOfFrames(output.lateFrames));
  metrics.Counter("output_lost_seconds_total", "Silence in a file that was too slow.",
                  SecondsOfFrames(output.lostFrames));
  metrics.Counter("output_device_losses_total", "Times that the device was lost while it played.",
                  output.losses);
}

void AddBase(Metrics& metrics, Station& station) {
  const LockWait::Waited& waited = station.base.Waiting().SoFar();
  const BaseLink* const link = station.platform.baseLink;
  const BaseLinkState server = link ? link->State() : BaseLinkState{.reachable = true};
  metrics.Gauge("base_open", "1 while the base is open.", station.base.IsOpen());
  metrics.Gauge("base_unwritten_rows", "Rows that the base could not take yet.",
                static_cast<double>(station.engine.kept.writes.size()));
  metrics.Gauge("base_server_reachable",
                "1 where the server of the base answers, or the base is on none.",
                server.reachable);
  metrics.Gauge("base_server_waiting_writes",
                "Writes of this machine that the server of the base has still to take.",
                static_cast<double>(server.waiting));
  metrics.Counter("base_waits_total", "Operations that waited for a lock of another program.",
                  waited.operations);
  metrics.Counter("base_wait_seconds_total", "Time that they waited.", Seconds(waited.ms));
}

void AddSpace(Metrics& metrics, const FreeSpace& space) {
  metrics.Head("disk_free_bytes", "gauge", "Room on the disk of a folder, -1 where it is unknown.");
  metrics.Row("disk_free_bytes" + Label("folder", "station"),
              static_cast<double>(space.stationBytes));
  metrics.Row("disk_free_bytes" + Label("folder", "machine"),
              static_cast<double>(space.machineBytes));
}

void AddControl(Metrics& metrics, const ControlFigures& control) {
  metrics.Gauge("control_clients", "Clients of the control socket.",
                static_cast<double>(control.clients));
  metrics.Counter("control_accepted_total", "Clients that were let in.", control.accepted);
  metrics.Head("control_cut_offs_total", "counter", "Clients that were sent away, by the reason.");
  for (size_t cut = 0; cut < kControlCuts; ++cut)
    metrics.Row("control_cut_offs_total" + Label("reason", kCutNames[cut]), control.cuts[cut]);
}

}  // namespace

std::string MetricsText(Station& station, const SoundHealth& output, const FreeSpace& space,
                        const ControlFigures& control, int64_t uptimeMs) {
  Metrics metrics;
  metrics.Head("build_info", "gauge", "1; the version stands in its label.");
  metrics.Row("build_info" + Label("version", kVersion), uint64_t{1});
  metrics.Gauge("uptime_seconds", "Since the start of the program.", Seconds(uptimeMs));
  AddAir(metrics, station);
  AddLateStarts(metrics, station.engine.lateStarts);
  AddOutput(metrics, output);
  AddBase(metrics, station);
  AddSpace(metrics, space);
  AddControl(metrics, control);
  return metrics.Text();
}

}  // namespace zemo
