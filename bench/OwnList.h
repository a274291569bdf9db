// A program's own list of what it stored, beside the base, and what a base has of it: a line ahead
// of each write and one behind it, so that a program that is killed between them leaves either.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

namespace zemo::bench {

// A key ("TABLE NAME", no tab in it) has one value, or is gone.
class OwnList {
 public:
  inline static const std::string kGone = "(gone)";
  // What each key may have, by the file.
  using Values = std::map<std::string, std::set<std::string>>;

  explicit OwnList(const std::string& path)
      : file_(open(path.c_str(), O_CREAT | O_WRONLY | O_APPEND | O_CLOEXEC, 0644)) {
    if (file_ < 0) throw std::runtime_error("cannot write " + path);
  }
  ~OwnList() { close(file_); }
  OwnList(const OwnList&) = delete;

  void Wants(const std::string& key, const std::string& value) { Put("wants", key, value); }
  void Has(const std::string& key, const std::string& value) { Put("has", key, value); }
  void HasNot(const std::string& key, const std::string& value) { Put("not", key, value); }

  // A key whose first write was never told may be missing.
  static Values Read(const std::string& path) {
    Values values;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
      std::istringstream parts(line);
      std::string word, key, value;
      std::getline(parts, word, '\t');
      std::getline(parts, key, '\t');
      std::getline(parts, value);
      std::set<std::string>& may = values.try_emplace(key, std::set{kGone}).first->second;
      if (word == "has") may.clear();
      if (word == "not")
        may.erase(value);
      else
        may.insert(value);
    }
    return values;
  }

 private:
  void Put(const char* word, const std::string& key, const std::string& value) const {
    const std::string line = std::string(word) + '\t' + key + '\t' + value + '\n';
    if (write(file_, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
      throw std::runtime_error("the own list cannot be written");
  }

  const int file_;
};

}  // namespace zemo::bench
