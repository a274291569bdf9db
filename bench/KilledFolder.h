// What a killed program leaves in its station's folder: which work it died in, whether the base is
// sound, and whether every row of the report that the program had told is in it once. Looked at on
// a copy, so that the program itself has to make good what it left.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

#include "BaseSql.h"
#include "FolderSigns.h"
#include "store/Schema.h"

namespace zemo::bench {

// What lay in the folder at the moment of death.
struct Remains {
  bool base = false, newBase = false, backup = false, compacted = false;
  bool journal = false;  // of the base, with something in it
};

struct Verdict {
  bool judged = false;  // there was a base
  std::string fault;    // why it is not sound, "" when it is
  int lost = 0, twice = 0;
};

class KilledFolder {
 public:
  // The rows of titles of `genre` are watched.
  KilledFolder(std::string station, std::string copies, std::string genre)
      : station_(std::move(station)), copies_(std::move(copies)), genre_(std::move(genre)) {
    std::filesystem::create_directories(copies_);
  }

  std::string Base() const { return PathOf("Triskin.MDB"); }
  std::string CheckedBase() const { return copies_ + "/Triskin.MDB"; }
  // The file of that name in whatever case, else the name as it is.
  std::string PathOf(const char* name) const {
    for (const auto& entry : std::filesystem::directory_iterator(station_))
      if (SameName(entry.path().filename().string(), name)) return entry.path().string();
    return station_ + "/" + name;
  }

  Remains Look() const {
    const auto there = [this](const char* name) { return std::filesystem::exists(PathOf(name)); };
    std::error_code none;
    const auto journal = std::filesystem::file_size(PathOf("Triskin.MDB-journal"), none);
    return {there("Triskin.MDB"), there("New.mdb"), there("Triskin.BAK"), there("TriskinN.MDB"),
            !none && journal > 0};
  }

  // Judges the base of a program that is dead. Rows of a base that another one took the place of
  // since the last time may stand in Triskin.BAK. A lost row is counted once.
  Verdict Check() {
    Verdict verdict;
    told_.merge(RowsTold());
    std::filesystem::remove_all(copies_);
    std::filesystem::create_directories(copies_);
    for (const char* name : {"Triskin.MDB", "Triskin.MDB-journal", "Triskin.BAK"})
      if (const std::string path = PathOf(name); std::filesystem::exists(path))
        std::filesystem::copy_file(path, copies_ + "/" + name);
    if (!std::filesystem::exists(CheckedBase())) return verdict;
    verdict.judged = true;
    try {
      verdict.fault = Fault();
      const std::map<std::string, int> rows = RowsOf(CheckedBase());
      if (const std::string mark = Mark(); mark != mark_) {
        mark_ = mark;
        for (const auto& [row, times] : RowsOf(copies_ + "/Triskin.BAK"))
          if (!rows.contains(row)) gone_.insert(row);
      }
      for (const std::string& row : told_)
        if (!rows.contains(row) && gone_.insert(row).second) {
          ++verdict.lost;
          std::fprintf(stderr, "lost, base marked '%s': %s\n", mark_.c_str(), row.c_str());
        }
      told_.clear();
      for (const auto& [row, times] : rows) {
        verdict.twice += times - 1;
        told_.insert(row);
      }
    } catch (const std::exception& error) {
      verdict.fault = error.what();
    }
    return verdict;
  }

  size_t Rows() const { return told_.size(); }

  // False when the last checked base lacks the field.
  bool HasField(const std::string& table, const std::string& field) const {
    return !Ask(CheckedBase(), "SELECT 1 FROM pragma_table_info('" + table + "') WHERE name = '" +
                                   field + "' COLLATE NOCASE")
                .empty();
  }

  // A base to hand over: the last checked one, with a mark by which it is known again.
  void MakeNewBase(const std::string& path, const std::string& mark) const {
    std::filesystem::copy_file(CheckedBase(), path,
                               std::filesystem::copy_options::overwrite_existing);
    Execute(path, {"UPDATE Cnf SET TextVeille = '" + mark + "'"});
  }

 private:
  std::string Fault() const {
    const auto answer = Ask(CheckedBase(), "PRAGMA integrity_check");
    if (answer.size() != 1 || answer[0][0] != "ok") return "integrity: " + answer.at(0).at(0);
    for (const TableDef& table : SchemaTables())
      if (Ask(CheckedBase(), "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = '" +
                                 table.Name + "' COLLATE NOCASE")
              .empty())
        return "no table " + table.Name;
    return {};
  }
  std::string Mark() const {
    const auto mark = Ask(CheckedBase(), "SELECT TextVeille FROM Cnf");
    return mark.empty() ? "" : mark[0][0];
  }

  std::map<std::string, int> RowsOf(const std::string& base) const {
    std::map<std::string, int> rows;
    for (const auto& row : Ask(base,
                               "SELECT LADATE, HEURE, AUTEUR, TITRE FROM Rapport "
                               "WHERE GENRE = '" +
                                   genre_ + "'"))
      ++rows[row[0] + "\t" + row[1] + "\t" + row[2] + "\t" + row[3]];
    return rows;
  }
  // rapportzemo.txt is written behind the row that it tells of.
  std::set<std::string> RowsTold() const {
    std::set<std::string> told;
    std::ifstream file(PathOf("rapportzemo.txt"));
    for (std::string line; std::getline(file, line);)
      if (const size_t end = line.find("\t" + genre_ + "\t"); end != std::string::npos)
        told.insert(line.substr(0, end));
    return told;
  }

  std::string station_, copies_, genre_;
  std::set<std::string> told_;  // or in the base that was checked last
  std::set<std::string> gone_;  // with a former base, or lost: rapportzemo.txt may still tell them
  std::string mark_;
};

}  // namespace zemo::bench
