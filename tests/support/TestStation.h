// A whole station on the virtual clock in a temporary folder, with sound files that are only a
// length: what scenario tests drive and question.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/LocalValues.h"
#include "platform/SoundSource.h"
#include "platform/real/files/KnownLengths.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/StoredPaths.h"
#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimLoop.h"
#include "platform/sim/SimPrelisten.h"
#include "platform/sim/SimPreview.h"
#include "platform/sim/SimRecorder.h"
#include "platform/sim/SimRoundTrip.h"
#include "platform/sim/SimSoundChain.h"
#include "platform/sim/SimSounds.h"
#include "platform/sim/SimWires.h"
#include "station/Station.h"
#include "store/StoreError.h"
#include "support/ServerStation.h"
#include "support/StationRecord.h"

namespace zemo::test {

// A folder of its own, removed at the end of the test.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  const std::string& Path() const { return path_; }  // without a final '/'

 private:
  std::string path_;
};

// Counts operations and fails the one with that number, once: the n-th fault of a sweep.
struct FaultAt {
  int number = 0;               // 1 for the first operation; 0 for no fault
  int count = 0;                // operations so far
  void (*instead)() = nullptr;  // of the fault
  void Count() {
    if (++count != number) return;
    if (instead)
      instead();
    else
      throw FileError("operation " + std::to_string(count) + " fails for the test");
  }
};

// A real folder with a fault.
class FaultyFolder : public LocalFolder {
 public:
  explicit FaultyFolder(const std::string& path) : LocalFolder(path, kNoDiskSync) {}
  mutable FaultAt fault;
  bool writesFail = false;
  std::string unreadable;            // a file that cannot be read
  std::vector<std::string> durable;  // names of the files written durably
  bool removesFail = false;
  mutable std::map<std::string, int> reads;  // how often, by name

  bool Exists(std::string_view name) const override {
    return fault.Count(), LocalFolder::Exists(name);
  }
  std::optional<std::string> Read(std::string_view name) const override {
    fault.Count();
    ++reads[std::string(name)];
    if (!unreadable.empty() && name == unreadable) throw FileError(PathOf(name) + ": I/O error");
    return LocalFolder::Read(name);
  }
  void Write(std::string_view name, std::string_view bytes) override {
    CountWrite(), LocalFolder::Write(name, bytes);
  }
  void Append(std::string_view name, std::string_view bytes) override {
    CountWrite(), LocalFolder::Append(name, bytes);
  }
  void WriteDurably(std::string_view name, std::string_view bytes) override {
    CountWrite(), durable.emplace_back(name), LocalFolder::WriteDurably(name, bytes);
  }
  void WriteSecret(std::string_view name, std::string_view bytes) override {
    CountWrite(), durable.emplace_back(name), LocalFolder::WriteSecret(name, bytes);
  }
  void AppendDurably(std::string_view name, std::string_view bytes) override {
    CountWrite(), LocalFolder::AppendDurably(name, bytes);
  }
  void Remove(std::string_view name) override {
    fault.Count();
    if (removesFail) throw FileError(PathOf(name) + ": Permission denied");
    LocalFolder::Remove(name);
  }
  void PutBytes(std::string_view name, int64_t offset, std::string_view bytes) override {
    CountWrite(), LocalFolder::PutBytes(name, offset, bytes);
  }
  void Rename(std::string_view from, std::string_view to) override {
    fault.Count(), LocalFolder::Rename(from, to);
  }
  std::string Stamp(std::string_view name) const override {
    return fault.Count(), LocalFolder::Stamp(name);
  }

 private:
  void CountWrite() {
    fault.Count();
    if (writesFail) throw FileError(Path() + ": No space left on device");
  }
};

// Opens the files that TestStation made: length from a table, one level from begin to end.
class LengthTable : public SoundOpener {
 public:
  std::map<std::string, int64_t> lengthsMs;  // by path; a file that is not here is unreadable
  std::set<std::string> silent;              // paths
  std::map<std::string, double> tones;       // hertz, by path; others are one level throughout
  FaultAt fault;
  std::unique_ptr<SoundSource> Open(const std::string& path) override;
};

