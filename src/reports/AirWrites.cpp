// What is kept stands in engine.kept, oldest first; the journal holds the same, as long as it can
// be written. A slice is one transaction, and counts as written in memory and in the journal only
// behind its commit: a crash in between leaves rows in the journal that stand in the base already,
// which the next run looks for before it writes.
#include "reports/AirWrites.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/Folder.h"
#include "reports/AirWriteJournal.h"
#include "reports/BroadcastReport.h"
#include "reports/RollingReport.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"
#include "store/SeekCode.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr int64_t kRetryMs = 5000;
constexpr size_t kSlice = 20;            // writes in one transaction: some milliseconds
constexpr size_t kMostKept = 20000;      // more than a day can air: an element every 4.3 s
constexpr double kSecond = 1.0 / 86400;  // of a day serial
constexpr const char* kKeptRoutine = "KeptRows";

std::string Behind(const std::string& detail) {
  return detail.empty() ? detail : " - " + detail;
}

bool IsReport(const AirWrite& write) {
  return write.kind == AirWrite::Kind::kReport || write.kind == AirWrite::Kind::kMusicReport;
}

// --- the writes ---

// DIFFUSION01 to 08 move down one place; the newest holds the moment.
void MarkTitle(Station& station, const AirWrite& write) {
  const auto card = station.base.Table("Discotheque");
  if (!SeekCode(*card, write.code)) return;
  card->Edit();
  for (int n = 8; n >= 2; --n)
    card->Set("DIFFUSION" + TwoDigits(n), card->Field("DIFFUSION" + TwoDigits(n - 1)));
  card->Set("DIFFUSION01", BroadcastText(write.row));
  card->Set("LASTDIFF", write.row.DATENUM);
  card->Update();
}

void MarkLastPlayed(Station& station, const char* table, const AirWrite& write) {
  const auto card = station.base.Table(table);
  if (!SeekCode(*card, write.code)) return;
  card->Edit();
  card->Set("LASTDIFF", write.row.DATENUM);
  card->Update();
}

void StoreSetting(Station& station, const char* field, int64_t value) {
  const auto settings = station.base.Table("Cnf");
  settings->Edit();
  settings->Set(field, value);
  settings->Update();
  station.base.CheckCnf();
}

// The row of a music title as it is to be stored; nothing when it waits for a card that is gone.
std::optional<ReportRow> MusicRow(Station& station, const AirWrite& write) {
  if (write.code == 0) return write.row;
  const auto card = station.base.Table("Discotheque");
  if (!SeekCode(*card, write.code)) return std::nullopt;
  ReportRow row = ReportOfCard(*card);
  row.LADATE = write.row.LADATE;
  row.HEURE = write.row.HEURE;
  row.DATENUM = write.row.DATENUM;
  return row;
}

void ReportMusic(Station& station, const AirWrite& write, std::vector<ReportRow>& told) {
  if (const auto row = MusicRow(station, write))
    told.push_back(InsertReportRow(station, *row));
  else
    LogError(station, write.where, kErrNoCurrentRecord,
             "the title " + std::to_string(write.code) + " of " + write.row.LADATE + " " +
                 write.row.HEURE + " has no card any more: its row is lost");
}

// The row that a report got is put into `told`.
void Do(Station& station, const AirWrite& write, std::vector<ReportRow>& told) {
  switch (write.kind) {
    case AirWrite::Kind::kReport:
      told.push_back(AppendReportRow(station, write.row));
      break;
    case AirWrite::Kind::kMusicReport:
      ReportMusic(station, write, told);
      break;
    case AirWrite::Kind::kTitlePlayed:
      MarkTitle(station, write);
      break;
    case AirWrite::Kind::kJinglePlayed:
      MarkLastPlayed(station, "DiscothequeJingle", write);
      break;
    case AirWrite::Kind::kOtherPlayed:
      MarkLastPlayed(station, "DiscothequeVirgule", write);
      break;
    case AirWrite::Kind::kLastJingle:
      StoreSetting(station, "JingleCode", write.code);
      break;
    case AirWrite::Kind::kLastIntroJingle:
      StoreSetting(station, "JingleCodeIntro", write.code);
      break;
  }
}

void Tell(Station& station, const std::vector<ReportRow>& told) {
  for (const ReportRow& row : told) station.events.Report(row);
}

