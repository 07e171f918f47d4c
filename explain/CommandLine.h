// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <optional>
#include <string>

/// What the programs for people have in common: how arguments are read, help and version are shown, and mistakes are
/// told. Exit status 0 is success, 1 a failure, 2 wrong usage.
///
/// Options may stand anywhere, those behind `--` are arguments. Of an option that is given twice the last counts,
/// unless it takes several values. An option that needs a value and gets the empty one (`--ppd=`) is wrong usage.
class CommandLine {
 public:
  static constexpr int kFailure = 1;
  static constexpr int kUsageError = 2;

  /// `help` is shown as it is; CLI11 makes it of the options when it is empty.
  CommandLine(const std::string& program, const std::string& version, const std::string& help = "");

  /// Takes the options, arguments and sub-commands, each bound to where its value goes.
  CLI::App& app() { return app_; }

  /// Reads the arguments. The exit status when nothing is left to do: help or version were printed, or the usage is
  /// wrong, which is told.
  std::optional<int> parse(int argc, const char* const* argv);

  /// Says it on standard error in one line, behind the program's name. What somebody typed, or a file or a device is
  /// named, may hold anything.
  void say(const std::string& what) const;
  /// The same, with a hint at the help; gives the exit status.
  int wrongUsage(const std::string& what) const;

  /// Does the program's work and gives its exit status; a failure when it throws, which is told.
  int run(const std::function<int()>& work) const;

 private:
  int show(const std::string& text) const;

  CLI::App app_;
};
