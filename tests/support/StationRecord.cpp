#include "support/StationRecord.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <variant>
#include <vector>

#include "engine/StateDump.h"
#include "support/TestStation.h"

namespace zemo::test {

namespace {

namespace fs = std::filesystem;

constexpr uintmax_t kLargestFile = 8'000'000;

std::string WholeText(bool value) {
  return value ? "true" : "false";
}
std::string WholeText(int32_t value) {
  return std::to_string(value);
}
std::string WholeText(int64_t value) {
  return std::to_string(value);
}
std::string WholeText(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}
std::string WholeText(const std::string& value) {
  return "\"" + value + "\"";
}
template <typename T>
std::string WholeText(const std::vector<T>& values);
template <typename... T>
std::string WholeText(const std::variant<T...>& value) {
  return std::visit([](const auto& one) { return WholeText(one); }, value);
}
template <typename A, typename B>
std::string WholeText(const std::pair<A, B>& pair) {
  return pair.first + "=" + WholeText(pair.second);
}
template <typename T>
std::string WholeText(const std::vector<T>& values) {
  std::string text = "[";
  for (const auto& value : values) text += (text.size() > 1 ? "," : "") + WholeText(value);
  return text + "]";
}

std::string Line(int64_t atMs, const Event& event) {
  std::string line = std::to_string(atMs) + " " + std::string(event.name);
  for (const auto& [name, value] : event.members)
    line += " " + std::string(name) + "=" + WholeText(value);
  return line + "\n";
}

// Every row of every table of a base, a line each.
std::string RowsOfBase(const std::string& path) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> base(opened, sqlite3_close);
  if (result != SQLITE_OK) return "cannot be opened\n";
  const auto rows = [&](const std::string& query) {
    std::string text;
    const auto take = [](void* lines, int count, char** values, char**) {
      for (int i = 0; i < count; ++i)
        *static_cast<std::string*>(lines) +=
            std::string(i > 0 ? "\t" : "") + (values[i] ? values[i] : "NULL");
      *static_cast<std::string*>(lines) += "\n";
      return 0;
    };
    if (sqlite3_exec(base.get(), query.c_str(), take, &text, nullptr) != SQLITE_OK)
      text += std::string("fails: ") + sqlite3_errmsg(base.get()) + "\n";
    return text;
  };
  std::string text = rows("SELECT type, name, sql FROM sqlite_master ORDER BY type, name");
  const std::string names = rows("SELECT name FROM sqlite_master WHERE type='table' ORDER BY name");
  for (size_t begin = 0; begin < names.size();) {
    const size_t end = names.find('\n', begin);
    const std::string name = names.substr(begin, end - begin);
    text += "-- " + name + "\n" + rows("SELECT rowid, * FROM \"" + name + "\" ORDER BY rowid");
    begin = end + 1;
  }
  return text;
}

std::string ContentOf(const fs::path& path) {
  std::error_code error;
  const uintmax_t size = fs::file_size(path, error);
  if (error || size > kLargestFile) return "not read\n";
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (bytes.compare(0, 15, "SQLite format 3") == 0) return RowsOfBase(path.string());
  return bytes + "\n";
}

std::string FilesOf(const std::string& folder) {
  std::map<std::string, std::string> contents;
  std::error_code ignored;
  for (const auto& entry : fs::recursive_directory_iterator(folder, ignored))
    if (entry.is_regular_file(ignored))
      contents[fs::relative(entry.path(), folder).string()] = ContentOf(entry.path());
  std::string text;
  for (const auto& [name, content] : contents)
    text.append("== ").append(name).append("\n" + content);
  return text;
}

std::string NameOfTest() {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  std::string name = test ? std::string(test->test_suite_name()) + "." + test->name() : "none";
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

}  // namespace

StationRecord::StationRecord() {
  const char* folder = std::getenv("ZEMO_RECORDS");
  if (folder) folder_ = folder;
}

void StationRecord::Add(int64_t atMs, const Event& event) {
  if (On()) events_ += Line(atMs, event);
}

void StationRecord::Write(const TestStation& station) {
  if (!On()) return;
  const std::string text = events_ + Line(station.loop.MonotonicMs(), DumpState(station.station)) +
                           "==== station\n" + FilesOf(station.stationDir.Path()) +
                           "==== machine\n" + FilesOf(station.machineDir.Path());
  const std::string name = folder_ + "/" + NameOfTest();
  int number = 1;
  while (fs::exists(name + "-" + std::to_string(number))) ++number;
  std::ofstream(name + "-" + std::to_string(number), std::ios::binary) << text;
}

}  // namespace zemo::test
