// SPDX-License-Identifier: MIT
#include "explain/CommandLine.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cstdio>
#include <exception>
#include <string_view>

#include "explain/Terminal.h"
#include "explain/report/Wording.h"

namespace {

// An option without the value behind its equals sign; null when there is none. CLI11 would take the next argument.
const char* withoutValue(int argc, const char* const* argv) {
  for (int index = 1; index < argc && std::string_view(argv[index]) != "--"; ++index) {
    const std::string_view argument = argv[index];
    if (argument.starts_with("--") && argument.find('=') == argument.size() - 1) return argv[index];
  }
  return nullptr;
}

}  // namespace

CommandLine::CommandLine(const std::string& program, const std::string& version, const std::string& help)
    : app_("", program) {
  app_.option_defaults()->take_last();
  app_.set_help_flag("-h,--help", "show this help");
  app_.set_version_flag("-V,--version", program + " " + version, "show the version");
  if (help.empty()) return;
  app_.formatter_fn([help](const CLI::App*, const std::string&, CLI::AppFormatMode) { return help; });
}

std::optional<int> CommandLine::parse(int argc, const char* const* argv) {
  if (const char* argument = withoutValue(argc, argv))
    return wrongUsage(std::string("a value is missing: ") + argument);
  try {
    app_.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return show(app_.help());
  } catch (const CLI::CallForVersion& version) {
    return show(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& error) {
    return wrongUsage(error.what());
  }
  return std::nullopt;
}

int CommandLine::show(const std::string& text) const {
  if (Terminal::print(text)) return 0;
  say("standard output cannot be written");
  return kUsageError;
}

void CommandLine::say(const std::string& what) const {
  std::fprintf(stderr, "%s: %s\n", app_.get_name().c_str(), Wording::visible(what).c_str());
}

int CommandLine::wrongUsage(const std::string& what) const {
  say(what);
  std::fprintf(stderr, "Try '%s --help'.\n", app_.get_name().c_str());
  return kUsageError;
}

int CommandLine::run(const std::function<int()>& work) const {
  try {
    return work();
  } catch (const std::exception& error) {
    say(error.what());
  } catch (...) {
    say("an exception of an unknown type");
  }
  return kFailure;
}
