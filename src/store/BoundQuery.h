// A query of the dialect that is made of parts, or such a part, with the values of its places.
#pragma once

#include <string>

#include "store/Value.h"

namespace zemo {

struct BoundQuery {
  std::string text;
  Values values{};

  BoundQuery& Add(const BoundQuery& part) {
    text += part.text;
    values.insert(values.end(), part.values.begin(), part.values.end());
    return *this;
  }
  BoundQuery& Add(const std::string& part, const Values& itsValues = {}) {
    return Add(BoundQuery{part, itsValues});
  }
};

}  // namespace zemo
