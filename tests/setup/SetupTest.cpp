// SPDX-License-Identifier: MIT
#include "setup/Setup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::HasSubstr;

namespace {

// GoogleTest keeps the bare name Setup for itself.
::Setup setupOf(const BasePPD& ppd, const std::string& name = "n", const std::string& description = "d") {
  return {name, "", "", "", ppd, description, nullptr, nullptr};
}

}  // namespace

TEST(Setup, GivesALineOfTheList) {
  EXPECT_EQ(setupOf({"\"Z9 44in\"", "V", "MFG:V;", true}).line(), "\"n\" en \"V\" \"d\" \"MFG:V;\"\n");
  EXPECT_EQ(setupOf({"\"Z9 44in\"", "V", "", true}).line(), "\"n\" en \"V\" \"d\" \"MFG:V;MDL:Z9 44in;\"\n");
}

TEST(Setup, CutsWhatCUPSCannotReadInALine) {
  const std::string expected = "\"n\" en \"V\" \"d\" \"" + std::string(255, 'I') + "\"\n";
  EXPECT_EQ(setupOf({"Z9", "V", std::string(255, 'I'), true}).line(), expected);
  EXPECT_EQ(setupOf({"Z9", "V", std::string(256, 'I'), true}).line(), expected);
  EXPECT_THAT(setupOf({"Z9", "V", "I", true}, "n", std::string(128, 'd')).line(),
              HasSubstr(" \"" + std::string(127, 'd') + "\" "));
}

TEST(Setup, TellsWhyCUPSCouldNotReadItsLine) {
  EXPECT_EQ(setupOf({"Z9", "V", "", true}).problemOfLine(), nullptr);
  EXPECT_STREQ(setupOf({"Z9", "V", "", true}, std::string(256, 'n')).problemOfLine(),
               "its name is longer than 255 bytes");
  EXPECT_STREQ(setupOf({"\"\"", "", "", true}).problemOfLine(), "its PPD names no manufacturer");
  EXPECT_STREQ(setupOf({"Z9", std::string(128, 'V'), "", true}).problemOfLine(),
               "its manufacturer is longer than 127 bytes");
  for (const BasePPD& ppd :
       {BasePPD{"Z\"9", "V", "", true}, BasePPD{"Z9", "V\n", "", true}, BasePPD{"Z9", "V", "\x1B", true}}) {
    EXPECT_STREQ(setupOf(ppd).problemOfLine(), "a name holds a quotation mark or a control character");
  }
}
