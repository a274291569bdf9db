// Settings, models and stored lists: what the engine takes its music from.
#include <array>
#include <map>
#include <set>

#include "app/check/CheckParts.h"
#include "app/check/LibraryWeek.h"
#include "scheduling/WeekModel.h"
#include "station/OnAirList.h"
#include "station/OutputBuffers.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

constexpr int kHours = 24;
constexpr int kMostRows = 20;  // genres of a day, and varieties, that a request can hold

// The hours of one weekday that a model fills: by percentages, a genre with a share; in a skeleton,
// a place with a genre.
using FilledDays = std::array<std::array<bool, kHours>, 7>;

void CheckModelTable(const ReadOnlyBase& base, bool skeleton, Findings& findings) {
  FilledDays filled{};
  std::array<bool, 7> hasRows{};
  std::array<int, 7> rows{};
  const std::string table = skeleton ? "ModelSquelette" : "Models";
  base.Query("SELECT JOUR, " + std::string(skeleton ? "''" : "GENRE") + ", " + HourColumns() +
                 " FROM " + table,
             [&](const ReadOnlyBase::Row& row) {
               const int64_t day = AsInt(row[0]) - 1;
               if (day < 0 || day > 6) return;
               hasRows[static_cast<size_t>(day)] = true;
               ++rows[static_cast<size_t>(day)];
               if (!skeleton && Trim(AsText(row[1])).empty()) return;
               for (size_t hour = 0; hour < kHours; ++hour) {
                 const Value& cell = row[hour + 2];
                 const bool counts = skeleton ? !Trim(AsText(cell)).empty() : AsInt(cell) > 0;
                 filled[static_cast<size_t>(day)][hour] |= counts;
               }
             });
  if (hasRows == std::array<bool, 7>{}) {
    findings.Error("model", table, "no model is defined, so that no request finds music");
    return;
  }
  for (size_t day = 0; day < 7; ++day) {
    if (!skeleton && rows[day] > kMostRows)
      findings.Error("model", WeekdayName(day),
                     "has " + std::to_string(rows[day]) +
                         " genres: a request ends at a title of none of the first " +
                         std::to_string(kMostRows));
    std::string empty;
    for (size_t hour = 0; hour < kHours; ++hour) {
      if (!filled[day][hour])
        empty += (empty.empty() ? "" : ", ") + TwoDigits(static_cast<int>(hour));
    }
    if (!hasRows[day]) {
      findings.Error("model", WeekdayName(day), "the model is empty");
    } else if (!empty.empty()) {
      findings.Error("model", WeekdayName(day), "no genre in the hours " + empty);
    }
  }
}

class Codes {
 public:
  explicit Codes(const ReadOnlyBase& base) : base_(base) {}

  bool Has(const std::string& table, int64_t code) {
    const auto [place, isNew] = codes_.try_emplace(table);
    std::set<int64_t>& codes = place->second;
    if (isNew) {
      base_.Query("SELECT CODE FROM " + table,
                  [&codes](const ReadOnlyBase::Row& row) { codes.insert(AsInt(row[0])); });
    }
    return codes.count(code) > 0;
  }

 private:
  const ReadOnlyBase& base_;
  std::map<std::string, std::set<int64_t>> codes_;
};

std::string ListName(int64_t code, const Value& label) {
  return std::to_string(code) + " " + Trim(AsText(label));
}

// "JJ/MM/ANNE" and "hh:mn" are what the editor shows, and stores, for a list without a moment.
void CheckMoment(const std::string& list, const std::string& date, const std::string& time,
                 Findings& findings) {
  const bool daily = date == "JOURNALIER";
  if (!daily && !date.empty() && date != "JJ/MM/ANNE" && DateKeyOfText(date).empty()) {
    findings.Warning("list", list, "its date \"" + date + "\" is none, so that it never starts");
  }
  if (!time.empty() && time != "hh:mn" && !IsClockTime(time)) {
    findings.Warning("list", list, "its time \"" + time + "\" is none, so that it never starts");
  }
}

