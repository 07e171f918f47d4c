// SPDX-License-Identifier: MIT
#include "base/ATException.h"

#include <utility>

namespace {

constexpr const char* kLibraryFailure = "ATDeviceModelLibraryException";

}  // namespace

ATException::ATException(std::string name, std::string reason, std::optional<std::string> userInfo)
    : name_(std::move(name)), reason_(std::move(reason)), userInfo_(std::move(userInfo)) {}

ATException ATException::unsupportedOperation(const std::string& signature) {
  return {"ATInvalidArgumentException", signature + ": operation not provided"};
}

ATException ATException::outOfRange(const std::string& signature) {
  return {"ATRangeException", signature + ": position out of range"};
}

ATException ATException::libraryFailure(std::string reason) {
  return {kLibraryFailure, std::move(reason)};
}

bool ATException::isLibraryFailure() const {
  return name_ == kLibraryFailure;
}

ATException ATException::wrongType(const std::string& use) {
  return {"ATInvalidArgumentException", "value of the wrong type: " + use};
}

ATException ATException::absent(const std::string& what) {
  return {"ATInvalidArgumentException", "value is absent: " + what};
}
