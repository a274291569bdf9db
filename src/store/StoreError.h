// What the store throws, with the number by which the logic and the error log know the fault.
#pragma once

#include <stdexcept>
#include <string>

namespace zemo {

inline constexpr int kErrOverflow = 6;  // number outside the range of its field
inline constexpr int kErrTableExists = 3010;
inline constexpr int kErrNoSuchIndex = 3015;
inline constexpr int kErrNoEdit = 3020;  // Set or Update without AddNew or Edit
inline constexpr int kErrNoCurrentRecord = 3021;
inline constexpr int kErrDuplicateKey = 3022;
inline constexpr int kErrNoSuchFile = 3024;
inline constexpr int kErrFileExists = 3204;
inline constexpr int kErrReadOnly = 3027;  // file or folder cannot be written
inline constexpr int kErrNoSuchTable = 3078;
inline constexpr int kErrSyntax = 3075;
inline constexpr int kErrFieldTooSmall = 3163;  // text longer than its field
inline constexpr int kErrLocked = 3260;         // another process held the file past the time-out
inline constexpr int kErrNoSuchField = 3265;
inline constexpr int kErrFieldExists = 3191;
inline constexpr int kErrIndexExists = 3283;
inline constexpr int kErrBadDatabase = 3343;  // not a database, or damaged
inline constexpr int kErrDiskFull = 3026;
inline constexpr int kErrValueRefused = 3317;  // any other broken rule of the schema
inline constexpr int kErrClosed = 3420;        // the database is not open
inline constexpr int kErrOther = 3000;

class StoreError : public std::runtime_error {
 public:
  StoreError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
  int Number() const { return number_; }

  // The file is out of reach (locked, full, read only, failing, closed): the same operation may
  // succeed later. With any other fault it is the operation itself that is wrong.
  bool MayPass() const {
    return number_ == kErrLocked || number_ == kErrDiskFull || number_ == kErrReadOnly ||
           number_ == kErrClosed || number_ == kErrBadDatabase || number_ == kErrOther;
  }
  // What was to be stored breaks a rule of its table: another row may be taken.
  bool RefusesTheRow() const {
    return number_ == kErrFieldTooSmall || number_ == kErrOverflow || number_ == kErrValueRefused ||
           number_ == kErrDuplicateKey;
  }

 private:
  int number_;
};

}  // namespace zemo
