// A small sound station for each test to break, and what the check says of it.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "app/check/Check.h"
#include "app/demo/Demo.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {

using Lines = std::vector<std::string>;

// Titles 1 to 3 are, at a twentieth of their lengths: 1 of 4600 ms, 2 of 4200 ms, 3 of 4800 ms.
inline constexpr char kTitle1[] = "1 Trio du Phare - Aube claire";

// For its life the process has no more rights than anybody: root would be refused nothing.
class NoRights {
 public:
  NoRights() {
    if (wasRoot_) {
      EXPECT_EQ(seteuid(65534), 0);
    }
  }
  ~NoRights() {
    if (wasRoot_) {
      EXPECT_EQ(seteuid(0), 0);
    }
  }
  NoRights(const NoRights&) = delete;

 private:
  const bool wasRoot_ = geteuid() == 0;
};

class CheckedStation : public testing::Test {
 protected:
  // The station is made once and copied; its base then names the copies.
  CheckedStation() {
    static const TemporaryFolder original;
    static const bool made = [] {
      MakeDemoStation(original / "station", {3, 0.05}, [](const std::string&) {});
      return true;
    }();
    EXPECT_TRUE(made);
    std::filesystem::permissions(folder_.Path(), std::filesystem::perms(0755));
    std::filesystem::copy(original.Path(), folder_.Path(),
                          std::filesystem::copy_options::recursive);
    for (const char* place :
         {"Discotheque.FILENAME", "DiscothequeJingle.FILENAME", "Toph.FICHIER",
          "DiscothequeVirgule.FILENAME", "GrillePub.FILENAMEAUDIO", "GrillePub.FILENAMEGRILLE",
          "Cnf.JingleAvantPubs", "Cnf.JingleApresPubs"}) {
      const std::string name = place;
      const std::string field = name.substr(name.find('.') + 1);
      Sql("UPDATE " + name.substr(0, name.find('.')) + " SET " + field + " = REPLACE(" + field +
          ", '" + original.Path() + "', '" + folder_.Path() + "')");
    }
    LetThreeTitlesDo();
  }

  std::string Path(const std::string& name) const { return folder_ / "station/" + name; }
  std::string Base() const { return Path("Triskin.MDB"); }
  std::string Title1() const { return Path("Musique/Trio du Phare - Aube claire.mp3"); }

  // The demo's models and rules are for a library of an hour: here three genres share every hour
  // of the week in equal parts, and no title or artist has to rest.
  void LetThreeTitlesDo() const {
    std::string shares;
    for (const char* tens : {"0", "1", "2"})
      for (int ones = 0; ones < (*tens == '2' ? 4 : 10); ++ones)
        shares += std::string(shares.empty() ? "" : ", ") + "TRANCHE" + tens +
                  std::to_string(ones) + " = 30";
    Sql("DELETE FROM Models WHERE GENRE NOT IN (SELECT GENRE FROM Discotheque); UPDATE Models "
        "SET " +
        shares + "; UPDATE Discotheque SET ECARTMINUTES = 0; UPDATE Cnf SET EcartArtiste = 0");
  }

  void Sql(const std::string& sql) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(Base().c_str(), &database), SQLITE_OK);
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK)
        << sql << ": " << (error ? error : "");
    sqlite3_free(error);
    sqlite3_close(database);
  }

  CheckOptions Options() const { return {folder_ / "station", folder_ / "machine", 200, {}}; }

  // Each finding as "KIND: WHAT: WHY", a warning with "(warning)" behind it.
  Lines Found() const { return Found(Options()); }
  static Lines Found(const CheckOptions& options) {
    Lines lines;
    CheckStation(options, [&](const Finding& finding) {
      lines.push_back(finding.kind + ": " + finding.what + ": " + finding.why +
                      (finding.severity == Severity::kWarning ? " (warning)" : ""));
    });
    return lines;
  }

  const TemporaryFolder folder_;
};

}  // namespace zemo
