#include "app/RealStation.h"

#include <QCoreApplication>
#include <utility>

#include "app/ChosenDevices.h"
#include "app/ServerLink.h"
#include "platform/real/analysis/RealLevelTool.h"
#include "station/BasePlaces.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

std::unique_ptr<ServerLink> LinkTo(const BasePlace& place, const std::string& machinePath) {
  if (place.isFile || !place.fault.empty()) return nullptr;
  return std::make_unique<ServerLink>(place, machinePath);
}

std::optional<BasePlace> ReplicaOf(const std::unique_ptr<ServerLink>& link) {
  if (!link) return std::nullopt;
  return link->Place();
}

constexpr int kSoundPollMs = 20;   // while something besides the air is at work
constexpr int kSoundRestMs = 150;  // above the tick, which comes ahead of it
constexpr int kErrSound = 321;     // a sound file or device that cannot be used
}  // namespace

RealStation::RealStation(const std::string& stationPath, const std::string& machinePath,
                         const OutputSpec& output, const DesktopParts& desktop, SoundNotice notice)
    : baseLock(stationPath),
      stationFolder(stationPath),
      machineFolder(machinePath),
      serverLink(LinkTo(PlaceOfBase(stationFolder), machinePath)),
      localValues(machineFolder),
      soundFiles(machineFolder),
      lengths(opener, soundFiles),
      sound(MakeRealSoundChain(opener, output,
                               [this, notice = std::move(notice)](const std::string& line) {
                                 if (stands_)
                                   LogError(station, "Sound", kErrSound, line);
                                 else if (notice)
                                   notice(line);
                               })),
      prelisten(loop, opener,
                [this](int number) {
                  // The voice tracks alone are heard by it as well.
                  const std::string key = PrelistenKey(localValues, number);
                  return PrelistenDevice(
                      key.empty() ? VoiceTrackOutputKey(localValues, number) : key, number);
                }),
      recorder(loop,
               [this](int number) { return InputOf(MicrophoneKey(localValues, number), number); }),
      preview(loop, opener,
              [this](int number) {
                return PrelistenDevice(VoiceTrackOutputKey(localValues, number), number);
              }),
      levelTool(loop, std::make_unique<RealLevelTool>(std::make_unique<SoundFileOpener>())),
      roundTrip(loop, preview, recorder, machineFolder),
      devices(sound.get(), &prelisten),
      serial(localValues, clock),
      joystick(loop),
      station(Platform{.clock = clock,
                       .loop = loop,
                       .sound = *sound,
                       .stationFolder = stationFolder,
                       .machineFolder = machineFolder,
                       .soundFiles = soundFiles,
                       .lengths = lengths,
                       .localValues = localValues,
                       .clipboard = desktop.clipboard,
                       .messages = desktop.messages,
                       .keyboard = desktop.keyboard,
                       .system = desktop.system,
                       .serial = serial,
                       .joystick = joystick,
                       .baseUse = &baseLock,
                       .baseLink = serverLink.get(),
                       .prelisten = &prelisten,
                       .recorder = &recorder,
                       .preview = &preview,
                       .levelTool = &levelTool,
                       .roundTrip = &roundTrip,
                       .soundDevices = &soundDevices},
              ReplicaOf(serverLink)) {
  stands_ = true;
  loop.SetIdle(
      [this] {
        bool again = sound->Poll();
        again |= prelisten.Poll();
        again |= recorder.Poll();
        again |= preview.Poll();
        again |= soundDevices.Poll();
        TellOfServer();
        return again;
      },
      kSoundPollMs, kSoundRestMs);
}

void RealStation::TellOfServer() {
  if (!serverLink) return;
  for (const std::string& line : serverLink->TakeLines())
    LogNotice(station, "Base", kErrOther, line);
}

RealStation::~RealStation() {
  loop.SetIdle(nullptr, kSoundPollMs, kSoundRestMs);
  sound->End();
}

}  // namespace zemo
