// SPDX-License-Identifier: MIT
//
// vorantis-autosetup-explain [OPTION...] DEVICE-URI PPD [PRINTER-ID]: does a run of VorantisAutosetupTool and reports
// it. Exit status as the tool's, 0 or 1; 2 for wrong usage, or a file that cannot be written; 3 with
// --strict when there are warnings.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "base/Text.h"
#include "explain/CommandLine.h"
#include "explain/ExplainedRun.h"
#include "explain/OutputFile.h"
#include "explain/Terminal.h"
#include "explain/judge/NearMisses.h"
#include "explain/report/MediumFilter.h"
#include "explain/report/Wording.h"
#include "explain/show/ReportWriters.h"

namespace {

constexpr int kStrictError = 3;
constexpr std::size_t kNamedMedia = 5;
constexpr int kMostArguments = 3;

constexpr const char* kUsage = R"(Usage: vorantis-autosetup-explain [OPTION...] DEVICE-URI PPD [PRINTER-ID]

Does the run that VorantisAutosetupTool does with these arguments, and reports
what it does and why, instead of writing the PPD.

  -f, --format=FORMAT  text (the default), json or html
  -o, --output=FILE    also write the PPD, to FILE
      --summary        only the first lines, and one for each kind of warning
      --warnings       only the first lines and every warning
      --full           everything, where otherwise long lists end with a count
  -m, --medium=NAME-OR-ID
                       only what is about this medium
      --strict         exit with 3 when there are warnings
  -h, --help           show this help
  -V, --version        show the version

Exit status: 0 or 1 as the tool's, 2 for wrong usage or a file that cannot be
written, 3 see --strict.
Environment: NO_COLOR, PAGER, and that of the device-model library.
)";

struct Options {
  std::vector<std::string> arguments;
  std::string format = "text";
  std::optional<std::string> output, medium;
  ReportWriters::Detail detail = ReportWriters::Detail::usual;
  bool strict = false;
};

void bind(CLI::App& app, Options& options) {
  using ReportWriters::Detail;
  app.add_option("arguments", options.arguments)->expected(0, kMostArguments + 1);
  app.add_option("-f,--format", options.format)->check([](const std::string& name) -> std::string {
    const bool isKnown = name == "text" || name == "json" || name == "html";
    return isKnown ? "" : "no such format: " + name + "; there are text, json and html";
  });
  app.add_option("-o,--output", options.output);
  app.add_option("-m,--medium", options.medium);
  app.add_flag("--strict", options.strict);
  const auto add = [&](const char* name, Detail detail) {
    app.add_flag_callback(name, [&options, detail] { options.detail = detail; });
  };
  add("--summary", Detail::summary);
  add("--warnings", Detail::warnings);
  add("--full", Detail::full);
}

std::string reportFor(const Report& report, const Options& options) {
  const bool full = options.detail == ReportWriters::Detail::full;
  if (options.format == "json") return ReportWriters::json(report, full);
  if (options.format == "html") return ReportWriters::html(report, full);
  return ReportWriters::text(report, {Terminal::showsColours(), Terminal::width(), options.detail});
}

// Whether only a medium is wanted, and known: that must not hide why a run failed, or its device is not known.
bool isOnMedium(const Report& report, const Options& options) {
  return options.medium && report.succeeded() && report.device && report.device->media && report.device->itemFound;
}

// The one that was probably meant, or the first ones.
std::string mediaThatThereAre(const std::vector<Report::Medium>& media, const std::string& wanted) {
  std::vector<std::string> names;
  names.reserve(media.size());
  for (const Report::Medium& medium : media) names.push_back(medium.name.value_or(""));
  if (const auto near = NearMisses::nearest(wanted, names)) return "nearly: " + Wording::of(media[near->index]);
  std::string text;
  for (std::size_t index = 0; index < std::min(media.size(), kNamedMedia); ++index) {
    text += (index == 0 ? "there are: " : ", ") + Wording::of(media[index]);
  }
  if (media.size() > kNamedMedia) text += " and " + std::to_string(media.size() - kNamedMedia) + " more";
  return media.empty() ? "it has none" : text;
}

// Whether the report was written.
bool print(const Report& report, const Options& options) {
  const std::string text = reportFor(report, options);
  return options.format == "text" ? Terminal::show(text) : Terminal::print(text);
}

int explain(const CommandLine& line, const Options& options) {
  const auto& arguments = options.arguments;
  const ExplainedRun run = ExplainedRun::of({Text::fromUTF8(arguments[0]), Text::fromUTF8(arguments[1]),
                                             arguments.size() > 2 ? Text::fromUTF8(arguments[2]) : std::nullopt});
  const bool isFiltered = isOnMedium(run.report, options);
  const auto onMedium = isFiltered ? reportOnMedium(run.report, *options.medium) : std::nullopt;
  if (isFiltered && !onMedium) {
    line.say("the device has no medium of this name or ID: " + *options.medium + "; " +
             mediaThatThereAre(*run.report.device->media, *options.medium));
    return CommandLine::kUsageError;
  }
  if (!print(onMedium ? *onMedium : run.report, options)) {
    line.say("the report cannot be written");
    return CommandLine::kUsageError;
  }
  if (options.output && run.report.succeeded() && !OutputFile::write(*options.output, run.result)) {
    line.say("cannot write " + *options.output);
    return CommandLine::kUsageError;
  }
  if (!run.report.succeeded()) return CommandLine::kFailure;
  return options.strict && !run.report.warnings.empty() ? kStrictError : 0;
}

}  // namespace

int main(int argc, char** argv) {
  CommandLine line("vorantis-autosetup-explain", AT_VERSION, kUsage);
  Options options;
  bind(line.app(), options);
  if (const auto status = line.parse(argc, argv)) return *status;
  if (options.arguments.size() < 2 || options.arguments.size() > kMostArguments) {
    return line.wrongUsage("a device URI and a PPD are needed, and a printer ID at most");
  }
  return line.run([&] { return explain(line, options); });
}
