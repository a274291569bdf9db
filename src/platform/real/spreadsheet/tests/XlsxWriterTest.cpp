#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/Folder.h"
#include "platform/real/spreadsheet/XlsxWriter.h"

namespace zemo {
namespace {

class XlsxWriterTest : public testing::Test {
 protected:
  void SetUp() override { std::filesystem::create_directories(folder); }
  void TearDown() override { std::filesystem::remove_all(folder); }
  std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  const std::string folder = testing::TempDir() + "zemo-xlsx-" +
                             testing::UnitTest::GetInstance()->current_test_info()->name() + "/";
  Sheet sheet{"ModelsSemaine",
              {{0, 0, "Lundi", 0, false, SheetCell::Style::kHeading},
               {1, 0, "Variété \"é\"", 0, false, SheetCell::Style::kPlain},
               {1, 1, {}, 40, true, SheetCell::Style::kTotal}},
              {22, 6}};
};

TEST_F(XlsxWriterTest, AFileIsAZipWithOneSheetOfThatName) {
  XlsxWriter().Write(folder + "a.xlsx", sheet);
  const std::string bytes = Content(folder + "a.xlsx");
  EXPECT_EQ(bytes.substr(0, 4), std::string("PK\x03\x04"));
  EXPECT_NE(bytes.find("xl/worksheets/sheet1.xml"), std::string::npos);
  EXPECT_EQ(bytes.find("xl/worksheets/sheet2.xml"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder + "a.xlsx.new"));
}

TEST_F(XlsxWriterTest, AFileOfTheSameNameIsReplaced) {
  std::ofstream(folder + "a.xlsx") << "older";
  XlsxWriter().Write(folder + "a.xlsx", sheet);
  EXPECT_EQ(Content(folder + "a.xlsx").substr(0, 2), "PK");
}

TEST_F(XlsxWriterTest, AFolderThatIsNotThereIsAnErrorThatNamesTheFile) {
  testing::internal::CaptureStderr();
  try {
    XlsxWriter().Write(folder + "none/a.xlsx", sheet);
    ADD_FAILURE() << "no error";
  } catch (const FileError& error) {
    EXPECT_NE(std::string(error.what()).find("none/a.xlsx"), std::string::npos);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the caller tells it";
}

TEST_F(XlsxWriterTest, ANameThatNoSheetMayHaveLeavesNoFile) {
  sheet.name = "a name of much more than thirty-one characters";
  EXPECT_THROW(XlsxWriter().Write(folder + "a.xlsx", sheet), FileError);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

}  // namespace
}  // namespace zemo
