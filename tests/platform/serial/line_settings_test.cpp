// Tests of line settings as text.
#include "platform/serial/line_settings.h"

#include <gtest/gtest.h>

namespace tellaxis::platform {
namespace {

TEST(LineSettingsFromText, ReadsSpeedParityDataAndStopBits) {
  EXPECT_EQ(lineSettingsFromText("9600,N,8,1"), (LineSettings{9600, Parity::none, 8, StopBits::one}));
  EXPECT_EQ(lineSettingsFromText("14400,O,7,2"), (LineSettings{14400, Parity::odd, 7, StopBits::two}));
  EXPECT_EQ(lineSettingsFromText("300,E,7,1.5"), (LineSettings{300, Parity::even, 7, StopBits::onePointFive}));
  EXPECT_EQ(lineSettingsFromText("115200,M,8,1"), (LineSettings{115200, Parity::mark, 8, StopBits::one}));
  EXPECT_EQ(lineSettingsFromText("1200,S,8,2"), (LineSettings{1200, Parity::space, 8, StopBits::two}));
}

TEST(LineSettingsFromText, TakesSmallLettersAndBlanksAroundTheFields) {
  EXPECT_EQ(lineSettingsFromText(" 9600 , e , 7 , 1 "), (LineSettings{9600, Parity::even, 7, StopBits::one}));
}

TEST(LineSettingsFromText, RefusesAnyOtherForm) {
  for (const std::string_view text : {"",
                                      " ",
                                      "9600",
                                      "9600,N,8",
                                      "9600,N,8,1,",
                                      "9600,N,8,1,0",
                                      ",N,8,1",
                                      "0,N,8,1",
                                      "-9600,N,8,1",
                                      "+9600,N,8,1",
                                      "9600.5,N,8,1",
                                      "fast,N,8,1",
                                      "9600,X,8,1",
                                      "9600,,8,1",
                                      "9600,NN,8,1",
                                      "9600,N,9,1",
                                      "9600,N,08,1",
                                      "9600,N,8,3",
                                      "9600,N,8,1,5",
                                      "9600;N;8;1",
                                      "99999999999,N,8,1"})
    EXPECT_EQ(lineSettingsFromText(text), std::nullopt) << text;
}

}  // namespace
}  // namespace tellaxis::platform
