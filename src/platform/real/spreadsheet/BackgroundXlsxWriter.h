// Writes sheets beside the air: ten thousands of rows take a second.
#pragma once

#include "platform/Spreadsheet.h"

namespace zemo {

class EventLoop;

// Thread: the logic's. The file is written by a thread of its own, for which Write waits in yields
// of the loop. The loop outlives it.
class BackgroundXlsxWriter : public SpreadsheetWriter {
 public:
  explicit BackgroundXlsxWriter(EventLoop& loop) : loop_(loop) {}
  void Write(const std::string& path, const Sheet& sheet) override;

 private:
  EventLoop& loop_;
};

}  // namespace zemo
