// SPDX-License-Identifier: MIT
#include "readers/ATDeviceDataReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "base/ATException.h"
#include "readers/ATCustomMediaTypesReaderImpl.h"
#include "readers/ATDeviceFamilyNameReaderImpl.h"
#include "tests/readers/FakeDeviceModelLibrary.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Answers with the arguments that it was given, and counts the objects that were made.
class EchoImpl : public IATReaderImpl {
 public:
  EchoImpl() { ++made; }
  DeviceValue dataFromDevice(const std::string& deviceURI, const std::optional<std::string>& modelName) override {
    return "data of " + deviceURI + " " + modelName.value_or("(null)");
  }
  DeviceValue familyNameFromDevice(const std::string& deviceURI) override { return "family of " + deviceURI; }

  static inline int made = 0;
};

class ThrowingImpl : public IATReaderImpl {
 public:
  DeviceValue dataFromDevice(const std::string& /*deviceURI*/,
                             const std::optional<std::string>& /*modelName*/) override {
    throw ATException("TestException", "no data");
  }
};

/// Gives every test an empty registry, and puts the process's own back.
class ATDeviceDataReaderTest : public testing::Test {
 protected:
  ATDeviceDataReaderTest() : original_(std::exchange(ATDeviceDataReader::implementations(), {})) { EchoImpl::made = 0; }
  ~ATDeviceDataReaderTest() override { ATDeviceDataReader::implementations() = original_; }

  static std::unique_ptr<ATDeviceDataReader> reader() {
    return ATDeviceDataReader::initWithDeviceURI("socket://a", "\"Z9\"");
  }
  static std::vector<std::string> registeredKeys() {
    std::vector<std::string> keys;
    for (const auto& [key, kind] : ATDeviceDataReader::implementations()) keys.push_back(key);
    return keys;
  }

 private:
  ATDeviceDataReader::Implementations original_;
};

}  // namespace

TEST_F(ATDeviceDataReaderTest, IsNotMadeWithoutAURI) {
  EXPECT_EQ(ATDeviceDataReader::initWithDeviceURI(std::nullopt, "Z9"), nullptr);
  EXPECT_EQ(ATDeviceDataReader::initWithDeviceURI("", "Z9"), nullptr);
}

TEST_F(ATDeviceDataReaderTest, ModelNameMayBeAbsentOrEmpty) {
  const auto without = ATDeviceDataReader::initWithDeviceURI("socket://a", std::nullopt);
  ASSERT_NE(without, nullptr);
  EXPECT_EQ(without->modelName(), std::nullopt);
  const auto empty = ATDeviceDataReader::initWithDeviceURI("socket://a", "");
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty->modelName(), "");
}

TEST_F(ATDeviceDataReaderTest, KeepsCopiesOfURIAndModelName) {
  std::optional<std::string> uri = "socket://a";
  std::optional<std::string> modelName = "\"Z9\"";
  const auto reader = ATDeviceDataReader::initWithDeviceURI(uri, modelName);
  *uri = "changed";
  *modelName = "changed";
  EXPECT_EQ(reader->deviceURI(), "socket://a");
  EXPECT_EQ(reader->printerURI(), "socket://a");
  EXPECT_EQ(reader->modelName(), "\"Z9\"");
}

TEST_F(ATDeviceDataReaderTest, RegistryIsOneMap) {
  EXPECT_EQ(&ATDeviceDataReader::implementations(), &ATDeviceDataReader::implementations());
}

TEST_F(ATDeviceDataReaderTest, StartUpLeavesOneEntryTheCustomMediaReader) {
  registerReaderImplementations();
  ASSERT_THAT(registeredKeys(), ElementsAre("VMCustomMediaStorage"));
  const auto implementation = ATDeviceDataReader::implementations().begin()->second();
  EXPECT_NE(dynamic_cast<ATCustomMediaTypesReaderImpl*>(implementation.get()), nullptr);
  EXPECT_EQ(dynamic_cast<ATDeviceFamilyNameReaderImpl*>(implementation.get()), nullptr);
}

