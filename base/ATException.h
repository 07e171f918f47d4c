// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>

/// A programming error, or a failure of the device-model library: what ends a run with exit status 1.
/// Only `main` and the two updaters that guard their profile lists catch it.
class ATException : public std::exception {
 public:
  /// `name`: the kind of error; `reason`: what went wrong, for people; `userInfo`: more detail, or absent.
  ATException(std::string name, std::string reason, std::optional<std::string> userInfo = std::nullopt);

  /// As given to the constructor; `what` is the reason.
  const std::string& name() const { return name_; }
  const std::string& reason() const { return reason_; }
  const std::optional<std::string>& userInfo() const { return userInfo_; }
  const char* what() const noexcept override { return reason_.c_str(); }

  /// An abstract operation called on a base class, or one that an implementation does not provide.
  static ATException unsupportedOperation(const std::string& signature);
  /// An index or a position outside its list or string.
  static ATException outOfRange(const std::string& signature);
  /// A device-model library that failed, or gave what nobody can use.
  static ATException libraryFailure(std::string reason);
  bool isLibraryFailure() const;
  /// A value of another type than the one that `use` needs.
  static ATException wrongType(const std::string& use);
  /// No value where one is needed.
  static ATException absent(const std::string& what);

 private:
  std::string name_;
  std::string reason_;
  std::optional<std::string> userInfo_;
};
