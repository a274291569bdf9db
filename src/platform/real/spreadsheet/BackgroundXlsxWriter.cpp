#include "platform/real/spreadsheet/BackgroundXlsxWriter.h"

#include <chrono>
#include <future>

#include "platform/EventLoop.h"
#include "platform/real/spreadsheet/XlsxWriter.h"

namespace zemo {

void BackgroundXlsxWriter::Write(const std::string& path, const Sheet& sheet) {
  std::future<void> written =
      std::async(std::launch::async, [&] { XlsxWriter().Write(path, sheet); });
  while (written.wait_for(std::chrono::seconds(0)) != std::future_status::ready) loop_.WaitYield();
  written.get();
}

}  // namespace zemo
