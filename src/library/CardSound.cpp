// The marks of the card shown, between its boxes, its marks file and the waveform.
#include "library/CardSound.h"

#include <algorithm>

#include "library/LibraryEditor.h"
#include "library/LibraryHandler.h"
#include "platform/Folder.h"
#include "platform/SoundSource.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SoundMeasuresTable.h"

namespace zemo {

namespace {

ExtractMarks ExtractOf(const SoundMarks& marks) {
  return {marks.extractBeginMs, marks.extractEndMs};
}

void ReadMarks(Station& station, CardSound& sound) {
  sound.storedMarks = ReadExtractMarks(station, sound.file).value_or(ExtractMarks());
  sound.markers.marks.extractBeginMs = sound.storedMarks.startMs;
  sound.markers.marks.extractEndMs = sound.storedMarks.endMs;
}

void ReadMeasures(Station& station, CardSound& sound) {
  const auto stamp = station.platform.soundFiles.Stamp(sound.file);
  if (!stamp) return;
  const NoLockWait atOnce(station.base.Waiting());
  const auto measures = FindMeasures(station.base.Db(), sound.file, *stamp);
  if (!measures) return;
  if (Markers::LengthMs(sound.markers) != measures->lengthMs)
    Markers::SetLength(sound.markers, MsToFrames(measures->lengthMs));
  sound.markers.measured = {measures->soundBeginMs, measures->soundEndMs, measures->exitMs};
}

}  // namespace

void Library::LookAtSound(Station& station, LibraryEditor& editor) {
  CardSound& sound = editor.sound;
  const std::string file = Trim(editor.music.ChFileName);
  if (sound.file == file && sound.code == ValInt(editor.music.lblNumero)) return;
  StopListening(station, editor);
  ForgetSound(editor);
  sound.file = file;
  sound.code = ValInt(editor.music.lblNumero);
  if (file.empty()) return;
  sound.path = station.platform.soundFiles.Resolve(file);
  Markers::SetLength(sound.markers, MsToFrames(ValInt(editor.music.Longeur)));
  HandleControl(station, "VueOnde", [&] { ReadMarks(station, sound); });
  LookForMeasures(station, editor);
  TakeMarkBoxes(editor);
}

void Library::LookForMeasures(Station& station, LibraryEditor& editor) {
  if (editor.sound.file.empty()) return;
  HandleControl(station, "VueOnde", [&] { ReadMeasures(station, editor.sound); });
}

void Library::ForgetSound(LibraryEditor& editor) {
  const int32_t partner = editor.sound.partner;
  const std::vector<std::string> heard = editor.sound.heard;
  editor.sound = CardSound();
  editor.sound.partner = partner;
  editor.sound.heard = heard;
}

void Library::TakeMarkBoxes(LibraryEditor& editor) {
  SoundMarks& marks = editor.sound.markers.marks;
  marks.introSec = std::max(0, ValInt(editor.music.ChIntro));
  marks.exitMs = editor.music.PointSortie;
}

void Library::PutMarkBoxes(LibraryEditor& editor) {
  const SoundMarks& marks = editor.sound.markers.marks;
  if (marks.introSec != std::max(0, ValInt(editor.music.ChIntro)))
    editor.music.ChIntro = marks.introSec > 0 ? std::to_string(marks.introSec) : "";
  editor.music.PointSortie = marks.exitMs;
}

bool Library::ExtractIsChanged(const LibraryEditor& editor) {
  const CardSound& sound = editor.sound;
  return !sound.file.empty() && sound.file == Trim(editor.music.ChFileName) &&
         ExtractOf(sound.markers.marks) != sound.storedMarks;
}

void Library::StoreExtract(Station& station, LibraryEditor& editor) {
  if (!ExtractIsChanged(editor)) return;
  CardSound& sound = editor.sound;
  const ExtractMarks marks = ExtractOf(sound.markers.marks);
  WriteExtractMarks(station, sound.file, marks);
  sound.storedMarks = marks;
}

}  // namespace zemo
