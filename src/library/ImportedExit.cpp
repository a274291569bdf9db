#include "library/ImportedExit.h"

#include <exception>

#include "library/CardAdding.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"
#include "store/SoundMeasuresTable.h"

namespace zemo {

void TakeMeasures(Station& station, int32_t code, const std::string& file,
                  const SoundFileStamp& stamp, const SoundMeasures& measures, int32_t bareExitMs) {
  StoreMeasures(station.base, file, stamp, measures);
  const auto row = station.base.Table("Discotheque");
  if (!SeekCode(*row, code) || Trim(row->Text("FILENAME")) != file ||
      row->Int("POINTSORTIE") != bareExitMs)
    return;
  row->Edit();
  row->Set("POINTSORTIE", int64_t{measures.exitMs});
  row->Update();
  MusicCard card;
  HourMasks masks;
  TakeMusicCard(*row, card, masks);
  try {
    WriteMus(station, card, masks);
  } catch (const std::exception&) {
    LogCurrentException(station, "ReplaceChampsMusique");
  }
}

}  // namespace zemo
