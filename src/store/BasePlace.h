// Where a station's base stands: a file, or a database on a server.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "store/LockWait.h"

namespace zemo {

class Database;

struct BasePlace {
  // The file's path, or the server's URL without a password: what errors call the base, and by
  // which it is known again.
  std::string name;
  bool isFile = true;
  std::string url;    // of a server's base, perhaps with a password: shown nowhere
  std::string fault;  // why no base can be opened here, one line; empty: one can
  // The base, not open yet. Never null.
  std::function<std::unique_ptr<Database>(std::shared_ptr<LockWait> wait)> closed;
};

// `path` is the file's, which need not be there.
BasePlace FilePlace(std::string path);

}  // namespace zemo
