// Texts of tags as they come, and as a card has them.
#include <gtest/gtest.h>

#include "platform/real/analysis/TagText.h"

namespace zemo {
namespace {

using TagLib::ByteVector;
using TagLib::String;

std::string OfUnits(std::initializer_list<wchar_t> units) {
  return FieldText(String(TagLib::wstring(units)));
}

TEST(TagText, BlanksAtTheEndsAreTakenOff) {
  EXPECT_EQ(FieldText(String("  La  mer \t\r\n")), "La  mer");
  EXPECT_EQ(FieldText(String(" \n ")), "");
  EXPECT_EQ(FieldText(String()), "");
}

TEST(TagText, ControlCharactersAndLineEndsAreBlanks) {
  EXPECT_EQ(FieldText(String("Face\nA\rB\tC")), "Face A B C");
  EXPECT_EQ(OfUnits({L'a', 0x85, L'b', 0x2028, L'c', 0x7F, L'd'}), "a b c d");
}

TEST(TagText, CharactersOfTwoUnitsStayWhole) {
  EXPECT_EQ(OfUnits({0xD834, 0xDD1E}), "\xF0\x9D\x84\x9E");  // U+1D11E, a clef
}

TEST(TagText, HalvesOfCharactersAreReplaced) {
  EXPECT_EQ(OfUnits({L'a', 0xD834}), "a\xEF\xBF\xBD");
  EXPECT_EQ(OfUnits({0xDD1E, L'b'}),
            "\xEF\xBF\xBD"
            "b");
}

TEST(TagText, BytesThatAreNoUtf8AreLatin1) {
  EXPECT_EQ(FieldText(TextOfBytes(ByteVector("\xC3\xA9t\xC3\xA9"))), "\xC3\xA9t\xC3\xA9");
  EXPECT_EQ(FieldText(TextOfBytes(ByteVector("\xE9t\xE9"))), "\xC3\xA9t\xC3\xA9");
}

TEST(TagText, Utf8ThatIsSaidToBeLatin1IsReadAsWhatItIs) {
  EXPECT_EQ(FieldText(String("Bj\xC3\xB6rk", String::Latin1)), "Bj\xC3\xB6rk");
  EXPECT_EQ(FieldText(String("Bj\xF6rk", String::Latin1)), "Bj\xC3\xB6rk");
  EXPECT_EQ(FieldText(String("Bj\xC3\xB6rk", String::UTF8)), "Bj\xC3\xB6rk");
}

TEST(TagText, AYearIsFourDigitsOfADate) {
  EXPECT_EQ(YearText("1987"), "1987");
  EXPECT_EQ(YearText("2003-05-17"), "2003");
  EXPECT_EQ(YearText("17/05/2003"), "2003");
  EXPECT_EQ(YearText("20030517"), "2003");
  EXPECT_EQ(YearText("87"), "");
  EXPECT_EQ(YearText("0000"), "");
  EXPECT_EQ(YearText("unknown"), "");
}

TEST(TagText, SeveralValuesStandBehindEachOther) {
  TagFields fields;
  AddField(fields, "ARTIST", "Ella");
  AddField(fields, "ARTIST", "");
  AddField(fields, "ARTIST", "Louis");
  EXPECT_EQ(TextsOf(fields).artist, "Ella, Louis");
}

TEST(TagText, ALabelGoesByThreeNames) {
  EXPECT_EQ(TextsOf({{"ORGANIZATION", "c"}}).label, "c");
  EXPECT_EQ(TextsOf({{"ORGANIZATION", "c"}, {"PUBLISHER", "b"}}).label, "b");
  EXPECT_EQ(TextsOf({{"ORGANIZATION", "c"}, {"PUBLISHER", "b"}, {"LABEL", "a"}}).label, "a");
}

}  // namespace
}  // namespace zemo