// An automaton that keeps what it was sent, and whose answers a test can keep from the line.
class TestAutomaton : public SimAutomaton {
 public:
  std::string received;                                    // every byte the program wrote
  bool lost = false;                                       // the line refuses every write
  std::function<void(const std::string& reply)> onAnswer;  // instead of the answer's arrival
  using SimAutomaton::Arrive;

  void Write(std::string_view bytes) override {
    if (lost) throw SerialError(5, "/dev/ttyS0: Input/output error");
    received += bytes;
    SimAutomaton::Write(bytes);
  }

 protected:
  void Answer(const std::string& reply) override {
    if (onAnswer)
      onAnswer(reply);
    else
      Arrive(reply);
  }
};

// One event of the engine as it was told.
struct Seen {
  int64_t atMs = 0;  // virtual, since the begin
  std::string name;
  std::map<std::string, std::string> members;  // every value as text; lists in brackets

  const std::string& operator[](const std::string& member) const;
  int64_t Int(const std::string& member) const;
};

// A card of the music library; what is not set is as on a new card.
struct Card {
  std::string file{};  // "" makes one of that length
  int64_t lengthMs = 180000;
  std::string artist = "ARTIST", title = "TITLE", genre = "POP", variety = "NATIONAL", comment{};
  int exitMs = 0;  // POINTSORTIE
  int introSec = 0;
};

std::string Quoted(const std::string& text);  // as a literal of a statement

class TestStation : private EventSink {
 public:
  // "YYYY-MM-DD hh:mm:ss"; the folder of a station that another machine has open already, "" for
  // one of its own; where its base stands, if not as its folder says.
  explicit TestStation(const std::string& begin = "2026-11-21 12:00:00",
                       const std::string& sharedFolder = "", std::optional<BasePlace> base = {});
  ~TestStation() override;

  // --- setting up; before Load the base can be prepared through Sql ---
  void Load();   // Form_Load and the first Form_Activate
  void Start();  // the start button
  std::string MakeSound(const std::string& name, int64_t lengthMs);  // its path
  std::string MakeFile(const std::string& name, const std::string& bytes);
  int32_t AddCard(const Card& card);              // its CODE
  void Sql(const std::string& statement);         // on a connection of its own, in the engine's SQL
  std::string SqlText(const std::string& query);  // first column of the first row, "" for none
  void Set(const std::string& cnfField, const std::string& value);
  void Native(const std::string& sql);  // another program's statement; the base is opened anew
  void ModelOfOneGenre(const std::string& genre);  // at every hour of every day
  void AppendCard(int32_t code);                   // puts the card at the end of PL
  void Append(const OnAirElement& element);
  // A voice track of that file that speaks from startMs of the element before on.
  void AppendVoiceTrack(const std::string& file, int64_t startMs);

  // --- running; every order is given `atMs` after the begin ---
  void At(int64_t atMs, std::function<void()> order) { loop.At(atMs, std::move(order)); }
  void RunUntil(int64_t atMs) { loop.RunUntil(atMs); }

  // --- looking ---
  std::vector<Seen> Events(const std::string& name) const;
  std::vector<Seen> Starts() const { return Events("start"); }
  const Seen* First(const std::string& name, const std::string& member = {},
                    const std::string& value = {}) const;  // null when there is none
  // The texts of the error log, without moment, place and number, in their order.
  std::vector<std::string> LoggedTexts() const;
  std::string Describe() const;  // all events, a line each, for a failed test

  TempFolder stationDir, machineDir;
  ServerStation onServer;
  LengthTable opener;
  SimLoop loop;
  SimSoundChain sound;
  SimPrelisten prelisten;
  SimRecorder recorder;
  SimPreview preview;
  SimRoundTrip roundTrip;
  SimSounds soundDevices;
  FaultyFolder stationFolder, machineFolder;
  StoredPaths soundFiles;
  SoundFileLengths lengths;
  LocalValues localValues;
  SimClipboard clipboard;
  SimMessageBoxes messages;
  SimKeyboard keyboard;
  SimSystem system;
  TestAutomaton automaton;
  SimJoystick joystick;
  Station station;
  std::vector<Seen> seen;
  std::function<void(const Event&)> listener;  // hears of each event behind `seen`; may throw

 private:
  void OnEvent(const Event& event) override;

  StationRecord record_;
};

LocalDateTime ParseMoment(const std::string& text);  // "YYYY-MM-DD hh:mm:ss"

}  // namespace zemo::test