// --- the journal, whose own faults cost nobody anything but safety from a power loss ---

template <typename Work>
void Journal(Station& station, Work work) {
  KeptWrites& kept = station.engine.kept;
  try {
    if (kept.journalBehind)
      JournalAnew(station, kept.writes);
    else
      work();
    kept.journalBehind = false;
    kept.journalled = kept.writes.size();
  } catch (const FileError& error) {
    if (!kept.journalBehind)
      LogError(station, kKeptRoutine, 0,
               std::string(error.what()) +
                   ": what the base cannot take is kept in memory alone, and lost with the power");
    kept.journalBehind = true;
  }
}

void Keep(Station& station, AirWrite write) {
  KeptWrites& kept = station.engine.kept;
  if (kept.writes.size() >= kMostKept)
    return LogError(station, write.where, kErrOther,
                    std::to_string(kMostKept) + " rows are kept already: this one is lost" +
                        Behind(write.detail));
  kept.writes.push_back(std::move(write));
}

// Of what stands in the journal.
void Forget(Station& station, size_t oldest) {
  KeptWrites& kept = station.engine.kept;
  kept.writes.erase(kept.writes.begin(), kept.writes.begin() + static_cast<std::ptrdiff_t>(oldest));
  Journal(station, [&] {
    if (kept.writes.empty())
      JournalAnew(station, kept.writes);
    else
      JournalWritten(station, oldest);
  });
}

// --- what an earlier run may have written behind its last word in the journal ---

using RowKey = std::tuple<std::string, std::string, std::string, std::string, std::string,
                          std::string, std::string, std::string, std::string>;

RowKey KeyOf(const ReportRow& row) {
  return {row.LADATE,  row.HEURE, row.GENRE,     row.AUTEUR,           row.TITRE,
          row.VARIETE, row.LABEL, row.REFERENCE, row.AUTEURCOMPOSITEUR};
}

// Rows of the report from the earliest of these moments on: the clock may have been set back.
std::multiset<RowKey> RowsLike(Station& station, const std::deque<AirWrite>& writes) {
  double moment = writes.front().row.DATENUM;
  for (const AirWrite& write : writes) moment = std::min(moment, write.row.DATENUM);
  std::multiset<RowKey> rows;
  station.base.Db().ReadRows(
      "SELECT LADATE, HEURE, GENRE, AUTEUR, TITRE, VARIETE, LABEL, REFERENCE, AUTEURCOMPOSITEUR "
      "FROM Rapport WHERE DATENUM >= ?",
      {moment - kSecond / 2}, [&](const RowView& row) {
        const auto text = [&row](int column) { return std::string(row.Text(column)); };
        rows.emplace(text(0), text(1), text(2), text(3), text(4), text(5), text(6), text(7),
                     text(8));
      });
  return rows;
}

bool Stands(Station& station, const AirWrite& write, std::multiset<RowKey>& rows) {
  if (write.kind == AirWrite::Kind::kTitlePlayed) {
    const auto card = station.base.Table("Discotheque");
    return SeekCode(*card, write.code) && card->Real("LASTDIFF") >= write.row.DATENUM - kSecond / 2;
  }
  if (!IsReport(write)) return false;  // written twice is the same as once
  const auto row = MusicRow(station, write);
  if (!row) return false;
  const auto found = rows.find(KeyOf(*row));
  if (found == rows.end()) return false;
  rows.erase(found);
  return true;
}

// Throws StoreError; what is kept is then as it was.
void DropWhatStands(Station& station) {
  KeptWrites& kept = station.engine.kept;
  if (kept.fromEarlierRun == 0) return;
  std::multiset<RowKey> rows;
  try {
    rows = RowsLike(station, kept.writes);
  } catch (const StoreError& error) {
    if (error.MayPass()) throw;
    LogCurrentException(station, kKeptRoutine);  // no report to look at: nothing stands in it
  }
  std::deque<AirWrite> left;
  for (size_t i = 0; i < kept.writes.size(); ++i) {
    const AirWrite& write = kept.writes[i];
    if (i >= kept.fromEarlierRun || !Stands(station, write, rows)) left.push_back(write);
  }
  kept.writes = std::move(left);
  kept.fromEarlierRun = 0;
  Journal(station, [&] { JournalAnew(station, kept.writes); });
}

