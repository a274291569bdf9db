// The library in memory, kept in a file of the machine over a restart: reading 100,000 cards from
// the base takes a third of a second, which the first request of a start would wait for.
//
// Nothing is believed of the file but what the base says as well: with the cards stand the marks of
// the pages on which their rows stood (store/TablePages.h), and the rows of each page that holds
// something else by now, or stands elsewhere, are read again (KnownCards::TakeUp). A file that is
// damaged, of another station or of another form is none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/KnownCards.h"

namespace zemo {

inline constexpr const char* kKeptLibraryFile = "Library.Dat";  // in the machine folder

// Hands out the file piece by piece, each some 300 KB, to be put where it says. The first one
// leaves a file that counts as none, the last one makes it count. The cards are those of the
// making, whatever is written to the base meanwhile. Thread: the logic's.
class KeptLibraryWriter {
 public:
  // `owner` is the station whose library it is.
  KeptLibraryWriter(KnownLibrary library, std::string_view owner);

  struct Piece {
    int64_t offset;  // in bytes from the begin
    std::string bytes;
  };
  std::optional<Piece> Next();  // nullopt: it is complete

 private:
  KnownLibrary library_;
  std::string shared_;  // the payload of the first block
  PageMark mark_{};     // of the last block that was handed out
  size_t next_ = 0;     // chunk
  int64_t end_ = 0;     // of the file, as far as it was handed out
  bool complete_ = false;
};

// What stands in such a file; nullopt: nothing that counts. `owner` as it was written.
std::optional<TakenLibrary> ReadKeptLibrary(std::string_view file, std::string_view owner);

}  // namespace zemo
