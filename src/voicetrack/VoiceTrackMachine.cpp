// What the editor has of the machine: its values, its devices, what the microphone gives.
#include <algorithm>
#include <exception>
#include <utility>

#include "library/LibraryHandler.h"
#include "platform/LocalValues.h"
#include "platform/PreviewChain.h"
#include "platform/Recorder.h"
#include "platform/RoundTrip.h"
#include "platform/SoundSource.h"
#include "station/Station.h"
#include "voicetrack/VoiceTrackParts.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {

namespace {

constexpr int kDefaultLufs = -18;
constexpr int kDefaultPreRollSec = 5;
constexpr int kMostLatencyMs = 10000;          // a kept one that is longer was never measured
constexpr int64_t kSilentMicrophoneMs = 1500;  // told within two seconds
constexpr const char* kInputValue = "VoiceTrackInputID";
constexpr const char* kInputKeyValue = "VoiceTrackInputName";
constexpr const char* kOutputValue = "VoiceTrackOututID";
constexpr const char* kOutputKeyValue = "VoiceTrackOututName";
constexpr const char* kLatencyValue = "VoiceTrackLatence";
constexpr const char* kLatencyUsedValue = "VoiceTrackLatenceMesuree";

using Devices = std::vector<SoundDeviceList::Device>;

void SetIfNew(LocalValues& values, const char* name, const std::string& value) {
  if (values.GetText(name, "") != value) values.Set(name, value);
}

// What opens a device by its number finds there what it is known by.
void KeepDeviceValues(Station& station, const VoiceTrackEditor& editor) {
  LocalValues& values = station.platform.localValues;
  SetIfNew(values, kInputValue, std::to_string(editor.VoiceTrackInputID));
  SetIfNew(values, kInputKeyValue, editor.inputKey);
  SetIfNew(values, kOutputValue, std::to_string(editor.VoiceTrackOututID));
  SetIfNew(values, kOutputKeyValue, editor.outputKey);
}

std::string KeyAt(const Devices& devices, int32_t number) {
  const bool known = number >= 0 && static_cast<size_t>(number) < devices.size();
  return known ? devices[static_cast<size_t>(number)].key : "";
}

// The number that the device has now.
void FindAgain(Devices& devices, int32_t& number, std::string& key) {
  if (devices.empty()) return;
  if (key.empty()) {
    key = KeyAt(devices, number);
    return;
  }
  const auto is = [&](const SoundDeviceList::Device& device) { return device.key == key; };
  const auto found = std::find_if(devices.begin(), devices.end(), is);
  number = static_cast<int32_t>(found - devices.begin());
  if (found == devices.end()) devices.push_back({key, key});
}

void Listen(Station& station, const VoiceTrackEditor& editor) {
  if (Recorder* recorder = station.platform.recorder) recorder->Listen(editor.VoiceTrackInputID);
}

void TakeDevices(Station& station, VoiceTrackEditor& editor,
                 const SoundDeviceList::Devices& devices) {
  editor.devices = devices;
  FindAgain(editor.devices.inputs, editor.VoiceTrackInputID, editor.inputKey);
  FindAgain(editor.devices.outputs, editor.VoiceTrackOututID, editor.outputKey);
  KeepDeviceValues(station, editor);
  Listen(station, editor);
}

// It was that of other devices.
void ForgetLatency(VoiceTrackEditor& editor) {
  editor.LblLatence = -1;
  editor.CheckLatence = false;
}

// The editor may be closed in the yields.
void MeasureLatency(Station& station, VoiceTrackEditor& editor) {
  if (!station.platform.roundTrip) return;
  const int32_t code = editor.LblCodeVT;
  VoiceTracks::StopTrack(station, editor);
  VoiceTracks::EndJoin(station, editor);
  std::string fault;
  int32_t ms = -1;
  editor.GaugeVisible = true;
  try {
    ms = station.platform.roundTrip->MeasureMs(editor.VoiceTrackOututID, editor.VoiceTrackInputID);
  } catch (const std::exception& error) {
    fault = error.what();
  }
  if (!editor.open || editor.LblCodeVT != code) return VoiceTracks::CloseDevices(station);
  editor.GaugeVisible = false;
  if (!fault.empty()) {
    LogError(station, "BtnLatence", kErrFile, fault);
    return VoiceTracks::Tell(station, VoiceTracks::kNotMeasured + fault);
  }
  editor.LblLatence = ms;
  editor.CheckLatence = true;
}

void ShowMicrophone(Station& station, VoiceTrackEditor& editor) {
  Recorder* recorder = station.platform.recorder;
  if (!recorder) return;
  const Recorder::Levels levels = recorder->HeardLevels();
  editor.MMLevelX1 = levels.left;
  editor.MMLevelX2 = levels.right;
  editor.LblMicroVisible = recorder->SilentMs() >= kSilentMicrophoneMs;
  if (!editor.LblMicroVisible || !recorder->Recording()) return;
  if (!std::exchange(editor.silenceLogged, true))
    LogError(station, "WaveRecorder", kErrFile, "the sound input gives nothing");
}

}  // namespace

