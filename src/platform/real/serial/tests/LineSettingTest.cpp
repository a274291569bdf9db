#include <gtest/gtest.h>

#include "platform/real/serial/LineSetting.h"

namespace zemo {
namespace {

TEST(LineSetting, FourFieldsAreBaudParityDataBitsAndStopBits) {
  EXPECT_EQ(ParseLineSetting("4800,N,8,1"),
            (LineParameters{4800, Parity::kNone, 8, StopBits::kOne}));
  EXPECT_EQ(ParseLineSetting("9600,E,7,2"),
            (LineParameters{9600, Parity::kEven, 7, StopBits::kTwo}));
  EXPECT_EQ(ParseLineSetting(" 300 , o , 5 , 1.5 "),
            (LineParameters{300, Parity::kOdd, 5, StopBits::kOneAndHalf}));
  EXPECT_EQ(ParseLineSetting("19200,m,6,1"),
            (LineParameters{19200, Parity::kMark, 6, StopBits::kOne}));
  EXPECT_EQ(ParseLineSetting("115200,s,8,1"),
            (LineParameters{115200, Parity::kSpace, 8, StopBits::kOne}));
}

TEST(LineSetting, AnythingElseIsNone) {
  for (const char* text :
       {"", "4800", "4800,N,8", "4800,N,8,1,x", "0,N,8,1", "-4800,N,8,1", "4800,X,8,1", "4800,,8,1",
        "4800,N,4,1", "4800,N,9,1", "4800,N,8,3", "48OO,N,8,1", "4800N81"})
    EXPECT_FALSE(ParseLineSetting(text)) << text;
}

}  // namespace
}  // namespace zemo
