// SPDX-License-Identifier: MIT
#include "readers/ATPPDDataReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/readers/FakeDeviceModelLibrary.h"

TEST(ATPPDDataReader, IsNotMadeWithoutAPrinterID) {
  EXPECT_EQ(ATPPDDataReader::initWithPrinterID(std::nullopt), nullptr);
  EXPECT_EQ(ATPPDDataReader::initWithPrinterID(""), nullptr);
}

TEST(ATPPDDataReader, ABlankIsAPrinterID) {
  ASSERT_NE(ATPPDDataReader::initWithPrinterID(" "), nullptr);
}

TEST(ATPPDDataReader, AnswersThePrinterIDAsItsURI) {
  const auto reader = ATPPDDataReader::initWithPrinterID("printer-1");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(reader->printerID(), "printer-1");
  EXPECT_EQ(reader->printerURI(), "printer-1");
}

TEST(ATPPDDataReader, KeepsACopyOfTheID) {
  std::optional<std::string> printerID = "printer-1";
  const auto reader = ATPPDDataReader::initWithPrinterID(printerID);
  *printerID = "printer-2";
  EXPECT_EQ(reader->printerID(), "printer-1");
}

TEST(ATPPDDataReader, HasNoDataWhateverTheKeyAndAsksNobody) {
  FakeDeviceModelLibrary library;
  const auto reader = ATPPDDataReader::initWithPrinterID("printer-1");
  for (const char* key : {VMCustomMediaStorage, "", "other"}) {
    EXPECT_TRUE(reader->dataForKey(key).isAbsent());
    EXPECT_TRUE(reader->familyNameForKey(key).isAbsent());
  }
  EXPECT_THAT(library.calls, testing::IsEmpty());
}
