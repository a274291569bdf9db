// A fault in the working of a request, with the number under which it is logged.
#pragma once

#include <string>

#include "store/StoreError.h"

namespace zemo {

inline constexpr int kErrSubscript = 9;        // a model or a table of varieties that is too long
inline constexpr int kErrDivisionByZero = 11;  // a variety without a share
inline constexpr int kErrType = 13;            // a text that is no date

// A StoreError, so that the error log shows its number.
struct RequestError : StoreError {
  using StoreError::StoreError;
};

}  // namespace zemo
