// SPDX-License-Identifier: MIT
//
// vorantis-device-snapshot [OPTION...] DEVICE-URI [MODEL-NAME]: writes what the device-model library answers for a
// device to standard output, as a snapshot that the stored library replays. Exit status 0; 1 when the library fails or
// knows no such device, or the PPD cannot be read; 2 for wrong usage.

#include <getopt.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>

#include "base/ATException.h"
#include "base/Text.h"
#include "capture/DeviceSnapshot.h"
#include "capture/ModelNameOfPPD.h"

namespace {

constexpr int kUsageError = 2;

constexpr const char* kUsage = R"(Usage: vorantis-device-snapshot [OPTION...] DEVICE-URI [MODEL-NAME]

Asks the device-model library all that VorantisAutosetupTool would ask it for
this device, and writes the answers to standard output as a device snapshot.
The stored library replays it: set QZVORANTISMODEL_SNAPSHOT to its path.

MODEL-NAME is the value of *ModelName in the queue's PPD, its double quotes
included; leave it out when the PPD has none, or name the PPD.

      --ppd=FILE     take the model name from the queue's PPD
      --allow-empty  a device without custom media is no error
  -h, --help         show this help
  -V, --version      show the version

Exit status: 0; 1 when the library is not there, fails or knows no custom media
of such a device, or when the PPD cannot be read; 2 for wrong usage.
)";

struct Options {
  std::optional<std::string> ppd;
  bool allowEmpty = false;
};

void say(const std::string& what) {
  std::fprintf(stderr, "vorantis-device-snapshot: %s\n", what.c_str());
}

[[noreturn]] void wrongUsage(const std::string& what) {
  say(what);
  std::fputs("Try 'vorantis-device-snapshot --help'.\n", stderr);
  std::exit(kUsageError);
}

bool print(const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

[[noreturn]] void printAndExit(const char* text) {
  std::exit(print(text) ? 0 : kUsageError);
}

Options optionsFrom(int argc, char** argv) {
  static constexpr std::array<option, 5> kOptions = {{{"ppd", required_argument, nullptr, 'p'},
                                                      {"allow-empty", no_argument, nullptr, 'e'},
                                                      {"help", no_argument, nullptr, 'h'},
                                                      {"version", no_argument, nullptr, 'V'},
                                                      {nullptr, 0, nullptr, 0}}};
  Options options;
  opterr = 0;
  for (int found; (found = getopt_long(argc, argv, "+hV", kOptions.data(), nullptr)) != -1;) {
    switch (found) {
      case 'p':
        options.ppd = optarg;
        break;
      case 'e':
        options.allowEmpty = true;
        break;
      case 'h':
        printAndExit(kUsage);
      case 'V':
        printAndExit("vorantis-device-snapshot " AT_VERSION "\n");
      default:
        wrongUsage(std::string("no such option, or an argument is missing: ") + argv[optind - 1]);
    }
  }
  return options;
}

std::string utf8(const char* argument) {
  auto text = Text::fromUTF8(argument);
  if (!text) wrongUsage("the arguments must be UTF-8");
  return *text;
}

std::optional<std::string> modelNameFrom(const Options& options, int count, char** arguments) {
  if (options.ppd) return ModelNameOfPPD::at(utf8(options.ppd->c_str()));
  if (count > 1) return utf8(arguments[1]);
  return std::nullopt;
}

int capture(int argc, char** argv) {
  const Options options = optionsFrom(argc, argv);
  const int count = argc - optind;
  char** const arguments = argv + optind;
  if (count < 1 || count > (options.ppd ? 1 : 2))
    wrongUsage("a device URI is needed, and a model name or a PPD at most");
  const std::string uri = utf8(arguments[0]);
  const auto modelName = modelNameFrom(options, count, arguments);
  const auto captured = DeviceSnapshot::of(DeviceModelLibrary::defaultLibrary(), uri, modelName);
  for (const std::string& what : captured.leftOut) say("left out, since a snapshot cannot hold it: " + what);
  if (captured.missing && !options.allowEmpty) {
    say(*captured.missing + ": " + uri + ", " + modelName.value_or("no model name"));
    return 1;
  }
  if (print(captured.json)) return 0;
  say("the snapshot cannot be written");
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return capture(argc, argv);
  } catch (const std::exception& error) {
    say(error.what());
  } catch (...) {
    say("an exception of an unknown type");
  }
  return 1;
}
