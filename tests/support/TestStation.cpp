#include "support/TestStation.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>
#include <stdexcept>

#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "station/BaseFiles.h"
#include "station/TextForms.h"
#include "store/DatabaseFiles.h"
#include "store/SqlText.h"

namespace zemo::test {

namespace {

class LevelSource : public SoundSource {
 public:
  LevelSource(int64_t frames, float level, double hertz)
      : frames_(frames), level_(level), hertz_(hertz) {}
  int64_t LengthFrames() const override { return frames_; }
  int Read(float* stereo, int frames) override {
    const auto given = static_cast<int>(std::min<int64_t>(frames, frames_ - position_));
    for (int i = 0; i < given; ++i) stereo[2 * i] = stereo[2 * i + 1] = At(position_ + i);
    position_ += given;
    return given;
  }
  void Seek(int64_t frame) override { position_ = std::clamp<int64_t>(frame, 0, frames_); }

 private:
  float At(int64_t frame) const {
    if (hertz_ == 0) return level_;
    const double turns = hertz_ * static_cast<double>(frame) / kSampleRate;
    return level_ *
           static_cast<float>(std::sin(2 * std::numbers::pi * (turns - std::floor(turns))));
  }

  int64_t frames_;
  float level_;
  double hertz_;  // 0: one level from begin to end
  int64_t position_ = 0;
};

struct ToText {
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const {
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
  }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(const std::vector<int32_t>& values) const {
    std::string text = "[";
    for (int32_t value : values) text += (text.size() > 1 ? "," : "") + std::to_string(value);
    return text + "]";
  }
  std::string operator()(const std::vector<std::string>& values) const {
    std::string text = "[";
    for (const auto& value : values) text += (text.size() > 1 ? "," : "") + value;
    return text + "]";
  }
  std::string operator()(const Rows& rows) const { return std::to_string(rows.size()) + " rows"; }
  template <typename T>
  std::string operator()(const T& pairs) const {
    return std::to_string(pairs.size()) + " pairs";
  }
};

class Connection {
 public:
  explicit Connection(const std::string& path) {
    if (sqlite3_open(path.c_str(), &db_) != SQLITE_OK)
      throw std::runtime_error("cannot open " + path);
    sqlite3_busy_timeout(db_, 5000);
  }
  ~Connection() { sqlite3_close(db_); }
  Connection(const Connection&) = delete;
  std::string Run(const std::string& sql) {
    std::string first;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
      throw std::runtime_error(sql + ": " + sqlite3_errmsg(db_));
    const int result = sqlite3_step(statement);
    if (result == SQLITE_ROW && sqlite3_column_text(statement, 0))
      first = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    sqlite3_finalize(statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
      throw std::runtime_error(sql + ": " + sqlite3_errmsg(db_));
    return first;
  }
  int64_t LastRow() { return sqlite3_last_insert_rowid(db_); }

 private:
  sqlite3* db_ = nullptr;
};

}  // namespace

std::string Quoted(const std::string& text) {
  return "'" + SqlQuoted(text) + "'";
}

TempFolder::TempFolder() {
  const std::string begin = testing::TempDir() + "zemo-";
  if (std::getenv("ZEMO_RECORDS")) {  // the same names in each recorded run, in a folder of its own
    int number = 100000;
    while (!std::filesystem::create_directory(begin + std::to_string(number))) ++number;
    path_ = begin + std::to_string(number);
    return;
  }
  path_ = begin + "XXXXXX";
  if (!mkdtemp(path_.data())) throw std::runtime_error("no temporary folder");
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::unique_ptr<SoundSource> LengthTable::Open(const std::string& path) {
  try {
    fault.Count();
  } catch (const FileError& error) {
    throw SoundError(error.what());
  }
  const auto found = lengthsMs.find(path);
  if (found == lengthsMs.end()) throw SoundError("'" + path + "' is no sound file");
  const float level = silent.contains(path) ? 0.0F : 0.25F;
  const auto tone = tones.find(path);
  return std::make_unique<LevelSource>(MsToFrames(found->second), level,
                                       tone == tones.end() ? 0 : tone->second);
}

const std::string& Seen::operator[](const std::string& member) const {
  static const std::string none;
  const auto found = members.find(member);
  return found == members.end() ? none : found->second;
}

int64_t Seen::Int(const std::string& member) const {
  return std::strtoll((*this)[member].c_str(), nullptr, 10);
}

LocalDateTime ParseMoment(const std::string& text) {
  LocalDateTime t;
  if (std::sscanf(text.c_str(), "%d-%d-%d %d:%d:%d", &t.year, &t.month, &t.day, &t.hour, &t.minute,
                  &t.second) != 6)
    throw std::invalid_argument(text);
  return t;
}

TestStation::TestStation(const std::string& begin, const std::string& sharedFolder,
                         std::optional<BasePlace> base)
    : onServer(sharedFolder.empty() ? stationDir.Path() : sharedFolder, !sharedFolder.empty()),
      loop(ParseMoment(begin)),
      sound(opener),
      prelisten(loop, loop, opener),
      recorder(loop, loop),
      preview(opener),
      soundDevices(loop),
      stationFolder(sharedFolder.empty() ? stationDir.Path() : sharedFolder),
      machineFolder(machineDir.Path()),
      soundFiles(machineFolder),
      lengths(opener, soundFiles),
      localValues(machineFolder),
      system(loop),
      station(Platform{.clock = loop,
                       .loop = loop,
                       .sound = sound,
                       .stationFolder = stationFolder,
                       .machineFolder = machineFolder,
                       .soundFiles = soundFiles,
                       .lengths = lengths,
                       .localValues = localValues,
                       .clipboard = clipboard,
                       .messages = messages,
                       .keyboard = keyboard,
                       .system = system,
                       .serial = automaton,
                       .joystick = joystick,
                       .prelisten = &prelisten,
                       .recorder = &recorder,
                       .preview = &preview,
                       .roundTrip = &roundTrip,
                       .soundDevices = &soundDevices},
              std::move(base)) {
  loop.SetSound(&sound);
  loop.SetPreview(&preview.Sound());
  station.events.SetSink(this);
  clipboard.changed = [this](const std::string& text) { station.events.Clipboard(text); };
  system.ordered = [this](const char* action, const std::string& value) {
    station.events.System(action, value);
  };
  prelisten.told = [this](const char* state, const std::string& file, int device) {
    station.events.Prelisten(state, file, device);
  };
  messages.shown = [this](const std::string& title, const std::string& text, Buttons buttons,
                          Answer answer) {
    station.events.Message(title, text, ButtonsWord(buttons), AnswerWord(answer));
  };
}

TestStation::~TestStation() {
  record_.Write(*this);
  station.events.SetSink(nullptr);
}

void TestStation::OnEvent(const Event& event) {
  record_.Add(loop.MonotonicMs(), event);
  Seen one{loop.MonotonicMs(), std::string(event.name), {}};
  for (const auto& [name, value] : event.members)
    one.members[std::string(name)] = std::visit(ToText{}, value);
  seen.push_back(std::move(one));
  if (listener) listener(event);
}

void TestStation::Load() {
  ASSERT_TRUE(OnAir::Form_Load(station));
  OnAir::Form_Activate(station, true);
}

void TestStation::Start() {
  OnAir::Toolbar_ButtonClick(station, Toolbar::kStart);
}

std::string TestStation::MakeSound(const std::string& name, int64_t lengthMs) {
  const std::string path = MakeFile(name, "sound");
  opener.lengthsMs[path] = lengthMs;
  return path;
}

std::string TestStation::MakeFile(const std::string& name, const std::string& bytes) {
  const std::string path = stationDir.Path() + "/" + name;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

int32_t TestStation::AddCard(const Card& card) {
  static const std::string allDay(24, '1');
  std::string file = card.file;
  if (file.empty())
    file = MakeSound("title" + SqlText("SELECT COUNT(*) + 1 FROM Discotheque") + ".wav",
                     card.lengthMs);
  std::string sql =
      "INSERT INTO Discotheque (FILENAME, DUREE, INTRO, AUTEUR, TITRE, GENRE, VARIETE, NBPASSJOUR, "
      "ECARTMINUTES, ECARTJOURS, ECARTARTISTE, COMMENTAIRE, POINTSORTIE";
  for (int day = 1; day <= 7; ++day) sql += ", TRANCHE" + TwoDigits(day);
  sql += ") VALUES (" + Quoted(file) + "," + std::to_string(card.lengthMs) + "," +
         std::to_string(card.introSec) + "," + Quoted(card.artist) + "," + Quoted(card.title) +
         "," + Quoted(card.genre) + "," + Quoted(card.variety) + ",1,120,0,0," +
         Quoted(card.comment) + "," + std::to_string(card.exitMs);
  for (int day = 1; day <= 7; ++day) sql += ",'" + allDay + "'";
  sql += ")";
  if (onServer.Stands()) {
    onServer.Write(sql);
    return static_cast<int32_t>(onServer.LastInsertCode());
  }
  Connection connection(station.base.Path());
  connection.Run(sql);
  return static_cast<int32_t>(connection.LastRow());
}

void TestStation::Sql(const std::string& statement) {
  if (onServer.Stands())
    onServer.Write(statement);
  else
    Connection(station.base.Path()).Run(statement);
}

std::string TestStation::SqlText(const std::string& query) {
  return onServer.Stands() ? onServer.Ask(query) : Connection(station.base.Path()).Run(query);
}

void TestStation::Set(const std::string& cnfField, const std::string& value) {
  Sql("UPDATE Cnf SET " + cnfField + " = " + value);
}

void TestStation::Native(const std::string& sql) {
  station.base.Close();
  if (onServer.Stands())
    onServer.Write(sql);
  else
    DBEngine::ExecuteNative(station.base.Path(), sql);
  OpenBaseAgain(station);
}

void TestStation::ModelOfOneGenre(const std::string& genre) {
  std::string hours, shares;
  for (int hour = 0; hour < 24; ++hour) {
    hours += ", TRANCHE" + TwoDigits(hour);
    shares += ", 100";
  }
  for (int day = 1; day <= 7; ++day)
    Sql("INSERT INTO Models (JOUR, GENRE" + hours + ") VALUES (" + std::to_string(day) + ", '" +
        genre + "'" + shares + ")");
}

void TestStation::AppendCard(int32_t code) {
  ASSERT_TRUE(OnAir::DropFromLibrary(station, BrowseList::kMusic, code, 0));
}

void TestStation::Append(const OnAirElement& element) {
  station.PL.Add(element);
}

void TestStation::AppendVoiceTrack(const std::string& file, int64_t startMs) {
  OnAirElement track;
  track.title = "Voice Track";
  track.file = file;
  track.code = Element::kVoiceTrack;
  track.liesOver = true;
  track.startMs = startMs;
  Append(track);
}

std::vector<Seen> TestStation::Events(const std::string& name) const {
  std::vector<Seen> found;
  for (const Seen& one : seen)
    if (one.name == name) found.push_back(one);
  return found;
}

const Seen* TestStation::First(const std::string& name, const std::string& member,
                               const std::string& value) const {
  for (const Seen& one : seen)
    if (one.name == name && (member.empty() || one[member] == value)) return &one;
  return nullptr;
}

std::vector<std::string> TestStation::LoggedTexts() const {
  std::vector<std::string> texts;
  std::istringstream lines(stationFolder.Read("Messages.Txt").value_or(""));
  for (std::string line; std::getline(lines, line);)
    texts.push_back(line.substr(line.rfind('\t') + 1, line.find('\r') - line.rfind('\t') - 1));
  return texts;
}

std::string TestStation::Describe() const {
  std::string text;
  for (const Seen& one : seen) {
    text += std::to_string(one.atMs) + " " + one.name;
    for (const auto& [name, value] : one.members) text += " " + name + "=" + value;
    text += "\n";
  }
  return text;
}

}  // namespace zemo::test