// A restart of the output costs a listener up to two seconds, and ours never needs one.
void CheckOutput(const ReadOnlyBase& base, Findings& findings) {
  constexpr int64_t kDayMs = 86400000;
  base.Query("SELECT CycleMaxi, Buffers, NbrBuffers FROM Cnf", [&](const ReadOnlyBase::Row& row) {
    if (AsInt(row[0]) < kDayMs)
      findings.Warning(
          "settings", "CycleMaxi",
          "restarts the output every " + HoursMinutesText(AsInt(row[0])) +
              ", which costs up to 2 s of air each time; this output needs none: at 2147483647 "
              "one comes in 24 days");
    if (const std::string why = WhyTooManyBuffers(AsInt(row[1]), AsInt(row[2])); !why.empty())
      findings.Warning("settings", "NbrBuffers", why);
  });
}

}  // namespace

const char* TableOfKind(int64_t kind) {
  if (kind > 0) return "Discotheque";
  switch (kind) {
    case Element::kJingle:
      return "DiscothequeJingle";
    case Element::kSpot:
    case Element::kNews:
      return "GrillePub";
    case Element::kOther:
      return "DiscothequeVirgule";
    case Element::kVoiceTrack:
      return "VT";
    default:
      return nullptr;
  }
}

void CheckSettings(const ReadOnlyBase& base, Findings& findings) {
  const int64_t settings = AsInt(base.Rows("SELECT COUNT(*) FROM Cnf")[0][0]);
  if (settings != 1) {
    findings.Error("settings", "Cnf",
                   "has " + std::to_string(settings) + " rows and should have one");
  }
  CheckOutput(base, findings);
  const int64_t pips =
      AsInt(base.Rows("SELECT COUNT(DISTINCT HEURE) FROM Toph WHERE HEURE BETWEEN 0 AND 23")[0][0]);
  if (pips != kHours) {
    findings.Warning("pip", "Toph", "knows " + std::to_string(pips) + " of the 24 hours");
  }
  const int64_t varieties = AsInt(base.Rows("SELECT COUNT(*) FROM Variete")[0][0]);
  if (varieties > kMostRows) {
    findings.Error("variety", "Variete",
                   "has " + std::to_string(varieties) +
                       " rows: a request ends at a title of none of the first " +
                       std::to_string(kMostRows));
  }
  base.Query("SELECT VARIETE FROM Variete WHERE POURCENT IS NULL OR POURCENT <= 0",
             [&](const ReadOnlyBase::Row& row) {
               findings.Warning("variety", AsText(row[0]),
                                "has no share, which ends a request at its first title");
             });
}

void CheckModels(const ReadOnlyBase& base, Findings& findings) {
  const auto rows = base.Rows("SELECT Squelette FROM Cnf");
  CheckModelTable(base, !rows.empty() && AsBool(rows[0][0]), findings);
}

void CheckStoredLists(const ReadOnlyBase& base, Findings& findings) {
  std::map<int64_t, std::string> names;
  std::map<std::string, std::string> due;  // by date and time: the first list of that moment
  base.Query("SELECT CODE, LIBELLE, LADATE, LHEURE FROM Playlist ORDER BY CODE",
             [&](const ReadOnlyBase::Row& row) {
               const std::string name = ListName(AsInt(row[0]), row[1]);
               const std::string date = Trim(AsText(row[2])), time = Trim(AsText(row[3]));
               names[AsInt(row[0])] = name;
               CheckMoment(name, date, time, findings);
               if (!IsClockTime(time)) return;
               const auto [first, isNew] = due.try_emplace(date + time, name);
               if (!isNew)
                 findings.Warning("list", name, "is due at the same minute as " + first->second);
             });
  Codes codes(base);
  std::set<int64_t> filled;
  base.Query("SELECT CODE, NUMPLS, DISCOTHEQUE, FICHE FROM Pls ORDER BY CODE",
             [&](const ReadOnlyBase::Row& row) {
               const int64_t list = AsInt(row[1]), kind = AsInt(row[2]), record = AsInt(row[3]);
               const std::string what = "row " + AsText(row[0]);
               if (names.count(list) == 0) {
                 findings.Warning("list", what,
                                  "belongs to list " + std::to_string(list) + ", which is gone");
                 return;
               }
               filled.insert(list);
               const char* table = TableOfKind(kind);
               if (!table && kind != Element::kBeginExtract) {
                 findings.Error("list", names[list] + ", " + what,
                                "has the unknown kind " + std::to_string(kind));
               } else if (table && !codes.Has(table, record)) {
                 findings.Error("list", names[list] + ", " + what,
                                "points to record " + std::to_string(record) + " of " + table +
                                    ", which is gone");
               }
             });
  for (const auto& [code, name] : names) {
    if (filled.count(code) == 0) findings.Warning("list", name, "is empty");
  }
}

}  // namespace zemo
