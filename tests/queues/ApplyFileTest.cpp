// SPDX-License-Identifier: MIT
#include "queues/ApplyFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

using testing::HasSubstr;

namespace {

class ApplyFileTest : public testing::Test {
 protected:
  std::vector<QueueWish> read(const std::string& text) { return ApplyFile::read(folder_.file("queues.json", text)); }
  std::vector<QueueWish> readQueues(const std::string& queues) {
    return read(R"({"format": "vorantis-queues", "formatVersion": 1, "queues": [)" + queues + "]}");
  }
  std::string mistakeIn(const std::string& queues) {
    try {
      readQueues(queues);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  }

  TemporaryFolder folder_;
};

constexpr const char* kGood = R"("uri": "socket://h", "snapshot": "p", "ppd": "z.ppd")";

std::string queue(const std::string& members) {
  return R"({"name": "q", )" + members + "}";
}

}  // namespace

TEST_F(ApplyFileTest, ReadsQueues) {
  const auto wishes = readQueues(queue(std::string(kGood) + R"(, "device": 2, "info": "I", "location": "L")") +
                                 R"(, {"name": "r", "uri": "ipp://h/", "snapshot": "s", "ppd": "y.ppd.gz"})");
  ASSERT_EQ(wishes.size(), 2U);
  EXPECT_EQ(wishes[0].name, "q");
  EXPECT_EQ(wishes[0].uri, "socket://h");
  EXPECT_EQ(wishes[0].model, "vorantis-autosetup:p+2/z.ppd");
  EXPECT_EQ(wishes[0].info, "I");
  EXPECT_EQ(wishes[0].location, "L");
  EXPECT_EQ(wishes[1].model, "vorantis-autosetup:s/y.ppd.gz");
  EXPECT_EQ(wishes[1].info, "");
  EXPECT_TRUE(readQueues("").empty());
}

TEST_F(ApplyFileTest, SaysWhereAMistakeIs) {
  EXPECT_THAT(mistakeIn("7"), HasSubstr("queue 1 is no object"));
  EXPECT_THAT(mistakeIn(queue(kGood) + ", {}"), HasSubstr("queue 2 needs a text \"name\""));
  EXPECT_THAT(mistakeIn(R"({"name": "a b"})"), HasSubstr("queue 1 has a name that CUPS does not take"));
  EXPECT_THAT(mistakeIn(R"({"name": "a/b"})"), HasSubstr("has a name that CUPS does not take"));
  EXPECT_THAT(mistakeIn(queue(R"("snapshot": "p")")), HasSubstr("queue 1 (q) needs a text \"uri\""));
  EXPECT_THAT(mistakeIn(queue(R"("uri": "h")")), HasSubstr("queue 1 (q) has a uri without a scheme"));
  EXPECT_THAT(mistakeIn(queue(R"("uri": "s://h", "ppd": "z.ppd")")), HasSubstr("needs a text \"snapshot\""));
  EXPECT_THAT(mistakeIn(queue(std::string(kGood) + R"(, "ifno": "")")), HasSubstr("has an unknown member ifno"));
  EXPECT_THAT(mistakeIn(queue(std::string(kGood) + R"(, "info": 7)")), HasSubstr("needs a text \"info\""));
  for (const char* device : {"0", "-1", "\"2\"", "1.5"}) {
    EXPECT_THAT(mistakeIn(queue(std::string(kGood) + R"(, "device": )" + device)),
                HasSubstr("has a device that is no"));
  }
  EXPECT_THAT(mistakeIn(queue(kGood) + "," + queue(kGood)), HasSubstr("names the queue q twice"));
  EXPECT_THAT(mistakeIn(queue(kGood) + R"(, {"name": "Q", )" + kGood + "}"), HasSubstr("names the queue Q twice"));
}

TEST_F(ApplyFileTest, SaysWhatIsNoSuchFile) {
  EXPECT_THROW(ApplyFile::read(folder_.path("none")), std::runtime_error);
  EXPECT_THROW(read(""), std::runtime_error);
  EXPECT_THROW(read("{"), std::runtime_error);
  EXPECT_THROW(read("[]"), std::runtime_error);
  EXPECT_THROW(read(R"({"format": "vorantis-queues", "formatVersion": 2, "queues": []})"), std::runtime_error);
  EXPECT_THROW(read(R"({"format": "vorantis-queues", "formatVersion": 1, "queues": {}})"), std::runtime_error);
}
