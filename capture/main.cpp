// SPDX-License-Identifier: MIT
//
// vorantis-device-snapshot [OPTION...] DEVICE-URI [MODEL-NAME]: writes what the device-model library answers for a
// device, or what a table of media says, to standard output, as a snapshot that the stored library replays; with
// --check judges a snapshot. Exit status 0; 1 when the library fails or knows no such device, a file cannot be used, or
// something was found; 2 for wrong usage.

#include <getopt.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "base/Text.h"
#include "capture/DeviceSnapshot.h"
#include "capture/MediaTable.h"
#include "capture/ModelNameOfPPD.h"
#include "capture/SnapshotCheck.h"
#include "explain/report/Wording.h"

namespace {

constexpr int kFailure = 1;
constexpr int kUsageError = 2;

constexpr const char* kUsage = R"(Usage: vorantis-device-snapshot [OPTION...] DEVICE-URI [MODEL-NAME]
       vorantis-device-snapshot --check SNAPSHOT PPD

Asks the device-model library all that VorantisAutosetupTool would ask it for
this device, and writes the answers to standard output as a device snapshot.
The stored library replays it: set QZVORANTISMODEL_SNAPSHOT to its path.

MODEL-NAME is the value of *ModelName in the queue's PPD, its double quotes
included; leave it out when the PPD has none, or name the PPD.

      --ppd=FILE         take the model name from the queue's PPD
      --allow-empty      a device without custom media is no error
      --from-table=FILE  ask no library: make the snapshot of a table of media
                         (CSV; vorantis-device-snapshot(5) has the columns)
      --check            judge a snapshot against a PPD: do the setup, write
                         nothing, and print what is odd
  -h, --help             show this help
  -V, --version          show the version

Exit status: 0; 1 when the library is not there, fails or knows no custom media
of such a device, when a file cannot be used, or when --check found something;
2 for wrong usage.
)";

struct Options {
  std::optional<std::string> ppd;
  std::optional<std::string> table;
  bool allowEmpty = false;
  bool check = false;
};

// What somebody typed, or a file or a device is named, may hold anything.
void say(const std::string& what) {
  std::fprintf(stderr, "vorantis-device-snapshot: %s\n", Wording::visible(what).c_str());
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

constexpr std::array<option, 7> kOptions = {{{"ppd", required_argument, nullptr, 'p'},
                                             {"allow-empty", no_argument, nullptr, 'e'},
                                             {"from-table", required_argument, nullptr, 't'},
                                             {"check", no_argument, nullptr, 'c'},
                                             {"help", no_argument, nullptr, 'h'},
                                             {"version", no_argument, nullptr, 'V'},
                                             {nullptr, 0, nullptr, 0}}};

Options optionsFrom(int argc, char** argv) {
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
      case 't':
        options.table = optarg;
        break;
      case 'c':
        options.check = true;
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

int printed(const std::string& text) {
  if (print(text)) return 0;
  say("standard output cannot be written");
  return kFailure;
}

std::string contentOf(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  std::string content;
  std::array<char, 1 << 16> block;
  for (std::size_t size = 1; file != nullptr && size > 0;) {
    size = std::fread(block.data(), 1, block.size(), file.get());
    content.append(block.data(), size);
  }
  if (file == nullptr || std::ferror(file.get()) != 0) throw std::runtime_error("the table cannot be read: " + path);
  return content;
}

int capture(const Options& options, const std::string& uri, const std::optional<std::string>& modelName) {
  const auto captured = DeviceSnapshot::of(DeviceModelLibrary::defaultLibrary(), uri, modelName);
  for (const std::string& what : captured.leftOut) say("left out, since a snapshot cannot hold it: " + what);
  if (captured.missing && !options.allowEmpty) {
    say(*captured.missing + ": " + uri + ", " + modelName.value_or("no model name"));
    return kFailure;
  }
  return printed(captured.json);
}

int check(const std::string& snapshotPath, const std::string& PPDPath) {
  bool isGood = true;
  std::string lines;
  for (const SnapshotCheck::Findings& findings : SnapshotCheck::of(snapshotPath, PPDPath)) {
    isGood = isGood && findings.lines.empty();
    lines += Wording::visible(findings.deviceURI) + (findings.lines.empty() ? ": nothing odd\n" : ":\n");
    for (const std::string& line : findings.lines) lines += "  " + Wording::visible(line) + "\n";
  }
  return printed(lines) == 0 && isGood ? 0 : kFailure;
}

int run(int argc, char** argv) {
  const Options options = optionsFrom(argc, argv);
  const int count = argc - optind;
  char** const arguments = argv + optind;
  if (options.check) {
    if (count != 2 || options.ppd || options.table || options.allowEmpty) wrongUsage("a snapshot and a PPD are needed");
    return check(utf8(arguments[0]), utf8(arguments[1]));
  }
  if (count < 1 || count > (options.ppd ? 1 : 2))
    wrongUsage("a device URI is needed, and a model name or a PPD at most");
  const std::string uri = utf8(arguments[0]);
  const auto modelName = modelNameFrom(options, count, arguments);
  if (options.table) return printed(MediaTable::snapshotOf(contentOf(*options.table), uri, modelName));
  return capture(options, uri, modelName);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    say(error.what());
  } catch (...) {
    say("an exception of an unknown type");
  }
  return kFailure;
}
