// What the engine tells the outside as it works: one procedure an event, which is also the one
// table of the events' members. The trace of a simulation, the lines of `run` and tests listen.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zemo {

using Rows = std::vector<std::vector<std::string>>;
using NamedValues =
    std::vector<std::pair<std::string, std::variant<bool, double, std::string, std::vector<int32_t>,
                                                    std::vector<bool>, std::vector<std::string>>>>;
using NamedRows = std::vector<std::pair<std::string, Rows>>;
using EventValue = std::variant<bool, int64_t, double, std::string, std::vector<int32_t>,
                                std::vector<std::string>, Rows, NamedValues, NamedRows>;

struct Event {
  std::string_view name;
  std::vector<std::pair<std::string_view, EventValue>> members;  // in the order they are written

  // Of the member of that name; empty and 0 without one, or where it is of another kind. A real
  // number is cut to its whole part.
  std::string Text(std::string_view member) const;
  int64_t Number(std::string_view member) const;
};

// Thread: the logic's.
class EventSink {
 public:
  virtual ~EventSink() = default;
  virtual void OnEvent(const Event& event) = 0;
  // A line of the error log on what an event of its own tells already.
  virtual void OnNotice(const std::string& /*where*/, const std::string& /*text*/) {}
};

// One row of the broadcast report as it was written.
struct ReportRow {
  std::string LADATE, HEURE, AUTEURCOMPOSITEUR, AUTEUR, TITRE, GENRE, VARIETE;
  double DATENUM = 0;  // day serial
  std::string REFERENCE, LABEL;
  int64_t CODE = 0;
};

// An element that begins to sound.
struct StartedElement {
  int32_t code = 0;
  std::string file, title, kind;
  int slot = 0;
  int32_t length_ms = 0, position_ms = 0;
  int volume = 0;
};

// Thread: the logic's.
class EngineEvents {
 public:
  void SetSink(EventSink* sink) { sink_ = sink; }  // not owned; null: nobody listens

  void Engine(bool running, bool automatic);
  void Start(const StartedElement& element);
  void OnAir(int32_t code, double mix_ms, int32_t intro_s);
  void Skip(int32_t code, const std::string& file,
            const char* reason);  // missing, empty, unreadable
  void Marker(int32_t code, const std::string& title);
  void End(int slot, const char* reason);  // file, fade, stopped, restart
  void Fade(int slot, int ms);
  void Volume(int slot, int from, int to);
  void Overlay(const std::string& file, const char* reason,
               int volume);  // pip, jingle, voicetrack, key
  void Request(const char* kind, int32_t minutes, int32_t rows, int32_t refused);
  void Fit(const char* routine, const std::vector<int32_t>& before,
           const std::vector<int32_t>& after);
  void Break(const char* routine, const std::string& moment, const std::string& type,
             int32_t position, int32_t rows);
  void Grid(int32_t rows, int32_t spots, int32_t news);
  void List(int32_t code, const std::string& title, int32_t option);
  void Jingle(const char* routine, int32_t code, const std::string& file, bool overlay);
  void Report(const ReportRow& row);
  void Base(const char* state, const std::string& table = {});
  void Import(int32_t lines, int32_t added);
  void Clipboard(const std::string& text);
  void Message(const std::string& title, const std::string& text, const char* buttons,
               const char* answer);
  void Flag(const char* name, double value, bool boolean);
  void Silence(const char* state);                            // begin, end
  void System(const char* action, const std::string& value);  // shutdown, date
  void Output(const char* state);                             // open, start, stop, close
  void Error(const std::string& where, int number, const std::string& text);
  void Notice(const std::string& where, const std::string& text) {
    if (sink_) sink_->OnNotice(where, text);
  }
  void Print(const std::string& title, Rows pages);  // pages of lines
  void Prelisten(const char* state, const std::string& file, int device);
  // A slot in the join of a voice track: start, fade, volume, end.
  struct JoinSlot {
    int slot = 0;
    std::string file;
    int32_t position_ms = 0;
    int volume = 0;
  };
  void Preview(const char* state, const JoinSlot& slot, std::optional<int> fadeMs = {});
  void Record(const char* state, const std::string& file, int64_t ms);  // start, stop
  // A screen of the office; built by app/OfficeScreen.
  void Screen(Event event) { Send(std::move(event)); }
  // The whole state; built by engine/StateDump.
  void State(Event event) { Send(std::move(event)); }

 private:
  void Send(Event&& event) {
    if (sink_) sink_->OnEvent(event);
  }
  EventSink* sink_ = nullptr;
};

}  // namespace zemo
