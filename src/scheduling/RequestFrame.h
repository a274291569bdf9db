// What every request has around its work: the tick held, the progress line, PL hidden, and the way
// back from a success and from a failure.
#pragma once

#include <cstdint>

#include "scheduling/ChoiceLog.h"
#include "station/Station.h"

namespace zemo {

// Begins at the moment in which the request stops the tick, and ends with one of Finish, Leave and
// Fail. The destructor lets the tick go and puts the progress line to rest, unless Leave kept its
// text.
class RequestFrame {
 public:
  RequestFrame(Station& station, const char* kind);  // percentage, skeleton, dialog
  ~RequestFrame();
  RequestFrame(const RequestFrame&) = delete;

  // Progress line, list out of sight, pointer, and MinutesRequete where `minutes` is above 0.
  // Yields.
  void Open(int minutes);
  int FirstNewRow() const { return firstNewRow_; }  // F: the row count of Open, and 1
  // Puts the candidate into PL at that row, past the end at the end.
  void List(int row, OnAirElement candidate, const ChoiceReason& reason);
  // For whoever asks later: the cards of the query, how many of them are offered, and how long it
  // took to find them.
  void Saw(int candidates, size_t offered);
  // The good end: planned times, then pointer and list come back.
  void Finish();
  // Nothing to do: pointer and list come back, the message stays on the progress line; null:
  // whatever it showed.
  void Leave(const char* message);
  // Logs what is being handled under the request's name; a base out of reach has the next request
  // wait. Pointer and list stay as they are, with the rows added so far. Call in a catch block.
  void Fail(const char* request);

 private:
  void Tell();

  Station& station_;
  const char* kind_;
  int firstNewRow_ = 1;
  int rowsAdded_ = 0;
  size_t refusedBefore_;  // lines of an earlier request
  int64_t beginMs_;
  RequestSeen seen_;
  bool messageStays_ = false;
  MainTimerHold hold_;
};

// Recent artists, the report's head, an empty list of refusals and the shift. Throws StoreError.
void PrepareRules(Station& station);

// "RECHERCHE DE 30 MINUTES DE MUSIQUE" on the progress line, by Langue; nothing in a language that
// has no such text.
void ShowSearch(Station& station);

inline constexpr const char* kNoModelsFrench = "IL N'Y A PAS DE MODELS DEFINIS";
inline constexpr const char* kNoModelsEnglish = "NO MODELS DEFINED";
inline constexpr const char* kNoModelsPortuguese = "NAO HA MODELOS DEFINIDOS";

}  // namespace zemo
