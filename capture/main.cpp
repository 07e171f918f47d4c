// SPDX-License-Identifier: MIT
//
// vorantis-device-snapshot [OPTION...] DEVICE-URI [MODEL-NAME]: writes what the device-model library answers for a
// device, or what a table of media says, to standard output, as a snapshot that the stored library replays; with
// --check judges a snapshot. Exit status 0; 1 when the library fails or knows no such device, a file cannot be used, or
// something was found; 2 for wrong usage.

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/Text.h"
#include "capture/DeviceSnapshot.h"
#include "capture/MediaTable.h"
#include "capture/ModelNameOfPPD.h"
#include "capture/SnapshotCheck.h"
#include "explain/CommandLine.h"
#include "explain/Terminal.h"
#include "explain/report/WarningCode.h"
#include "explain/report/Wording.h"

namespace {

constexpr const char* kProgram = "vorantis-device-snapshot";

constexpr const char* kUsage = R"(Usage: vorantis-device-snapshot [OPTION...] DEVICE-URI [MODEL-NAME]
       vorantis-device-snapshot --check [--ignore=CODE...] SNAPSHOT PPD

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
      --ignore=CODE      with --check: leave warnings of this code out; may be
                         given several times
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
  std::vector<std::string> ignored;
  std::vector<std::string> arguments;
};

std::string whyNoCode(const std::string& code) {
  const auto& kinds = allWarningKinds();
  const bool isThere =
      std::any_of(kinds.begin(), kinds.end(), [&](const WarningKind& kind) { return kind.name == code; });
  return isThere ? std::string() : "there is no warning of this code: " + code;
}

std::string whyNotUTF8(const std::string& text) {
  return Text::isValidUTF8(text) ? "" : "the arguments must be UTF-8";
}

void addOptions(CLI::App& app, Options& options) {
  auto* ppd = app.add_option("--ppd", options.ppd)->check(whyNotUTF8);
  auto* allowEmpty = app.add_flag("--allow-empty", options.allowEmpty);
  auto* table = app.add_option("--from-table", options.table);
  auto* check = app.add_flag("--check", options.check)->excludes(ppd)->excludes(allowEmpty)->excludes(table);
  app.add_option("--ignore", options.ignored)->allow_extra_args(false)->needs(check)->check(whyNoCode);
  app.add_option("arguments", options.arguments)->check(whyNotUTF8);
}

// Why there are too few arguments, or too many; empty when their number is right.
std::string problemOfNumber(const Options& options) {
  const std::size_t count = options.arguments.size();
  if (options.check) return count == 2 ? "" : "a snapshot and a PPD are needed";
  const bool isRight = count >= 1 && count <= (options.ppd ? 1U : 2U);
  return isRight ? "" : "a device URI is needed, and a model name or a PPD at most";
}

std::optional<std::string> modelNameFrom(const Options& options) {
  if (options.ppd) return ModelNameOfPPD::at(*options.ppd);
  return options.arguments.size() > 1 ? std::optional(options.arguments[1]) : std::nullopt;
}

int printed(const CommandLine& line, const std::string& text) {
  if (Terminal::print(text)) return 0;
  line.say("standard output cannot be written");
  return CommandLine::kFailure;
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

int capture(const CommandLine& line, const Options& options) {
  const std::string& uri = options.arguments[0];
  const auto modelName = modelNameFrom(options);
  const auto captured = DeviceSnapshot::of(DeviceModelLibrary::defaultLibrary(), uri, modelName);
  for (const std::string& what : captured.leftOut) line.say("left out, since a snapshot cannot hold it: " + what);
  if (captured.missing && !options.allowEmpty) {
    line.say(*captured.missing + ": " + uri + ", " + modelName.value_or("no model name"));
    return CommandLine::kFailure;
  }
  return printed(line, captured.json);
}

int convert(const CommandLine& line, const Options& options) {
  const auto made = MediaTable::snapshotOf(contentOf(*options.table), options.arguments[0], modelNameFrom(options));
  for (const std::string& warning : made.warnings) line.say(warning);
  return printed(line, made.json);
}

int check(const CommandLine& line, const Options& options) {
  bool isGood = true;
  std::string lines;
  for (const auto& findings : SnapshotCheck::of(options.arguments[0], options.arguments[1], options.ignored)) {
    isGood = isGood && findings.lines.empty();
    lines += Wording::visible(findings.deviceURI) + (findings.lines.empty() ? ": nothing odd\n" : ":\n");
    for (const std::string& finding : findings.lines) lines += "  " + Wording::visible(finding) + "\n";
  }
  return printed(line, lines) == 0 && isGood ? 0 : CommandLine::kFailure;
}

int work(const CommandLine& line, const Options& options) {
  if (const std::string problem = problemOfNumber(options); !problem.empty()) return line.wrongUsage(problem);
  if (options.check) return check(line, options);
  return options.table ? convert(line, options) : capture(line, options);
}

}  // namespace

int main(int argc, char** argv) {
  CommandLine line(kProgram, AT_VERSION, kUsage);
  Options options;
  addOptions(line.app(), options);
  if (const auto status = line.parse(argc, argv)) return *status;
  return line.run([&] { return work(line, options); });
}
