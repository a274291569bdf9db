#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "platform/real/spreadsheet/BackgroundXlsxWriter.h"

namespace zemo {
namespace {

class CountedYields : public EventLoop {
 public:
  int yields = 0;
  void Yield() override { ++yields; }
  void WaitYield() override { ++yields; }
  void PassYield() override { ++yields; }
  std::unique_ptr<LoopTimer> MakeTimer(int, std::function<void()>) override { return nullptr; }
  void Post(std::function<void()>) override {}
  uint64_t EventsServed() const override { return 0; }
};

Sheet LargeSheet() {
  Sheet sheet{"Discotheque", {}, {24}};
  for (int row = 0; row < 20000; ++row)
    sheet.cells.push_back(
        {row, 0, "title " + std::to_string(row), 0, false, SheetCell::Style::kPlain});
  return sheet;
}

TEST(BackgroundXlsxWriterTest, TheLoopIsServedWhileTheFileIsWritten) {
  const std::string path = testing::TempDir() + "zemo-background.xlsx";
  CountedYields loop;
  BackgroundXlsxWriter(loop).Write(path, LargeSheet());
  EXPECT_GT(loop.yields, 0);
  EXPECT_GT(std::filesystem::file_size(path), 100000U);
  std::filesystem::remove(path);
}

TEST(BackgroundXlsxWriterTest, WhatCannotBeWrittenIsTheCallersError) {
  CountedYields loop;
  testing::internal::CaptureStderr();
  EXPECT_THROW(BackgroundXlsxWriter(loop).Write("/no/such/folder/a.xlsx", LargeSheet()), FileError);
  testing::internal::GetCapturedStderr();
}

}  // namespace
}  // namespace zemo
