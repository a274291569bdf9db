// `zemoradio` without a command: the main on-air screen over the real engine.
#include <QApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include "app/Commands.h"
#include "app/EndSignals.h"
#include "app/ErrorLine.h"
#include "app/ForecastProcess.h"
#include "app/LibraryKeeping.h"
#include "app/OfficeDesks.h"
#include "app/RealStation.h"
#include "app/RunEnd.h"
#include "app/RunFolders.h"
#include "app/demo/LocaleLanguage.h"
#include "engine/FreeMoment.h"
#include "engine/Startup.h"
#include "engine/screens/OnAirWindow.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/decoders/WaveformReader.h"
#include "platform/real/desktop/DesktopApplication.h"
#include "ui/ScreenDesktop.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value;
}

bool HasDisplay() {
  return IsSet("QT_QPA_PLATFORM") || IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY");
}

class ScreenSystem : public RealSystem {
 public:
  ScreenSize Screen() const override {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? ScreenSize{screen->size().width(), screen->size().height()} : ScreenSize{};
  }
};

// Qt's idea of a command line: ours is not for it to look at. An X display that does not answer is
// passed over instead of ending the process.
struct ScreenArguments {
  bool chosen = IsSet("QT_QPA_PLATFORM") || IsSet("WAYLAND_DISPLAY");
  int count = chosen ? 1 : 3;
  char name[16] = "zemoradio";
  char option[16] = "-platform";
  char value[16] = "xcb;offscreen";
  char* words[4] = {name, option, value, nullptr};
};

// A machine with somebody in front of it.
struct ScreenMachine {
  ScreenArguments arguments;
  ScreenApplication application{arguments.count, arguments.words};
  std::unique_ptr<Clipboard> clipboard = MakeClipboard();
  ScreenMessageBoxes messages;
  ScreenKeyboard keyboard;
  ScreenSystem system;
  bool Seen() const {
    return arguments.chosen || QGuiApplication::platformName() != QStringLiteral("offscreen");
  }
  DesktopParts Parts() { return {*clipboard, messages, keyboard, system}; }
};

OutputFigures FiguresOf(RealSoundChain& sound) {
  const SoundHealth health = sound.TakeHealth();
  return {.output = health.output,
          .heard = health.heard,
          .underruns = health.underruns,
          .lateFrames = health.lateFrames,
          .peakLeft = health.peakLeft,
          .peakRight = health.peakRight,
          .device = health.device};
}

int64_t FreeBytes(const std::string& folder) {
  std::error_code error;
  const auto space = std::filesystem::space(folder, error);
  return error ? -1 : static_cast<int64_t>(space.available);
}

void TellLine(const std::string& line) {
  PrintError(line);
}

// Known as soon as the base is open: the start has something to say by itself.
int LanguageNow(Station& station) {
  try {
    return station.base.IsOpen() ? static_cast<int>(station.base.CnfInt(Cnf::kLangue)) : 0;
  } catch (const std::exception&) {
    return 0;  // what cannot be read may be what the box tells
  }
}

// Without a window manager nobody else makes it fill the screen.
void FillScreen(QWidget& window) {
  if (const QScreen* screen = QGuiApplication::primaryScreen())
    window.setGeometry(screen->availableGeometry());
  window.showMaximized();
}

}  // namespace

int OpenScreen(const AirOptions& options) {
  if (!HasDisplay() || !ScreenMachine().Seen()) {
    TellLine("there is no display: on air as with 'zemoradio run'");
    return RunOnAir(options);
  }
  AskedOutput(options);  // refused before anything is made
  std::signal(SIGPIPE, SIG_IGN);
  EndSignals endSignals;  // before any thread is made
  ScreenMachine machine;
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setFont(Theme::Type(1, 15));  // also of what a style sheet gives no type
  const RunFolders folders = MakeRunFolders(options);
  RealStation real(folders.station, folders.machine, WantedOutput(options, folders.machine),
                   machine.Parts(), TellLine);
  Station& station = real.station;
  machine.messages.SetLanguage([&station] { return LanguageNow(station); });
  station.engine.keptAir.wanted = true;
  const bool first = HoldsNoBase(station);
  if (!OnAir::Form_Load(station)) {
    machine.messages.WaitUntilRead();
    return 1;
  }
  if (first) GiveNewStationItsLanguage(station);
  const LibraryKeeping libraryKeeping(station);  // ahead of the first request

  machine.application.onException = [&station] { LogCurrentException(station, "FrmZemo"); };

  WaveformReader waveforms(std::make_unique<SoundFileOpener>(), folders.machine + "/Peaks");
  ForecastProcess forecast(QCoreApplication::applicationFilePath().toStdString(), folders.station,
                           folders.machine);
  bool left = false;
  ScreenSources sources;
  sources.output = [&real] { return FiguresOf(*real.sound); };
  sources.freeDiskBytes = [&folders] { return FreeBytes(folders.station); };
  sources.waveforms = &waveforms;
  sources.forecast = &forecast;
  sources.closed = [&] {
    left = true;
    real.loop.Quit();
  };
  OfficeDesks desks(real, folders, waveforms);
  QPointer<OnAirWindow> main;
  desks.OfferTo(sources, [&main]() -> QWidget* { return main; });
  OnAirWindow window(station, sources);
  main = &window;
  machine.keyboard.Watch(&window, [&station] { return bool{station.engine.HotKeysArmed}; });
  machine.messages.SetWindow(&window, [&station] { return NoTickBelow(station); });
  FillScreen(window);
  OnAir::Form_Activate(station, true);
  window.Begin();

  RunEnd end(real, options,
             {.drained = [&real] { real.loop.Quit(); }, .leaving = [] {}, .line = TellLine});
  endSignals.Deliver([&end] { end.OnSignal(); });
  real.loop.Run();
  desks.Leave();
  if (!left) EndInOrder(station);
  return EndStatus(station);
}

}  // namespace zemo
