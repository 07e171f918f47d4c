// SPDX-License-Identifier: MIT
#pragma once

#include <stdlib.h>  // NOLINT(modernize-deprecated-headers): setenv is POSIX

#include <string>

/// Sets an environment variable, or takes it out when there is no value; afterwards it is not set.
class EnvironmentVariable {
 public:
  explicit EnvironmentVariable(const char* name) : name_(name) { unsetenv(name); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { unsetenv(name_); }

  void set(const std::string& value) const { setenv(name_, value.c_str(), 1); }

 private:
  const char* name_;
};
