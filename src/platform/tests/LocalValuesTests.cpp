#include <gtest/gtest.h>

#include "platform/LocalValues.h"
#include "platform/tests/MemoryFolder.h"
#include "platform/tests/RandomBytes.h"

namespace zemo {
namespace {

struct LocalValuesTest : testing::Test {
  MemoryFolder machine;
  LocalValues values{machine};

  void FileIs(std::string bytes) { machine.files["Settings.Ini"] = std::move(bytes); }
  const std::string& File() { return machine.files["Settings.Ini"]; }
};

TEST_F(LocalValuesTest, WithoutAFileEveryValueIsItsFallback) {
  EXPECT_EQ(values.Get("AutoPlay"), std::nullopt);
  EXPECT_EQ(values.GetText("AutoPlay", "x"), "x");
  EXPECT_EQ(values.GetInt("XRapport", 20), 20);
  EXPECT_TRUE(values.GetBool("StartAndStop", true));
  EXPECT_FALSE(values.GetBool("StartAndStop", false));
}

TEST_F(LocalValuesTest, NamesAreFoundWithoutRegardToCaseAndBlanksAroundThem) {
  FileIs("  xrapport = 35 \r\nAUTOPLAY=True\r\n");
  EXPECT_EQ(values.GetInt("XRapport", 20), 35);
  EXPECT_TRUE(values.GetBool("AutoPlay", false));
  EXPECT_EQ(values.Get("Rapport"), std::nullopt);
}

TEST_F(LocalValuesTest, TheFirstOfTwoLinesWithOneNameCounts) {
  FileIs("A=1\nA=2\n");
  EXPECT_EQ(values.GetInt("A", 0), 1);
}

TEST_F(LocalValuesTest, AByteOrderMarkBeforeTheFirstNameIsPassedOver) {
  FileIs(
      "\xEF\xBB\xBF"
      "A=1\n");
  EXPECT_EQ(values.GetInt("A", 0), 1);
}

TEST_F(LocalValuesTest, AValueCanBeEmptyOrHoldEqualSigns) {
  FileIs("A=\nB=x=y\n");
  EXPECT_EQ(values.Get("A"), "");
  EXPECT_EQ(values.Get("B"), "x=y");
}

TEST_F(LocalValuesTest, BooleanWordsOfTheFourLanguagesAndNumbersAreRead) {
  for (const char* word :
       {"True", "VRAI", "Verdadeiro", "Verdadero", "-1", "1", "on", "yes", "#TRUE#"}) {
    FileIs(std::string("A=") + word + "\n");
    EXPECT_TRUE(values.GetBool("A", false)) << word;
  }
  for (const char* word : {"False", "faux", "FALSO", "0", "off", "no", "#FALSE#"}) {
    FileIs(std::string("A=") + word + "\n");
    EXPECT_FALSE(values.GetBool("A", true)) << word;
  }
  FileIs("A=perhaps\n");
  EXPECT_TRUE(values.GetBool("A", true));
  EXPECT_FALSE(values.GetBool("A", false));
}

TEST_F(LocalValuesTest, ANumberThatIsNoneGivesTheFallback) {
  for (const char* text : {"", "12abc", "1.5", "99999999999", "+-3", "True"}) {
    FileIs(std::string("A=") + text + "\n");
    EXPECT_EQ(values.GetInt("A", 7), 7) << text;
  }
  FileIs("A=-12\nB=+12\n");
  EXPECT_EQ(values.GetInt("A", 7), -12);
  EXPECT_EQ(values.GetInt("B", 7), 12);
}

TEST_F(LocalValuesTest, SettingAValueLeavesEveryOtherLineAsItWas) {
  FileIs("; written by hand\r\n\r\nno value here\r\nXRapport = 20\r\n[section]\r\n");
  values.Set("xrapport", "35");
  EXPECT_EQ(File(), "; written by hand\r\n\r\nno value here\r\nXRapport =35\r\n[section]\r\n");
}

TEST_F(LocalValuesTest, ANewValueGoesBehindTheOthersWithTheFilesOwnLineEnds) {
  values.Set("A", "1");
  EXPECT_EQ(File(), "A=1\r\n");
  FileIs("A=1\nB=2");
  values.Set("C", "3");
  EXPECT_EQ(File(), "A=1\nB=2\nC=3\n");
}

TEST_F(LocalValuesTest, AValueOfSeveralLinesIsStoredAsOne) {
  values.Set("A", "one\r\nB=two");
  EXPECT_EQ(values.Get("A"), "one  B=two");
  EXPECT_EQ(values.Get("B"), std::nullopt);
}

TEST_F(LocalValuesTest, ANameThatNoLineCanHoldIsRefused) {
  EXPECT_THROW(values.Set("", "1"), FileError);
  EXPECT_THROW(values.Set("A=B", "1"), FileError);
  EXPECT_TRUE(machine.files.empty());
}

TEST_F(LocalValuesTest, AFileThatCannotBeReadGivesFallbacksAndIsNotOverwritten) {
  FileIs("A=1\r\n");
  machine.readsFail = true;
  EXPECT_EQ(values.GetInt("A", 7), 7);
  EXPECT_THROW(values.Set("A", "2"), FileError);
  machine.readsFail = false;
  EXPECT_EQ(File(), "A=1\r\n");
}

TEST_F(LocalValuesTest, AFullDiskIsToldToTheCallerAndLosesNothing) {
  FileIs("A=1\r\n");
  machine.writesFail = true;
  EXPECT_THROW(values.Set("A", "2"), FileError);
  EXPECT_EQ(File(), "A=1\r\n");
}

TEST_F(LocalValuesTest, WhateverTheFileHoldsAValueThatIsSetIsReadBack) {
  RandomBytes random(11);
  for (int round = 0; round < 2000; ++round) {
    FileIs(random.Text(120));
    values.GetInt("START", 0);
    values.GetBool("", true);
    const std::string before = File();
    values.Set("Marker", "42");
    EXPECT_EQ(values.GetInt("marker", 0), 42) << round;
    EXPECT_EQ(File().substr(0, before.size()), before) << round;
  }
}

}  // namespace
}  // namespace zemo
