// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

/// Where the finished PPD goes.
class ATOutput {
 public:
  virtual ~ATOutput() = default;
  /// Writes the bytes and returns how many were taken; fewer than given is a failure.
  virtual std::size_t write(std::string_view bytes) = 0;
};

/// A standard I/O stream. Not flushed here: the end of the process does that, and `main` looks at the result.
class ATStreamOutput : public ATOutput {
 public:
  explicit ATStreamOutput(std::FILE* stream) : stream_(stream) {}
  std::size_t write(std::string_view bytes) override { return std::fwrite(bytes.data(), 1, bytes.size(), stream_); }

 private:
  std::FILE* stream_;
};

/// Keeps what is written.
class ATMemoryOutput : public ATOutput {
 public:
  std::size_t write(std::string_view bytes) override {
    bytes_ += bytes;
    return bytes.size();
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};
