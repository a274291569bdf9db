#include <gtest/gtest.h>

#include "platform/tests/RandomBytes.h"
#include "station/SideFileText.h"

namespace zemo {
namespace {

using Lines = std::vector<std::string>;

const std::string kMark = "\xEF\xBB\xBF";

TEST(DecodeSideFile, TakesValidUtf8AsItIs) {
  EXPECT_EQ(DecodeSideFile("abc"), "abc");
  EXPECT_EQ(DecodeSideFile("\xC3\xA9t\xC3\xA9"), "été");
  EXPECT_EQ(DecodeSideFile("\xF0\x9F\x8E\xB5"), "🎵");
}

TEST(DecodeSideFile, TakesTheByteOrderMarkOff) {
  EXPECT_EQ(DecodeSideFile(kMark + "\xC3\xA9"), "é");
  EXPECT_EQ(DecodeSideFile(kMark), "");
}

TEST(DecodeSideFile, TakesEverythingElseAsWindows1252) {
  EXPECT_EQ(DecodeSideFile("\xE9t\xE9"), "été");
  EXPECT_EQ(DecodeSideFile("5 \x80 \x93x\x94 \x9C"), "5 € “x” œ");
}

TEST(DecodeSideFile, SpoiltUtf8BehindAMarkKeepsItsGoodCharacters) {
  EXPECT_EQ(DecodeSideFile(kMark + "\xC3\xA9 \xE9"), "é é");
}

TEST(DecodeSideFile, KnowsWhatIsNoUtf8) {
  EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));          // overlong
  EXPECT_FALSE(IsValidUtf8("\xE0\x80\x80"));      // overlong
  EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));      // surrogate
  EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));  // above 0x10FFFF
  EXPECT_FALSE(IsValidUtf8("\xF5\x80\x80\x80"));
  EXPECT_FALSE(IsValidUtf8("a\xC3"));  // cut off
  EXPECT_FALSE(IsValidUtf8("\xA9"));
  EXPECT_TRUE(IsValidUtf8("\xF4\x8F\xBF\xBF"));
  EXPECT_TRUE(IsValidUtf8(""));
}

TEST(EncodeSideFile, WritesWindows1252WhenEveryCharacterFits) {
  EXPECT_EQ(EncodeSideFile("été"), "\xE9t\xE9");
  EXPECT_EQ(EncodeSideFile("5 €, œ, Ÿ"), "5 \x80, \x9C, \x9F");
  EXPECT_EQ(EncodeSideFile(""), "");
}

TEST(EncodeSideFile, WritesUtf8BehindAMarkWhenOneDoesNot) {
  EXPECT_EQ(EncodeSideFile("é Łódź"), kMark + "é Łódź");
  EXPECT_EQ(EncodeAppended("é Łódź"), "é Łódź");
}

TEST(EncodeSideFile, WritesUtf8WhereWindows1252WouldBeReadAsSomethingElse) {
  // These two letters are, in Windows-1252, the two bytes of an e with acute accent in UTF-8.
  EXPECT_EQ(EncodeSideFile("Ã©"), kMark + "Ã©");
  EXPECT_EQ(DecodeSideFile(EncodeSideFile("ï»¿x")), "ï»¿x");
}

TEST(SideFileEncoding, OfPartsIsThatOfTheirWhole) {
  const auto inParts = [](const std::vector<std::string>& parts) {
    SideFileEncoding encoding;
    for (const std::string& part : parts) encoding.Look(part);
    std::string bytes = encoding.Mark();
    for (const std::string& part : parts) bytes += encoding.Encode(part);
    return bytes;
  };
  for (const std::vector<std::string>& parts :
       std::vector<std::vector<std::string>>{{"a\r\n", "b\r\n"},
                                             {"a\r\n", "été\r\n"},
                                             {"été\r\n", "Łódź\r\n", "a\r\n"},
                                             {"Ã©\r\n", "a\r\n"},
                                             {"Ã©\r\n", "é\r\n"},
                                             {"ï»¿x\r\n", "é\r\n"},
                                             {"é\r\n", "ï»¿x\r\n"},
                                             {"\xE9\r\n", "é\r\n"}}) {
    std::string whole;
    for (const std::string& part : parts) whole += part;
    EXPECT_EQ(inParts(parts), EncodeSideFile(whole)) << whole;
  }
  EXPECT_EQ(inParts({"a\r\n", "été\r\n"}), "a\r\n\xE9t\xE9\r\n");
  EXPECT_EQ(inParts({"été\r\n", "Łódź\r\n"}), kMark + "été\r\nŁódź\r\n");
}

