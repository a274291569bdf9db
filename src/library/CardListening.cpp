// What is heard of the card shown on the prelisten: its file from the cursor on, and its joins.
#include <algorithm>
#include <exception>
#include <utility>

#include "library/CardTabs.h"
#include "library/LibraryHandler.h"
#include "library/PrelistenOutput.h"
#include "platform/Folder.h"
#include "platform/Prelisten.h"
#include "platform/SoundLengths.h"
#include "station/Loudness.h"
#include "station/Overlap.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

constexpr int32_t kLeadMs = 5000;  // heard ahead of a join

std::string PathOf(const Station& station, const std::string& storedPath) {
  return station.platform.soundFiles.Resolve(storedPath);
}

// The player has a file of the card's, which nobody else has opened since.
bool HasPlayer(const Station& station, const LibraryEditor& editor) {
  const Prelisten* player = station.platform.prelisten;
  const std::vector<std::string>& heard = editor.sound.heard;
  return player && player->PlayerState() != Prelisten::State::kClosed &&
         std::find(heard.begin(), heard.end(), player->FileName()) != heard.end();
}

bool OutputIsFree(Station& station, LibraryEditor& editor) {
  const bool free = ChoosePrelistenOutput(station);
  const bool chosen = PrelistenOutputIsChosen(station);
  editor.sound.refusal = !free ? kSamePrelistenOutput : chosen ? "" : kNoPrelistenOutput;
  return free;
}

// The player with that file open; null where the output is the air's.
Prelisten* OpenPlayer(Station& station, LibraryEditor& editor, const std::string& path) {
  Prelisten* player = station.platform.prelisten;
  if (!player) return nullptr;
  player->Close();
  editor.sound.heard.clear();
  if (!OutputIsFree(station, editor)) return nullptr;
  player->Open(path);
  editor.sound.heard = {path};
  return player;
}

void StartPlayer(Station& station, Prelisten& player) {
  player.OnEnd([&station](bool lost) {
    if (lost) TellPrelistenRefused(station);
  });
  try {
    player.Start();
  } catch (const std::exception&) {
    TellPrelistenRefused(station);
  }
}

void Play(Station& station, LibraryEditor& editor) {
  const bool open = HasPlayer(station, editor) && editor.sound.heard.size() == 1;
  Prelisten* player =
      open ? station.platform.prelisten : OpenPlayer(station, editor, editor.sound.path);
  if (!player || !OutputIsFree(station, editor)) return;
  player->SetPositionMs(editor.sound.markers.cursorMs);
  StartPlayer(station, *player);
}

Library::JoinTitle TitleOf(Station& station, int32_t code) {
  const auto card = station.base.Table("Discotheque");
  if (!SeekCode(*card, code)) return {};
  return {Trim(card->Text("FILENAME")), card->Text("AUTEUR") + " - " + card->Text("TITRE"),
          static_cast<int32_t>(card->Int("POINTSORTIE"))};
}

// As the screen shows it, stored or not.
Library::JoinTitle ShownTitle(const LibraryEditor& editor) {
  return {Trim(editor.music.ChFileName), editor.music.ChAuteur + " - " + editor.music.ChTitre,
          editor.music.PointSortie};
}

// CODE; 0 for none.
int32_t Neighbour(Station& station, LibraryEditor& editor, Library::JoinSide side) {
  const std::vector<int32_t>& codes = CodesInOrder(station, editor);
  const auto shown = std::find(codes.begin(), codes.end(), editor.Code());
  if (shown == codes.end()) return 0;
  if (side == Library::JoinSide::kBefore) return shown == codes.begin() ? 0 : *(shown - 1);
  return shown + 1 == codes.end() ? 0 : *(shown + 1);
}

std::string RoutineOf(Library::JoinSide side) {
  return side == Library::JoinSide::kBefore ? "BtnRaccordAvant" : "BtnRaccordApres";
}

