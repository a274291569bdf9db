// Generated clocks and writes of everybody at any moment, at a table that is kept in memory: in
// each moment that is asked about, what is found in memory is what the base holds.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <random>
#include <string>

#include "scheduling/tests/RequestFixture.h"
#include "scheduling/tests/Stranger.h"
#include "station/BaseFiles.h"
#include "support/Cases.h"

namespace zemo::test {

class KnownTableCases {
 public:
  static constexpr int kCases = Cases(1000);

  struct Shape {
    const char* table;
    int casesAStation;
    int mostHappens;  // between two questions, but for the reading
    int moreKinds;    // of what can happen to this table alone
    bool (*readAhead)(Station& station);
  };
  virtual ~KnownTableCases() = default;

  void Run() {
    for (int i = 0; i < kCases && !testing::Test::HasFailure(); ++i) {
      SCOPED_TRACE("case " + std::to_string(i));
      if (i % shape_.casesAStation == 0) NewStation();
      story_.clear();
      BeginCase();
      for (int n = Pick(1, shape_.mostHappens); n > 0; --n) Something();
      if (Pick(0, 2) > 0) ReadAll();
      if (Pick(0, 3) == 0) Something();
      CompareNow();
      EndCase();
    }
    // Both ways were gone often.
    EXPECT_GT(fromMemory_, kCases / 3);
    EXPECT_GT(fromBase_, kCases / 10);
  }

 protected:
  KnownTableCases(unsigned seed, const Shape& shape) : shape_(shape), random_(seed) {}

  // The table in memory anew, with nothing read.
  virtual void Forget() = 0;
  // The rows of a new station.
  virtual void Fill() = 0;
  // Sets the clock.
  virtual void BeginCase() = 0;
  virtual void EndCase() {}
  // A query that changes the table, or another one.
  virtual std::string Write() = 0;
  virtual void Change(Recordset& row) = 0;
  // 0 to Shape::moreKinds - 1.
  virtual void HappenMore(int /*kind*/) {}
  // What is known, by memory and by the base's rows alone.
  virtual void Compare() = 0;

  int Pick(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  template <size_t N>
  std::string OneOf(const char* const (&texts)[N]) {
    return texts[Pick(0, static_cast<int>(N) - 1)];
  }
  Station& It() { return s_->station; }
  Database& Db() { return It().base.Db(); }
  RequestStation& Fixture() { return *s_; }
  bool CanWrite() { return !strangerBegan_ && !Db().InTransaction(); }
  void CountWay(bool memory) { ++(memory ? fromMemory_ : fromBase_); }
  void Tell(const std::string& what) { story_ += what + "\n"; }
  const std::string& Story() const { return story_; }

  void SetClock(const LocalDateTime& now) {
    s_->loop.SetWallClock(now);
    It().base.CheckCnf();
  }
  void Own(const std::string& sql) {
    Tell("own: " + sql);
    try {
      Db().Execute(sql);
    } catch (const StoreError&) {
      // A value that the schema refuses: nothing is stored, or half of it was and is taken back.
    }
  }
  void Foreign(const std::string& sql) {
    Tell("foreign: " + sql);
    stranger_->Do(sql);
  }
  // Of another program, at once; not told.
  template <typename Insertion>
  void ForeignRows(int count, Insertion insertion) {
    stranger_->Do("BEGIN");
    for (int n = count; n > 0; --n) stranger_->Do(insertion(n));
    stranger_->Do("COMMIT");
  }
  void ReadAll() {
    Tell("read");
    while (shape_.readAhead(It())) {
    }
  }
  void CompareNow() {
    SCOPED_TRACE(story_);
    Compare();
  }

 private:
  void NewStation() {
    stranger_.reset();
    s_ = std::make_unique<RequestStation>();
    stranger_ = std::make_unique<Stranger>(It().base.Path());
    Forget();
    Fill();
  }
  void Something() {
    const int kind = Pick(0, 11 + shape_.moreKinds);
    switch (kind) {
      case 0:
      case 1:
      case 2:
        return Own(Write());
      case 3:
      case 4:
        return Foreign(Write());
      case 5:
        return OwnTransaction();
      case 6:
        return ForeignTransaction();
      case 7:
        if (Pick(0, 3) == 0) return OpenAgain();
        if (Pick(0, 3) == 0) return PutAnotherBase();
        return Cursor();
      case 8:
      case 9:
      case 10:
      case 11:
        shape_.readAhead(It());
        return;
      default:
        HappenMore(kind - 12);
    }
  }
  void OwnTransaction() {
    Tell("transaction");
    Db().BeginTrans();
    Own(Write());
    if (Pick(0, 1)) shape_.readAhead(It());
    if (Pick(0, 1)) CompareNow();
    Own(Write());
    if (Pick(0, 1)) return Db().CommitTrans();
    Tell("rolled back");
    Db().RollbackTrans();
  }
  void ForeignTransaction() {
    strangerBegan_ = true;
    Foreign("BEGIN");
    Foreign(Write());
    if (Pick(0, 1)) shape_.readAhead(It());
    CompareNow();
    Foreign(Pick(0, 1) ? "COMMIT" : "ROLLBACK");
    strangerBegan_ = false;
  }
  void Cursor() {
    Tell("cursor");
    const auto row = It().base.Table(shape_.table);
    if (row->Eof()) return;
    if (Pick(0, 3)) row->MoveLast();
    if (Pick(0, 3) == 0) return row->Delete();
    row->Edit();
    Change(*row);
    row->Update();
  }
  void OpenAgain() {
    Tell("opened again");
    It().base.Close();
    if (Pick(0, 1)) Foreign(Write());
    OpenBaseAgain(It());
  }
  // Under the name of the one that is open.
  void PutAnotherBase() {
    Tell("replaced");
    const std::string path = It().base.Path();
    std::filesystem::copy_file(path, path + ".copy");
    stranger_ = std::make_unique<Stranger>(path + ".copy");
    Foreign(Write());
    std::filesystem::rename(path + ".copy", path);
    if (Pick(0, 1)) shape_.readAhead(It());
    EXPECT_TRUE(OpenLostBase(It()));
    Forget();
    stranger_ = std::make_unique<Stranger>(path);
  }

  const Shape shape_;
  std::mt19937 random_;
  std::unique_ptr<RequestStation> s_;
  std::unique_ptr<Stranger> stranger_;
  bool strangerBegan_ = false;
  std::string story_;  // of the case
  int fromMemory_ = 0, fromBase_ = 0;
};

}  // namespace zemo::test