TEST_F(ATDeviceDataReaderTest, StartUpReplacesWhatHeldTheKey) {
  ATDeviceDataReader::registerImpl(std::make_unique<EchoImpl>, VMCustomMediaStorage);
  registerReaderImplementations();
  const auto implementation = ATDeviceDataReader::implementations().at(VMCustomMediaStorage)();
  EXPECT_NE(dynamic_cast<ATCustomMediaTypesReaderImpl*>(implementation.get()), nullptr);
}

TEST_F(ATDeviceDataReaderTest, RegisteringUnderAKeyAgainReplacesTheFirst) {
  ATDeviceDataReader::registerImpl(std::make_unique<ThrowingImpl>, "key");
  ATDeviceDataReader::registerImpl(std::make_unique<EchoImpl>, "key");
  EXPECT_THAT(registeredKeys(), ElementsAre("key"));
  EXPECT_TRUE(reader()->dataForKey("key").equals("data of socket://a \"Z9\""));
}

TEST_F(ATDeviceDataReaderTest, KeysAreExactAndCaseSensitive) {
  ATDeviceDataReader::registerImpl(std::make_unique<EchoImpl>, "key");
  for (const char* key : {"Key", "key ", "ke", ""}) EXPECT_TRUE(reader()->dataForKey(key).isAbsent()) << key;
}

TEST_F(ATDeviceDataReaderTest, UnregisteredKeyGivesNothing) {
  EXPECT_TRUE(reader()->dataForKey(VMCustomMediaStorage).isAbsent());
  EXPECT_TRUE(reader()->familyNameForKey(VMCustomMediaStorage).isAbsent());
}

TEST_F(ATDeviceDataReaderTest, DataComesFromTheImplementationWithURIAndModelName) {
  ATDeviceDataReader::registerImpl(std::make_unique<EchoImpl>, "key");
  EXPECT_TRUE(reader()->dataForKey("key").equals("data of socket://a \"Z9\""));
  const auto withoutModelName = ATDeviceDataReader::initWithDeviceURI("socket://a", std::nullopt);
  EXPECT_TRUE(withoutModelName->dataForKey("key").equals("data of socket://a (null)"));
}

TEST_F(ATDeviceDataReaderTest, FamilyNameComesFromTheImplementationWithTheURI) {
  ATDeviceDataReader::registerImpl(std::make_unique<EchoImpl>, "key");
  EXPECT_TRUE(reader()->familyNameForKey("key").equals("family of socket://a"));
}

TEST_F(ATDeviceDataReaderTest, EveryQuestionMakesANewImplementation) {
  ATDeviceDataReader::registerImpl(std::make_unique<EchoImpl>, "key");
  const auto asking = reader();
  EXPECT_EQ(EchoImpl::made, 0);
  asking->dataForKey("key");
  asking->dataForKey("key");
  asking->familyNameForKey("key");
  EXPECT_EQ(EchoImpl::made, 3);
}

TEST_F(ATDeviceDataReaderTest, TwoQuestionsAskTheDeviceTwice) {
  registerReaderImplementations();
  FakeDeviceModelLibrary library;
  const auto asking = reader();
  asking->dataForKey(VMCustomMediaStorage);
  asking->dataForKey(VMCustomMediaStorage);
  EXPECT_EQ(std::count(library.calls.begin(), library.calls.end(), "itemForKey VMCustomMediaStorage"), 2);
}

TEST_F(ATDeviceDataReaderTest, MakingAReaderAsksNothing) {
  registerReaderImplementations();
  FakeDeviceModelLibrary library;
  reader();
  EXPECT_THAT(library.calls, IsEmpty());
}

TEST_F(ATDeviceDataReaderTest, FamilyNameForTheMediaKeyIsNotProvided) {
  registerReaderImplementations();
  FakeDeviceModelLibrary library;
  EXPECT_THROW(reader()->familyNameForKey(VMCustomMediaStorage), ATException);
  EXPECT_TRUE(reader()->familyNameForKey("other").isAbsent());
}

TEST_F(ATDeviceDataReaderTest, FailureOfTheImplementationGoesUp) {
  ATDeviceDataReader::registerImpl(std::make_unique<ThrowingImpl>, "key");
  EXPECT_THROW(reader()->dataForKey("key"), ATException);
}
