// Another program of the station, which has the base open while `there`.
#pragma once

#include <string>

#include "platform/BaseUse.h"

namespace zemo::test {

class SomebodyElse : public BaseUse {
 public:
  bool there = false;
  std::string TakeAlone(const std::string& basePath) override { return OtherUser(basePath); }
  void Share() override {}
  std::string OtherUser(const std::string& path) const override {
    return there ? path + " is open in another program" : std::string();
  }
};

}  // namespace zemo::test
