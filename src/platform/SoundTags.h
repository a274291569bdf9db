// What the tags inside of a sound file say about it, as texts for the fields of a card.
#pragma once

#include <optional>
#include <string>

namespace zemo {

// Valid UTF-8 in one line each, without blanks at its ends; empty where the file does not say.
struct TagTexts {
  std::string artist;
  std::string title;
  std::string genre;
  std::string year;  // four digits
  std::string album;
  std::string composer;
  std::string label;

  bool operator==(const TagTexts&) const = default;
};

// Thread: the logic's; what a file says is read in some milliseconds.
class SoundTags {
 public:
  virtual ~SoundTags() = default;
  // nullopt: no such file, no tags that could be read, or none of these texts in them. `path` is a
  // path of this system. Never throws.
  virtual std::optional<TagTexts> Read(const std::string& path) = 0;
};

}  // namespace zemo
