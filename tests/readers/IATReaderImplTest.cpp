// SPDX-License-Identifier: MIT
#include "readers/IATReaderImpl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "base/ATException.h"
#include "readers/ATCustomMediaTypesReaderImpl.h"
#include "readers/ATDeviceFamilyNameReaderImpl.h"
#include "tests/readers/FakeDeviceModelLibrary.h"

using testing::IsEmpty;

namespace {

void expectUnsupported(const char* operation, const std::function<void()>& call) {
  try {
    call();
    ADD_FAILURE() << operation << " was provided";
  } catch (const ATException& exception) {
    EXPECT_EQ(exception.reason(), std::string("-[IATReaderImpl ") + operation + "]: operation not provided");
  }
}

}  // namespace

TEST(IATReaderImpl, OperationsThatAnImplementationDoesNotProvideFail) {
  IATReaderImpl nothing;
  expectUnsupported("dataFromDevice:modelName:", [&] { nothing.dataFromDevice("ipp://a", "Z9"); });
  expectUnsupported("dataFromPPD:", [&] { nothing.dataFromPPD(nullptr); });
  expectUnsupported("familyNameFromDevice:", [&] { nothing.familyNameFromDevice("ipp://a"); });
}

TEST(IATReaderImpl, CustomMediaReaderProvidesNoFamilyName) {
  FakeDeviceModelLibrary library;
  expectUnsupported("familyNameFromDevice:", [] { ATCustomMediaTypesReaderImpl().familyNameFromDevice("ipp://a"); });
  EXPECT_THAT(library.calls, IsEmpty());
}

TEST(IATReaderImpl, FamilyNameReaderProvidesNoData) {
  FakeDeviceModelLibrary library;
  ATDeviceFamilyNameReaderImpl reader;
  expectUnsupported("dataFromDevice:modelName:", [&] { reader.dataFromDevice("ipp://a", "Z9"); });
  expectUnsupported("dataFromPPD:", [&] { reader.dataFromPPD(nullptr); });
  EXPECT_THAT(library.calls, IsEmpty());
}
