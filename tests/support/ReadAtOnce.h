// The files of an import as a test has them: read at the moment they are taken, on the one thread
// that there is, from the sounds that TestStation made.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ImportFiles.h"
#include "platform/real/files/ImportReader.h"
#include "platform/real/files/SoundFilesBelow.h"

namespace zemo::test {

struct TagTable : SoundTags {
  std::map<std::string, TagTexts> texts;  // by path
  std::optional<TagTexts> Read(const std::string& path) override {
    const auto found = texts.find(path);
    return found == texts.end() ? std::nullopt : std::optional(found->second);
  }
};

class ReadAtOnce : public ImportFiles {
 public:
  ReadAtOnce(SoundOpener& opener, const SoundFiles& files) : opener_(opener), files_(files) {}

  TagTable tags;
  bool held = false;  // nothing comes out
  bool atWork = false;
  std::vector<std::string> known;  // as given

  void Begin(std::vector<std::string> paths, std::vector<std::string> ofCards) override {
    Stop();
    atWork = true;
    known = ofCards;
    reader_.emplace(opener_, tags, files_, std::move(ofCards));
    for (const std::string& path : paths)
      FindSoundFiles(path, [this](std::string file) {
        waiting_.push_back(std::move(file));
        return true;
      });
    found_ = waiting_.size();
  }
  void Stop() override {
    atWork = false;
    waiting_.clear();
    found_ = 0;
  }
  Count Found() const override { return {found_, atWork}; }
  std::optional<SoundFileReading> Take() override {
    if (held || waiting_.empty()) return std::nullopt;
    const std::string path = std::move(waiting_.front());
    waiting_.pop_front();
    return reader_->Read(path);
  }

 private:
  SoundOpener& opener_;
  const SoundFiles& files_;
  std::optional<ImportReader> reader_;
  std::deque<std::string> waiting_;
  size_t found_ = 0;
};

}  // namespace zemo::test
