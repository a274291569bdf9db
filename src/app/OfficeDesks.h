// The office's windows beside the air, with what this machine has for them: the main screen's
// entries open them, and they are left together.
#pragma once

#include <functional>

#include "app/BackgroundMeasuring.h"
#include "app/ForecastOfDay.h"
#include "app/ForecastProcess.h"
#include "library/screens/LibraryDesk.h"
#include "platform/real/files/ImportThread.h"
#include "platform/real/spreadsheet/BackgroundXlsxWriter.h"
#include "reports/screens/ReportDesk.h"
#include "scheduling/screens/ModelDesk.h"
#include "settings/screens/SettingsDesk.h"
#include "traffic/screens/AffidavitDesk.h"
#include "traffic/screens/CampaignDesk.h"
#include "voicetrack/screens/VoiceTrackDesk.h"

namespace zemo {

class RealStation;
class Waveforms;
struct RunFolders;
struct ScreenSources;

// Thread: the logic's. What it is given outlives it.
class OfficeDesks {
 public:
  OfficeDesks(RealStation& real, const RunFolders& folders, Waveforms& waveforms);

  // The main screen's window, over which the selector and the voice tracks open, is asked for at
  // each opening.
  void OfferTo(ScreenSources& sources, std::function<QWidget*()> mainScreen);
  // Ahead of the station's end. False while one of them may not be left; the others are left.
  bool Leave();

 private:
  BackgroundXlsxWriter spreadsheets_;
  ImportThread importFiles_;
  BackgroundMeasuring measuring_;
  // Beside the forecast of the air, which may run at the same time.
  ForecastProcess weekForecast_;
  ForecastOfDay dayForecast_;

  LibraryDesk library_;
  CampaignDesk campaigns_;
  ModelDesk models_;
  AffidavitDesk affidavit_;
  ReportDesk report_;
  SettingsDesk settings_;
  VoiceTrackDesk voiceTracks_;
};

}  // namespace zemo