TEST(EncodeSideFile, EveryByteOfWindows1252ComesBackAsItWas) {
  for (int byte = 0; byte < 256; ++byte) {
    // Behind a letter that no UTF-8 has, so that the text is taken as Windows-1252.
    const std::string bytes = std::string("\xE9 ") + static_cast<char>(byte) + " \xFF";
    EXPECT_EQ(EncodeSideFile(DecodeSideFile(bytes)), bytes) << byte;
  }
}

TEST(EncodeSideFile, WhateverIsReadIsReadTheSameAgainOnceWritten) {
  RandomBytes random(1);
  for (int round = 0; round < 4000; ++round) {
    const std::string text = DecodeSideFile(random.Text(50));
    ASSERT_TRUE(IsValidUtf8(text)) << round;
    ASSERT_EQ(DecodeSideFile(EncodeSideFile(text)), text) << round;
  }
}

TEST(SplitLines, TakesEveryKindOfLineEnd) {
  EXPECT_EQ(SplitLines("a\r\nb\nc\rd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(SplitLines("\r\n\r\na\r\n"), (Lines{"", "", "a"}));
  EXPECT_EQ(SplitLines(""), Lines{});
  EXPECT_EQ(SplitLines("\n"), Lines{""});
  EXPECT_EQ(SplitLines("a\n\rb"), (Lines{"a", "", "b"}));
}

TEST(JoinLines, EndsEachLineByCrLf) {
  EXPECT_EQ(JoinLines({"a", "", "b"}), "a\r\n\r\nb\r\n");
  EXPECT_EQ(JoinLines({}), "");
}

TEST(SplitLines, OfJoinedLinesAreTheLines) {
  RandomBytes random(2);
  for (int round = 0; round < 2000; ++round) {
    const Lines lines = SplitLines(random.Text(60));
    ASSERT_EQ(SplitLines(JoinLines(lines)), lines) << round;
  }
}

TEST(OneLine, TurnsLineEndsAndTabsIntoOneBlankEach) {
  EXPECT_EQ(OneLine("a\r\nb\nc\td\re"), "a b c d e");
  EXPECT_EQ(OneLine("\r\n"), " ");
}

Lines Texts(const std::vector<SideField>& fields) {
  Lines texts;
  for (const SideField& field : fields) texts.push_back((field.quoted ? "q:" : "b:") + field.text);
  return texts;
}

TEST(ReadFields, TakesQuotedTextsAndBareNumbersAndWords) {
  EXPECT_EQ(Texts(ReadFields("\"START\",\"06:00\"\r\n12,-3,#TRUE#,\"4\"\r\n")),
            (Lines{"q:START", "q:06:00", "b:12", "b:-3", "b:#TRUE#", "q:4"}));
}

TEST(ReadFields, PassesOverBlanksAroundAFieldButKeepsThemInQuotes) {
  EXPECT_EQ(Texts(ReadFields("  \" a, b \" , c d ,\t\"e\"\n")),
            (Lines{"q: a, b ", "b:c d", "q:e"}));
}

TEST(ReadFields, ReadsADoubledQuoteAsOne) {
  EXPECT_EQ(Texts(ReadFields("\"say \"\"no\"\"\",x")), (Lines{"q:say \"no\"", "b:x"}));
  EXPECT_EQ(Texts(ReadFields("\"\"")), (Lines{"q:"}));
  EXPECT_EQ(Texts(ReadFields("\"\"\"\"")), (Lines{"q:\""}));
}

TEST(ReadFields, EndsAnOpenQuoteWithItsLine) {
  EXPECT_EQ(Texts(ReadFields("\"open, 1\r\n\"next\"\r\n")), (Lines{"q:open, 1", "q:next"}));
  EXPECT_EQ(Texts(ReadFields("\"")), (Lines{"q:"}));
}

TEST(ReadFields, PassesOverWhatStandsBehindAClosingQuote) {
  EXPECT_EQ(Texts(ReadFields("\"a\" rest,\"b\"")), (Lines{"q:a", "q:b"}));
}

TEST(ReadFields, TakesAnEmptyPlaceBetweenCommasAsAFieldAndABlankLineAsNone) {
  EXPECT_EQ(Texts(ReadFields("1,,2,\r\n \t\r\n3")), (Lines{"b:1", "b:", "b:2", "b:", "b:3"}));
}

TEST(ReadRecords, KeepsTheFieldsOfALineTogether) {
  const std::vector<FieldRecord> records = ReadRecords("\"a\",1\r\n\r\n\"b\"\r\n");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(Texts(records[0]), (Lines{"q:a", "b:1"}));
  EXPECT_EQ(Texts(records[1]), (Lines{"q:b"}));
}

TEST(SideField, ReadsBooleansAsWordsOrNumbers) {
  for (const char* text : {"#TRUE#", "#true#", "True", "1", "-1", " #TRUE# "})
    EXPECT_TRUE((SideField{text, false}.AsBool(false))) << text;
  for (const char* text : {"#FALSE#", "False", "0"})
    EXPECT_FALSE((SideField{text, true}.AsBool(true))) << text;
  EXPECT_TRUE((SideField{"?", false}.AsBool(true)));
  EXPECT_FALSE((SideField{"", false}.AsBool(false)));
}

TEST(SideField, ReadsWholeNumbersAndNothingElse) {
  EXPECT_EQ((SideField{" +12 ", true}.AsInt(7)), 12);
  EXPECT_EQ((SideField{"-12", false}.AsInt(7)), -12);
  for (const char* text : {"", "+", "+-1", "1.5", "12a", "2147483648", "#TRUE#"})
    EXPECT_EQ((SideField{text, false}.AsInt(7)), 7) << text;
}

TEST(QuotedField, IsReadBackAsItWas) {
  EXPECT_EQ(QuotedField("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(QuotedField("a\r\nb"), "\"a  b\"");
  RandomBytes random(4);
  for (int round = 0; round < 2000; ++round) {
    const std::string text = QuotedField(random.Text(40));
    const std::vector<SideField> fields = ReadFields(text + ",1");
    ASSERT_EQ(fields.size(), 2u) << round;
    ASSERT_EQ(QuotedField(fields[0].text), text) << round;
  }
}

TEST(BoolField, IsTheWordBetweenHashes) {
  EXPECT_EQ(BoolField(true), "#TRUE#");
  EXPECT_EQ(BoolField(false), "#FALSE#");
}

TEST(ReadFields, TakesAnyBytesAndLosesNoLine) {
  RandomBytes random(6);
  for (int round = 0; round < 4000; ++round) {
    const std::string text = DecodeSideFile(random.Text(80));
    const std::vector<FieldRecord> records = ReadRecords(text);
    size_t lines = 0;
    for (const std::string& line : SplitLines(text))
      if (line.find_first_not_of(" \t") != std::string::npos) ++lines;
    ASSERT_EQ(records.size(), lines) << round;
    for (const SideField& field : ReadFields(text)) {
      ASSERT_TRUE(IsValidUtf8(field.text)) << round;
      ASSERT_EQ(field.text.find_first_of("\r\n"), std::string::npos) << round;
    }
  }
}

}  // namespace
}  // namespace zemo
