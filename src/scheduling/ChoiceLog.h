// What the last requests saw when they chose: kept in "Choices.Txt" of the machine folder, so that
// a title on air can be explained afterwards.
//
// The file is text, a JSON object a line and request, the newest last, UTF-8. It holds at least the
// last 200 titles chosen; a line is appended at the end of a request, and now and then the file is
// written anew with what still counts. Nothing on air reads it, and a file that cannot be written
// costs nothing but itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Clock.h"

namespace zemo {

struct Station;

inline constexpr const char* kChoicesFile = "Choices.Txt";
inline constexpr int kChoicesKept = 200;
inline constexpr int kRefusalsKept = 20;  // lines of one request

// Why a title was taken. What a request has none of stays 0.
struct ChoiceReason {
  int place = 0;  // among the candidates offered, from 1
  // By percentages: what its genre was to have of the time of its variety, what it had had, and
  // with this title; all in per cent of `budgetSec`.
  double percent = 0, shareBefore = 0, shareAfter = 0;
  double budgetSec = 0;
  // Along a skeleton: the row of its position and the pass over the skeleton, both from 1.
  int position = 0, pass = 0;
};

struct ChosenTitle {
  int32_t code = 0;
  std::string artist, title, genre, variety;  // as listed
  ChoiceReason reason;
};

struct RequestSeen {
  LocalDateTime at;  // its begin
  std::string kind;  // percentage, skeleton, dialog
  int hour = 0;
  int weekday = 0;  // 1 Monday to 7
  int minutes = 0;
  int candidates = 0;                 // cards of its query
  int offered = 0;                    // of them left by rules, lists, artists and cuts
  int refused = 0;                    // lines of ListAutorisation
  std::vector<std::string> refusals;  // the first of these lines
  std::vector<ChosenTitle> titles;    // in the order taken
};

// Keeps a request that took titles; one without is passed over. Never throws: a file that cannot be
// written is logged once, until it can be again.
void KeepChoices(Station& station, const RequestSeen& request);

// The line of the file, without its end.
std::string ChoicesLine(const RequestSeen& request);

}  // namespace zemo
