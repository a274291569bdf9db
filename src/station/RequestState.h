// What the music requests leave behind: the reasons of the last one's refusals, the candidates that
// it looked at, and the values that its routines share. Nothing here survives the program.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "station/OnAirElement.h"
#include "station/RefusedTitles.h"
#include "station/TextGrid.h"

namespace zemo {

struct LastAnswers;

// When this run last aired a title; the run's own clock never jumps.
struct Airing {
  int64_t ms = 0;         // monotonic
  std::string broadcast;  // as DIFFUSION01 of the card has it
};

// The choices of the last requests as they stand in the machine folder; see scheduling/ChoiceLog.h.
struct KeptChoices {
  struct Line {
    std::string line;
    int titles = 0;  // in it
  };
  bool loaded = false;     // the file was read
  bool failing = false;    // it could not be written, and that is logged
  bool writeAnew = false;  // it may hold half a line
  std::deque<Line> lines;  // the newest last
  int titles = 0;          // in all of them
  int titlesInFile = 0;    // lines that no longer count included
  std::function<void(const std::string& line)> heard;  // is told each new line; may be empty
};

// Thread: the logic's. Writers: the requests.
struct RequestState {
  // Refused titles, a line each with the reasons; stays until the next request.
  RefusedTitles ListAutorisation;
  // Recent artists, sorted without regard to case: of the report, and of every row of PL.
  std::vector<std::string> ECArtiste;
  std::vector<std::string> ECArtisteCapitals;  // the same lines in capitals
  int16_t DecalDiffCourant = 0;                // Cnf DecalDiff as the request read it
  int32_t DernierCodeRapport = 0;  // highest CODE of Rapport; keeps its value when that is empty
  int32_t MinutesRequete = 0;      // length of the request; CurrentHour puts 60 here
  // The last request's walk through the library, by the clock; a simulated one takes no time.
  // Writer: RequestFrame.
  int64_t lastWalkMs = 0;
  // The base kept the last request from its work: the next one waits until then (monotonic). -1: it
  // did not. Writer: RequestFrame.
  int64_t askAgainMs = -1;
  // The last request listed nothing: an automatic one waits until then (monotonic). -1: it listed
  // something, or another hour has come. Writers: RequestFrame, the tick.
  int64_t restUntilMs = -1;
  std::vector<OnAirElement> ListView1;  // candidates in the order in which they were offered
  bool PLHidden = false;                // the list is not drawn while a request works on it
  bool reportInMemory = false;          // the request asks it; writers: RecentReport, BaseFiles
  bool refusalFileFailing = false;      // it could not be written, and that is logged
  KeptChoices choices;                  // writer: ChoiceLog
  // What the base last said to the small questions of a request; scheduling/LastAnswers.h.
  std::shared_ptr<LastAnswers> lastAnswers;
  std::unordered_map<int32_t, Airing> airings;  // by CODE, at most the library; writer: playback

  // The skeleton dialogue.
  struct {
    bool open = false;
    TextGrid SquelettePLS;               // column 0 the genre, a row a position
    int selectedRow = 0;                 // of SquelettePLS
    std::vector<std::string> ListGenre;  // genres on offer
    int SpinMinutes = 0;                 // minutes wanted
    bool Redondance = false;             // ticked: a title may come several times
  } SkeletonDialog;
};

}  // namespace zemo
