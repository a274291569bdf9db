#include "library/PrelistenOutput.h"

#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "platform/Prelisten.h"
#include "settings/SideFiles.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr const char* kOutputRefuses = "Impossible d'écouter sur cette sortie audio";

// Output of the prelisten, and that of the air; 0 where none was ever chosen.
struct Outputs {
  int air = 0, prelisten = 0;
  bool chosen = false;  // that of the prelisten
};

Outputs ChosenOutputs(Station& station) {
  const LocalValues& values = station.platform.localValues;
  const auto prelisten = values.Get("AudioOutPFLID");
  Outputs outputs{ValInt(values.Get("AudioOutID").value_or("")), ValInt(prelisten.value_or("")),
                  prelisten.has_value() && ValInt(*prelisten) >= 0};
  if (!station.platform.machineFolder.Exists(station.files.ZemoAudio)) return outputs;
  LoadSaveAudio(station, "Load");
  if (station.lists.AudioOutID >= 0) outputs.air = station.lists.AudioOutID;
  if (station.lists.AudioOutPFLID < 0) return outputs;
  outputs.prelisten = station.lists.AudioOutPFLID;
  outputs.chosen = true;
  return outputs;
}

}  // namespace

bool ChoosePrelistenOutput(Station& station) {
  const Outputs outputs = ChosenOutputs(station);
  if (Prelisten* player = station.platform.prelisten;
      player && player->PlayerState() == Prelisten::State::kClosed)
    player->SetDevice(outputs.prelisten);
  return !station.engine.IsRunning || outputs.air != outputs.prelisten;
}

bool PrelistenOutputIsChosen(Station& station) {
  return ChosenOutputs(station).chosen;
}

void TellPrelistenRefused(Station& station) {
  station.platform.messages.Show("Alerte", kOutputRefuses, Buttons::kOk);
}

}  // namespace zemo