// --- a slice ---

// Throws StoreError where the base is out of reach; nothing of the slice is written then.
void WriteOldest(Station& station) {
  const std::deque<AirWrite>& writes = station.engine.kept.writes;
  const size_t count = std::min(kSlice, writes.size());
  std::vector<ReportRow> told;
  bool music = false;
  {
    Transaction transaction(station.base.Db());
    for (size_t i = 0; i < count; ++i) {
      const AirWrite& write = writes[i];
      music = music || write.kind == AirWrite::Kind::kMusicReport;
      try {
        Do(station, write, told);
      } catch (const StoreError& error) {
        if (error.MayPass()) throw;
        LogError(station, write.where, error.Number(), error.what() + Behind(write.detail));
      }
    }
    transaction.Commit();
  }
  Forget(station, count);
  Tell(station, told);
  if (music) ExportReport(station);
}

}  // namespace

// All that has come since, in one write: it waits for the disk.
void JournalKeptRows(Station& station) {
  const KeptWrites& kept = station.engine.kept;
  if (kept.journalled == kept.writes.size()) return;
  Journal(station, [&] { JournalKept(station, kept.writes, kept.journalled); });
}

std::string BroadcastText(const ReportRow& row) {
  return row.LADATE + " à " + row.HEURE.substr(0, 5);
}

void WriteOrKeep(Station& station, AirWrite write) {
  KeptWrites& kept = station.engine.kept;
  if (!kept.writes.empty()) return Keep(station, std::move(write));
  try {
    std::vector<ReportRow> told;
    Do(station, write, told);
    Tell(station, told);
    if (write.kind == AirWrite::Kind::kMusicReport && !told.empty()) ExportReport(station);
  } catch (const StoreError& error) {
    LogError(
        station, write.where, error.Number(),
        error.what() + Behind(write.detail) + (error.MayPass() ? " (kept, written later)" : ""));
    if (!error.MayPass()) return;
    kept.retryMs = station.platform.clock.MonotonicMs() + kRetryMs;
    Keep(station, std::move(write));
  }
}

void TakeUpKeptWrites(Station& station) {
  KeptWrites& kept = station.engine.kept;
  try {
    int damaged = 0;
    kept.writes = ReadJournal(station, damaged);
    kept.fromEarlierRun = kept.writes.size();
    if (damaged > 0)
      LogError(station, kKeptRoutine, 0,
               JournalName(station) + ": " + std::to_string(damaged) +
                   " lines cannot be read and are passed over");
  } catch (const FileError& error) {
    const std::string aside = SetJournalAside(station);
    return LogError(station, kKeptRoutine, 0,
                    error.what() + (aside.empty() ? "" : ": it is kept as " + aside));
  }
  // Without what is damaged, and without an end that the power cut.
  Journal(station, [&] { JournalAnew(station, kept.writes); });
}

void WriteKeptSlice(Station& station) {
  KeptWrites& kept = station.engine.kept;
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  JournalKeptRows(station);
  if (kept.writes.empty() || nowMs < kept.retryMs || !station.base.IsOpen()) return;
  const NoLockWait atOnce(station.base.Waiting());
  try {
    DropWhatStands(station);
    if (!kept.writes.empty()) WriteOldest(station);
  } catch (const StoreError& error) {
    kept.retryMs = nowMs + kRetryMs;
    if (!error.MayPass())
      LogCurrentException(station, kKeptRoutine);  // the rest was told when it came
  }
}

bool WriteKeptAtTheEnd(Station& station) {
  KeptWrites& kept = station.engine.kept;
  JournalKeptRows(station);
  if (kept.writes.empty()) return true;
  try {
    DropWhatStands(station);
    while (!kept.writes.empty()) WriteOldest(station);
    return true;
  } catch (const StoreError& error) {
    Journal(station, [] {});  // a last try, where it is behind
    const std::string count = std::to_string(kept.writes.size()) + " rows";
    LogError(
        station, kKeptRoutine, error.Number(),
        error.what() + (kept.journalBehind ? ": " + count + " are lost"
                                           : ": " + count + " stay in " + JournalName(station) +
                                                 " and are written at the next start"));
  }
  return !kept.journalBehind;
}

}  // namespace zemo
