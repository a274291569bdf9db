#include "engine/MainScreenPicture.h"

#include <cstdio>

#include "engine/ElementOnAir.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr uint32_t kFeuArmed = 0x80C0FF;  // extract, voice track armed
constexpr int kVoiceTrackPlays = -2;
constexpr int32_t kEmptyBarMs = 5000;  // the progress bar begins here

std::string Formatted(const char* form, double value) {
  char text[32];
  std::snprintf(text, sizeof text, form, value);
  return text;
}

// Voice track and extract share one light; the extract comes first.
MainScreen::Lamp LightOf(const EngineState& engine, bool even) {
  if (engine.CheckExtrait) {
    const bool over = engine.ExtractEndMs >= 1 && engine.ElementPositionMs >= engine.ExtractEndMs;
    return {"Extrait " + FormatDuration(engine.ExtractEndMs - engine.ElementPositionMs),
            even && !over, kFeuArmed};
  }
  if (engine.VoiceTrackState == 0) return {};
  return {"Voice Track", even,
          engine.VoiceTrackState == kVoiceTrackPlays ? kLightOnAir : kFeuArmed};
}

MainScreen::Lamp JoystickOf(const EngineState& engine) {
  const auto button = static_cast<int>(engine.joystickLamp);
  MainScreen::Lamp lamp{"", engine.JoystickInUse, button > 0 ? kLedOn : kLedOff};
  if (engine.joystickLamp != JoystickLamp::kDark) lamp.text = "Joy";
  if (button > 0) lamp.text += std::to_string(button);
  return lamp;
}

void DrawElement(MainScreen& screen, const Station& station) {
  const EngineState& engine = station.engine;
  screen.LblArtiste = station.notices.titleOnAir;
  const bool ticked = !engine.lastTickTime.empty();
  screen.Temp = ticked ? FormatDuration(engine.RemainingMs) : "--:--";
  screen.Tmn = engine.RemainingMs / 1000 / 60;
  screen.Tss = engine.RemainingMs / 1000 % 60;
  if (engine.ElementLengthMs <= 0) return;
  if (engine.ElementPositionMs >= kEmptyBarMs) screen.VuMettrePercent = engine.ProgressPercent;
  screen.LblEncours = ClockText(station.platform.sound.OutputPosition());
  screen.LblLongueur = FormatDuration(engine.ElementLengthMs);
  screen.PSortie = Formatted("PS %.1f", static_cast<double>(engine.MixPointMs) / 1000);
}

void DrawLights(MainScreen& screen, const Station& station, const LocalDateTime& now) {
  const EngineState& engine = station.engine;
  const bool even = now.second % 2 == 0;
  screen.LblTopage = {"Topage", even && engine.TopagePending, 0};
  screen.LblFeu = LightOf(engine, even);
  screen.voiceTrackHeard = !engine.CheckExtrait && engine.VoiceTrackState == kVoiceTrackPlays;
  screen.LblIntro = {engine.IntroOverlayLabel, even && engine.IntroOverlayPending, 0};
  if (engine.IntroShown && engine.IntroLengthSec > 0)
    screen.VueIntro = {true, IntroElapsedSec(engine, SecondsSinceMidnight(now)),
                       engine.IntroLengthSec};
  for (size_t contact = 0; contact < engine.Contacts.size(); ++contact)
    screen.LedSat[contact] = engine.Contacts[contact] ? kLedOn : kLedOff;
  screen.LedJoystique = JoystickOf(engine);
}

void DrawControls(MainScreen& screen, const Station& station) {
  const EngineState& engine = station.engine;
  screen.ToolbarStartPressed = engine.IsRunning;
  screen.CmdStopCaption = engine.IsRunning ? kNextCaption : kStopCaption;
  screen.MnuPlaylistEnabled = screen.MnuImprimeEnabled = !engine.IsRunning;
  screen.MnuParametrageEnabled = screen.MnuEditEnabled = !engine.ScreenLocked;
  screen.BtnSurImpressionCaption =
      engine.OverlayKey.empty() ? kOverlayAtRest : "Touche " + engine.OverlayKey;
  const GridFrame& grid = station.gridFrame;
  screen.BtnCopyPubEnabled = grid.open;
  if (!grid.chosenMoment.empty())
    screen.BtnCopyPubCaption =
        (grid.chosenIsSpots ? "Copier les pubs de " : "Copier les rubriques de ") +
        grid.chosenMoment;
  screen.SearchVisible = station.browse.ListRech.list == BrowseList::kMusic;
  screen.PictureNoJingleVisible = station.browse.ListRech.list == BrowseList::kJingles;
}

void DrawFoot(MainScreen& screen, const Station& station) {
  const ScreenNotices& notices = station.notices;
  const int32_t totalSec = ListTotalSec(station);
  screen.HHTot = totalSec / 3600;
  screen.MnTot = totalSec / 60 % 60;
  screen.SSTot = totalSec % 60;
  screen.LblOffsetBuffers =
      Formatted("%g '' de buffers", static_cast<double>(station.engine.BufferOffsetSec));
  if (notices.cycleMs) screen.LblMaxPlayInfo = HoursMinutesText(*notices.cycleMs);
  screen.LblInfoScrolling = !notices.ticker.empty();
  screen.LblInfo = screen.LblInfoScrolling ? notices.ticker : "ZEMO RADIO PRO";
}

}  // namespace

MainScreen PictureOf(const Station& station) {
  MainScreen screen;
  screen.LblMode = station.engine.IsAutomatic ? "Mode Automatique" : "Mode Direct Live";
  screen.InfoDate = station.notices.day;
  if (station.notices.noReport) screen.LblDateTitre = "No Rapport";
  DrawElement(screen, station);
  DrawLights(screen, station, station.Now());
  DrawControls(screen, station);
  DrawFoot(screen, station);
  return screen;
}

}  // namespace zemo
