// The members of each event, in the order in which a trace line holds them.
#include "station/EngineEvents.h"

#include <algorithm>
#include <cmath>

namespace zemo {

namespace {
// Whole numbers leave as integers, so that a trace shows 1600 and not 1600.0.
EventValue Number(double value) {
  if (std::nearbyint(value) == value && std::fabs(value) < 9e15) return static_cast<int64_t>(value);
  return value;
}
EventValue Int(int64_t value) {
  return value;
}

// Null: the event has no member of that name, or one of another kind.
template <typename Kind>
const Kind* MemberOf(const Event& event, std::string_view name) {
  const auto named = std::find_if(event.members.begin(), event.members.end(),
                                  [&](const auto& member) { return member.first == name; });
  return named == event.members.end() ? nullptr : std::get_if<Kind>(&named->second);
}
}  // namespace

std::string Event::Text(std::string_view member) const {
  const auto* text = MemberOf<std::string>(*this, member);
  return text ? *text : std::string();
}

int64_t Event::Number(std::string_view member) const {
  if (const auto* whole = MemberOf<int64_t>(*this, member)) return *whole;
  const auto* real = MemberOf<double>(*this, member);
  return real ? static_cast<int64_t>(*real) : 0;
}

void EngineEvents::Engine(bool running, bool automatic) {
  Send({"engine", {{"running", running}, {"automatic", automatic}}});
}

void EngineEvents::Start(const StartedElement& e) {
  Send({"start",
        {{"code", Int(e.code)},
         {"file", e.file},
         {"title", e.title},
         {"kind", e.kind},
         {"slot", Int(e.slot)},
         {"length_ms", Int(e.length_ms)},
         {"position_ms", Int(e.position_ms)},
         {"volume", Int(e.volume)}}});
}

void EngineEvents::OnAir(int32_t code, double mix_ms, int32_t intro_s) {
  Send({"onair", {{"code", Int(code)}, {"mix_ms", Number(mix_ms)}, {"intro_s", Int(intro_s)}}});
}

void EngineEvents::Skip(int32_t code, const std::string& file, const char* reason) {
  Send({"skip", {{"code", Int(code)}, {"file", file}, {"reason", std::string(reason)}}});
}

void EngineEvents::Marker(int32_t code, const std::string& title) {
  Send({"marker", {{"code", Int(code)}, {"title", title}}});
}

void EngineEvents::End(int slot, const char* reason) {
  Send({"end", {{"slot", Int(slot)}, {"reason", std::string(reason)}}});
}

void EngineEvents::Fade(int slot, int ms) {
  Send({"fade", {{"slot", Int(slot)}, {"ms", Int(ms)}}});
}

void EngineEvents::Volume(int slot, int from, int to) {
  Send({"volume", {{"slot", Int(slot)}, {"from", Int(from)}, {"to", Int(to)}}});
}

void EngineEvents::Overlay(const std::string& file, const char* reason, int volume) {
  Send({"overlay", {{"file", file}, {"reason", std::string(reason)}, {"volume", Int(volume)}}});
}

void EngineEvents::Request(const char* kind, int32_t minutes, int32_t rows, int32_t refused) {
  Send({"request",
        {{"kind", std::string(kind)},
         {"minutes", Int(minutes)},
         {"rows", Int(rows)},
         {"refused", Int(refused)}}});
}

void EngineEvents::Fit(const char* routine, const std::vector<int32_t>& before,
                       const std::vector<int32_t>& after) {
  Send({"fit", {{"routine", std::string(routine)}, {"before", before}, {"after", after}}});
}

void EngineEvents::Break(const char* routine, const std::string& moment, const std::string& type,
                         int32_t position, int32_t rows) {
  Send({"break",
        {{"routine", std::string(routine)},
         {"moment", moment},
         {"type", type},
         {"position", Int(position)},
         {"rows", Int(rows)}}});
}

void EngineEvents::Grid(int32_t rows, int32_t spots, int32_t news) {
  Send({"grid", {{"rows", Int(rows)}, {"spots", Int(spots)}, {"news", Int(news)}}});
}

void EngineEvents::List(int32_t code, const std::string& title, int32_t option) {
  Send({"list", {{"code", Int(code)}, {"title", title}, {"option", Int(option)}}});
}

void EngineEvents::Jingle(const char* routine, int32_t code, const std::string& file,
                          bool overlay) {
  Send({"jingle",
        {{"routine", std::string(routine)},
         {"code", Int(code)},
         {"file", file},
         {"overlay", overlay}}});
}

void EngineEvents::Report(const ReportRow& row) {
  Send({"report",
        {{"LADATE", row.LADATE},
         {"HEURE", row.HEURE},
         {"AUTEURCOMPOSITEUR", row.AUTEURCOMPOSITEUR},
         {"AUTEUR", row.AUTEUR},
         {"TITRE", row.TITRE},
         {"GENRE", row.GENRE},
         {"VARIETE", row.VARIETE},
         {"DATENUM", row.DATENUM},
         {"REFERENCE", row.REFERENCE},
         {"LABEL", row.LABEL},
         {"CODE", Int(row.CODE)}}});
}

void EngineEvents::Base(const char* state, const std::string& table) {
  Event event{"base", {{"state", std::string(state)}}};
  if (!table.empty()) event.members.emplace_back("table", table);
  Send(std::move(event));
}

void EngineEvents::Import(int32_t lines, int32_t added) {
  Send({"import", {{"lines", Int(lines)}, {"added", Int(added)}}});
}

void EngineEvents::Clipboard(const std::string& text) {
  Send({"clipboard", {{"text", text}}});
}

void EngineEvents::Message(const std::string& title, const std::string& text, const char* buttons,
                           const char* answer) {
  Send({"message",
        {{"title", title},
         {"text", text},
         {"buttons", std::string(buttons)},
         {"answer", std::string(answer)}}});
}

void EngineEvents::Flag(const char* name, double value, bool boolean) {
  const EventValue shown = boolean ? EventValue(value != 0) : Number(value);
  Send({"flag", {{"name", std::string(name)}, {"value", shown}}});
}

void EngineEvents::Silence(const char* state) {
  Send({"silence", {{"state", std::string(state)}}});
}

void EngineEvents::System(const char* action, const std::string& value) {
  Send({"system", {{"action", std::string(action)}, {"value", value}}});
}

void EngineEvents::Output(const char* state) {
  Send({"output", {{"state", std::string(state)}}});
}

void EngineEvents::Print(const std::string& title, Rows pages) {
  Send({"print", {{"title", title}, {"pages", std::move(pages)}}});
}

void EngineEvents::Prelisten(const char* state, const std::string& file, int device) {
  Send({"prelisten", {{"state", std::string(state)}, {"file", file}, {"device", int64_t{device}}}});
}

void EngineEvents::Preview(const char* state, const JoinSlot& slot, std::optional<int> fadeMs) {
  Event event{"preview",
              {{"state", std::string(state)},
               {"slot", Int(slot.slot)},
               {"file", slot.file},
               {"position_ms", Int(slot.position_ms)},
               {"volume", Int(slot.volume)}}};
  if (fadeMs) event.members.emplace_back("ms", Int(*fadeMs));
  Send(std::move(event));
}

void EngineEvents::Record(const char* state, const std::string& file, int64_t ms) {
  Send({"record", {{"state", std::string(state)}, {"file", file}, {"ms", Int(ms)}}});
}

void EngineEvents::Error(const std::string& where, int number, const std::string& text) {
  Send({"error", {{"where", where}, {"number", Int(number)}, {"text", text}}});
}

}  // namespace zemo
