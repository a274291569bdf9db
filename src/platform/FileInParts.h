// A file that is written part after part, with other events between them, and takes its name when
// it is whole: until then, and where that does not come about, what stood there stays.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zemo {

// Thread: its owner's. Destroyed ahead of Finish it leaves nothing behind.
class FileInParts {
 public:
  virtual ~FileInParts() = default;
  virtual void Append(std::string_view bytes) = 0;  // throws FileError
  virtual void Finish() = 0;                        // behind the last part; throws FileError
};

// `path` is one of this system. Throws FileError.
using OpenFileInParts = std::function<std::unique_ptr<FileInParts>(const std::string& path)>;

}  // namespace zemo
