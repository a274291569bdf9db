// `zemoradio settings`: the settings of a station and its machine from the terminal. Works on the
// station itself, which may be on air: what is set takes effect as if its screen had been closed.
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/Commands.h"
#include "app/OwnStation.h"
#include "platform/SettingsDevices.h"
#include "platform/real/sound/MachineDevices.h"
#include "settings/SettingsByName.h"
#include "settings/SettingsControls.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

// The first fault that the logic logged, for the one line of the command.
class FirstFault : public EventSink {
 public:
  void OnEvent(const Event& event) override {
    if (event.name == "error" && text_.empty()) text_ = event.Text("text");
  }
  void Throw() const {
    if (!text_.empty()) throw std::runtime_error(text_);
  }

 private:
  std::string text_;
};

std::string RangeText(const NamedSetting& setting) {
  std::string text;
  if (setting.lowest)
    text = std::to_string(*setting.lowest) + " to " + std::to_string(*setting.highest);
  if (setting.longest) text = "at most " + std::to_string(*setting.longest) + " characters";
  if (!setting.settable) text = "not set by hand";
  if (!setting.byDefault.empty())
    text += (text.empty() ? "default " : ", default ") + setting.byDefault;
  return text;
}

void Tell(const NamedSetting& setting, std::ostream& out) {
  out << setting.name << " = " << setting.value;
  if (!setting.unit.empty()) out << " " << setting.unit;
  out << "\n    " << setting.meaning << "\n";
  const std::string range = RangeText(setting);
  out << "    " << setting.store << (range.empty() ? "" : "; " + range) << "\n";
}

Json AsJson(const NamedSetting& setting) {
  const auto number = [](const std::optional<int64_t>& value) {
    return value ? Json(*value) : Json();
  };
  return {{"name", setting.name},
          {"store", setting.store},
          {"value", setting.value},
          {"unit", setting.unit},
          {"lowest", number(setting.lowest)},
          {"highest", number(setting.highest)},
          {"longest", number(setting.longest)},
          {"default", setting.byDefault},
          {"meaning", setting.meaning},
          {"settable", setting.settable}};
}

void TellJson(const Json& json, std::ostream& out) {
  out << json.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

void List(Station& station, SettingsDevices& devices, bool json) {
  const std::vector<NamedSetting> settings = ListSettings(station, devices);
  if (!json) {
    for (const NamedSetting& setting : settings) Tell(setting, std::cout);
    return;
  }
  Json all = Json::array();
  for (const NamedSetting& setting : settings) all.push_back(AsJson(setting));
  TellJson(all, std::cout);
}

void Get(Station& station, SettingsDevices& devices, const SettingsOptions& options) {
  const auto setting = GetSetting(station, devices, options.name);
  if (!setting) throw UsageError("there is no setting " + options.name);
  if (options.json)
    TellJson(AsJson(*setting), std::cout);
  else
    std::cout << setting->value << "\n";
}

void Set(Station& station, SettingsDevices& devices, const SettingsOptions& options) {
  if (const auto why = SetSetting(station, devices, options.name, options.value))
    throw UsageError(*why);
}

}  // namespace

namespace {

// Only who names one of the two choices of a device waits for the sound systems' answers.
std::unique_ptr<SettingsDevices> DevicesFor(const SettingsOptions& options) {
  const SettingsControl* control = FindSettingsControl(options.name);
  if (control != nullptr && control->in == StoredIn::kAudio)
    return std::make_unique<MachineDevices>(nullptr, nullptr);
  return std::make_unique<NoSettingsDevices>();
}

}  // namespace

int RunSettingsCommand(const SettingsOptions& options) {
  SimStation sim = MakeOwnStation(options, BaseLock::Kind::kGuest);
  FirstFault faults;
  sim.station.events.SetSink(&faults);
  OpenOwnBase(sim.station);
  const std::unique_ptr<SettingsDevices> devices = DevicesFor(options);
  if (options.action == "get")
    Get(sim.station, *devices, options);
  else if (options.action == "set")
    Set(sim.station, *devices, options);
  else
    List(sim.station, *devices, options.json);
  faults.Throw();
  return 0;
}

}  // namespace zemo