void HearJoin(Station& station, LibraryEditor& editor, const Library::JoinTitle& first,
              const Library::JoinTitle& second) {
  const std::string firstPath = PathOf(station, first.file);
  const std::string secondPath = PathOf(station, second.file);
  Prelisten* player = OpenPlayer(station, editor, firstPath);
  if (!player) return;
  const int32_t exitMs =
      first.exitMs > 0 ? first.exitMs : static_cast<int32_t>(station.base.CnfInt(Cnf::kPmixDef));
  const int32_t atMs = std::max(0, player->LengthMs() - exitMs);
  const auto fadeOut = static_cast<int32_t>(station.base.CnfInt(Cnf::kFadeOut));
  player->SetPositionMs(std::max(0, atMs - kLeadMs));
  player->Follow(
      {.path = secondPath,
       .atMs = atMs,
       .fadeMs = OverlapFadeMs(exitMs, fadeOut, station.platform.lengths.LengthMs(second.file)),
       .openGain = LoudnessGain(station, first.file),
       .gain = LoudnessGain(station, second.file)});
  editor.sound.heard = {firstPath, secondPath};
  StartPlayer(station, *player);
}

}  // namespace

void Library::BtnEcoute_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "BtnEcoute", [&] {
    if (editor.sound.file.empty()) return;
    if (!IsListening(station, editor)) return Play(station, editor);
    const int32_t heardAt = HeardAtMs(station, editor);
    station.platform.prelisten->Pause();
    if (heardAt >= 0) Markers::SetCursor(editor.sound.markers, heardAt);
  });
}

void Library::StopListening(Station& station, LibraryEditor& editor) {
  if (HasPlayer(station, editor)) station.platform.prelisten->Close();
  editor.sound.heard.clear();
  editor.sound.refusal.clear();
}

bool Library::IsListening(const Station& station, const LibraryEditor& editor) {
  return HasPlayer(station, editor) &&
         station.platform.prelisten->PlayerState() == Prelisten::State::kPlaying;
}

std::string Library::ListeningNote(const Station& station, const LibraryEditor& editor) {
  if (!IsListening(station, editor)) return editor.sound.refusal;
  return HeardAtMs(station, editor) < 0 ? editor.sound.joined : "";
}

int32_t Library::HeardAtMs(const Station& station, const LibraryEditor& editor) {
  if (!IsListening(station, editor)) return -1;
  const Prelisten& player = *station.platform.prelisten;
  return player.FileName() == editor.sound.path ? player.PositionMs() : -1;
}

void Library::ListenAt(Station& station, LibraryEditor& editor, int32_t ms) {
  Markers::SetCursor(editor.sound.markers, ms);
  HandleControl(station, "VueOnde", [&] {
    if (HeardAtMs(station, editor) >= 0)
      station.platform.prelisten->SetPositionMs(editor.sound.markers.cursorMs);
  });
}

Library::JoinTitle Library::PartnerOf(Station& station, LibraryEditor& editor, JoinSide side) {
  JoinTitle title;
  HandleControl(station, RoutineOf(side), [&] {
    if (editor.TabStrip1 != LibraryTab::kMusic) return;
    const int32_t kept = editor.sound.partner;
    const bool other = kept > 0 && kept != editor.Code();
    if (other) title = TitleOf(station, kept);
    if (!title.file.empty()) return;
    if (const int32_t code = Neighbour(station, editor, side); code > 0)
      title = TitleOf(station, code);
  });
  return title;
}

void Library::BtnRetenir_Click(LibraryEditor& editor) {
  editor.sound.partner = editor.sound.partner == editor.Code() ? 0 : editor.Code();
}

void Library::BtnRaccord_Click(Station& station, LibraryEditor& editor, JoinSide side) {
  HandleControl(station, RoutineOf(side), [&] {
    const JoinTitle other = PartnerOf(station, editor, side);
    const JoinTitle shown = ShownTitle(editor);
    if (other.file.empty() || shown.file.empty()) return;
    editor.sound.joined = other.name;
    if (side == JoinSide::kBehind)
      HearJoin(station, editor, shown, other);
    else
      HearJoin(station, editor, other, shown);
  });
}

}  // namespace zemo
