// Who works on the station's base besides this program, which SQLite does not tell: a connection
// without a query under way holds no lock.
#pragma once

#include <string>

namespace zemo {

// Whoever works on a station's base shares it with others for as long as he lives; whoever puts
// another file in its place has it for himself alone meanwhile. A program that ends, however it
// ends, has it no longer. Thread: the logic's.
class BaseUse {
 public:
  virtual ~BaseUse() = default;
  // From now on for this program alone: empty. Else nothing has changed, and the answer is a line
  // that names who else has the file at `basePath` open. Nobody is waited for.
  virtual std::string TakeAlone(const std::string& basePath) = 0;
  virtual void Share() = 0;  // others may have it again
  // A line that names who else has the file open, as far as it can be told; empty: nobody.
  virtual std::string OtherUser(const std::string& path) const = 0;
};

}  // namespace zemo
