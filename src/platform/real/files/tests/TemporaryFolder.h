// A real folder that lives as long as its test, and the plain file work that tests do beside ours.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace zemo {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zemo-files-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    path_ = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& Path() const { return path_; }

  // Makes the file and the folders that it stands in.
  std::string Put(const std::string& name, const std::string& bytes) const {
    const std::filesystem::path path = *this / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
  }
  std::string Get(const std::string& name) const {
    std::ifstream file(*this / name, std::ios::binary);
    if (!file) return "(no file)";
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.insert(entry.path().filename().string());
    return names;
  }

 private:
  std::string path_;
};

// What an error tells, or that there was none.
template <typename Action>
std::string FileErrorOf(Action action) {
  try {
    action();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "(no error)";
}

using Names = std::set<std::string>;

}  // namespace zemo