void VoiceTracks::TakeMachineValues(Station& station, VoiceTrackEditor& editor) {
  const LocalValues& values = station.platform.localValues;
  editor.VoiceTrackInputID = values.GetInt(kInputValue, 0);
  editor.inputKey = values.GetText(kInputKeyValue, "");
  editor.VoiceTrackOututID = values.GetInt(kOutputValue, 0);
  editor.outputKey = values.GetText(kOutputKeyValue, "");
  editor.LblEditeur = values.GetText("VoiceTrackEditeur", "");
  editor.LevelNormalize =
      std::clamp(values.GetInt("LevelNormalize", kDefaultLufs), kLeastLufs, kMostLufs);
  editor.SpinPreRoll = std::clamp(values.GetInt("PreRoll", kDefaultPreRollSec), 0, kMostPreRollSec);
  const int latencyMs = values.GetInt(kLatencyValue, -1);
  editor.LblLatence = latencyMs >= 0 && latencyMs <= kMostLatencyMs ? latencyMs : -1;
  VoiceTracks::CheckLatence_Click(editor, values.GetBool(kLatencyUsedValue, false));
}

void VoiceTracks::KeepMachineValues(Station& station, const VoiceTrackEditor& editor) {
  KeepDeviceValues(station, editor);
  LocalValues& values = station.platform.localValues;
  values.Set("VoiceTrackEditeur", editor.LblEditeur);
  values.Set("LevelNormalize", std::to_string(editor.LevelNormalize));
  values.Set("PreRoll", std::to_string(editor.SpinPreRoll));
  SetIfNew(values, kLatencyValue, editor.LblLatence < 0 ? "" : std::to_string(editor.LblLatence));
  SetIfNew(values, kLatencyUsedValue, editor.CheckLatence ? "True" : "");
}

void VoiceTracks::OpenDevices(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, kInputValue, [&] { Listen(station, editor); });
  HandleControl(station, kInputValue, [&] {
    SoundDeviceList* list = station.platform.soundDevices;
    if (!list) return;
    list->Ask([&](const SoundDeviceList::Devices& devices) {
      HandleControl(station, kInputValue, [&] { TakeDevices(station, editor, devices); });
    });
  });
}

void VoiceTracks::CloseDevices(Station& station) {
  if (SoundDeviceList* list = station.platform.soundDevices) list->Forget();
  Recorder* recorder = station.platform.recorder;
  if (!recorder) return;
  recorder->OnEnd({});  // nobody is left to be told
  recorder->Listen(-1);
}

void VoiceTracks::VoiceTrackInputID_Change(Station& station, VoiceTrackEditor& editor,
                                           int32_t number) {
  HandleControl(station, kInputValue, [&] {
    editor.VoiceTrackInputID = number;
    editor.inputKey = KeyAt(editor.devices.inputs, number);
    ForgetLatency(editor);
    KeepDeviceValues(station, editor);
    Listen(station, editor);
  });
}

void VoiceTracks::VoiceTrackOututID_Change(Station& station, VoiceTrackEditor& editor,
                                           int32_t number) {
  HandleControl(station, kOutputValue, [&] {
    editor.VoiceTrackOututID = number;
    editor.outputKey = KeyAt(editor.devices.outputs, number);
    ForgetLatency(editor);
    KeepDeviceValues(station, editor);
  });
}

// By what the devices are known by, where both are; else by their numbers.
bool VoiceTracks::PlaysOnTheAirsOutput(const Station& station, const VoiceTrackEditor& editor) {
  const LocalValues& values = station.platform.localValues;
  const std::string air = values.GetText("AudioOutName", "");
  if (!air.empty() && !editor.outputKey.empty()) return air == editor.outputKey;
  const int32_t number =
      station.lists.AudioOutID >= 0 ? station.lists.AudioOutID : values.GetInt("AudioOutID", -1);
  return number >= 0 && number == editor.VoiceTrackOututID;
}

void VoiceTracks::BtnLatence_Click(Station& station, VoiceTrackEditor& editor) {
  if (editor.GaugeVisible) return;
  HandleControl(station, "BtnLatence", [&] { MeasureLatency(station, editor); });
}

void VoiceTracks::CheckLatence_Click(VoiceTrackEditor& editor, bool ticked) {
  editor.CheckLatence = ticked && editor.LblLatence >= 0;
}

void VoiceTracks::ShowLevels(Station& station, VoiceTrackEditor& editor) {
  ShowMicrophone(station, editor);
  PreviewChain* preview = station.platform.preview;
  if (!preview) return;
  const PreviewChain::Levels levels = preview->HeardLevels();
  editor.MMLevelX3 = levels.left;
  editor.MMLevelX4 = levels.right;
}

}  // namespace zemo
