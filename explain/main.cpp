// SPDX-License-Identifier: MIT
//
// vorantis-autosetup-explain [OPTION...] DEVICE-URI PPD [PRINTER-ID]: does a run of VorantisAutosetupTool and reports
// it. Exit status as the tool's, 0 or 1; 2 for wrong usage, or a file that cannot be written; 3 with
// --strict when there are warnings.

#include <getopt.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>

#include "base/Text.h"
#include "explain/ExplainedRun.h"
#include "explain/OutputFile.h"
#include "explain/Terminal.h"
#include "explain/report/MediumFilter.h"
#include "explain/report/Wording.h"
#include "explain/show/ReportWriters.h"

namespace {

constexpr int kUsageError = 2;

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

enum class Format { text, json, html };
constexpr int kStrictError = 3;
// Options without a short form.
enum LongOption { kFull = 256, kStrict, kSummary, kWarnings };

struct Options {
  Format format = Format::text;
  std::optional<std::string> output;
  ReportWriters::Detail detail = ReportWriters::Detail::usual;
  std::optional<std::string> medium;
  bool strict = false;
};

// What somebody typed, or a file is named, may hold anything.
void say(const std::string& what) {
  std::fprintf(stderr, "vorantis-autosetup-explain: %s\n", Wording::visible(what).c_str());
}

[[noreturn]] void wrongUsage(const std::string& what) {
  say(what);
  std::fputs("Try 'vorantis-autosetup-explain --help'.\n", stderr);
  std::exit(kUsageError);
}

[[noreturn]] void printAndExit(const char* text) {
  const bool printed = std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0;
  std::exit(printed ? 0 : kUsageError);
}

Format formatNamed(const std::string& name) {
  if (name == "text") return Format::text;
  if (name == "json") return Format::json;
  if (name == "html") return Format::html;
  wrongUsage("no such format: " + name);
}

ReportWriters::Detail detailOf(int longOption) {
  if (longOption == kSummary) return ReportWriters::Detail::summary;
  return longOption == kWarnings ? ReportWriters::Detail::warnings : ReportWriters::Detail::full;
}

constexpr std::array<option, 10> kOptions = {{{"format", required_argument, nullptr, 'f'},
                                              {"output", required_argument, nullptr, 'o'},
                                              {"full", no_argument, nullptr, kFull},
                                              {"summary", no_argument, nullptr, kSummary},
                                              {"warnings", no_argument, nullptr, kWarnings},
                                              {"medium", required_argument, nullptr, 'm'},
                                              {"strict", no_argument, nullptr, kStrict},
                                              {"help", no_argument, nullptr, 'h'},
                                              {"version", no_argument, nullptr, 'V'},
                                              {nullptr, 0, nullptr, 0}}};

Options optionsFrom(int argc, char** argv) {
  Options options;
  opterr = 0;
  for (int found; (found = getopt_long(argc, argv, "+f:o:m:hV", kOptions.data(), nullptr)) != -1;) {
    switch (found) {
      case 'f':
        options.format = formatNamed(optarg);
        break;
      case 'o':
        options.output = optarg;
        break;
      case 'm':
        options.medium = optarg;
        break;
      case kFull:
      case kSummary:
      case kWarnings:
        options.detail = detailOf(found);
        break;
      case kStrict:
        options.strict = true;
        break;
      case 'h':
        printAndExit(kUsage);
      case 'V':
        printAndExit("vorantis-autosetup-explain " AT_VERSION "\n");
      default:
        wrongUsage("no such option, or an argument is missing: " +
                   (optopt > 0 && optopt < kFull ? std::string("-") + static_cast<char>(optopt) : argv[optind - 1]));
    }
  }
  return options;
}

std::string reportFor(const Report& report, const Options& options) {
  const bool full = options.detail == ReportWriters::Detail::full;
  switch (options.format) {
    case Format::json:
      return ReportWriters::json(report, full);
    case Format::html:
      return ReportWriters::html(report, full);
    default:
      return ReportWriters::text(report, {Terminal::showsColours(), Terminal::width(), options.detail});
  }
}

// Whether only a medium is wanted, and known: that must not hide why a run failed, or its device is not known.
bool isOnMedium(const Report& report, const Options& options) {
  return options.medium && report.succeeded() && report.device && report.device->media && report.device->itemFound;
}

// Whether the report was written.
bool print(const Report& report, const Options& options) {
  const std::string text = reportFor(report, options);
  return options.format == Format::text ? Terminal::show(text) : Terminal::print(text);
}

int explain(int argc, char** argv) {
  const Options options = optionsFrom(argc, argv);
  const int count = argc - optind;
  if (count < 2 || count > 3) wrongUsage("a device URI and a PPD are needed, and a printer ID at most");
  const char* const* const arguments = argv + optind;
  const ExplainedRun run = ExplainedRun::of({Text::fromUTF8(arguments[0]), Text::fromUTF8(arguments[1]),
                                             count > 2 ? Text::fromUTF8(arguments[2]) : std::nullopt});

  const bool isFiltered = isOnMedium(run.report, options);
  const auto onMedium = isFiltered ? reportOnMedium(run.report, *options.medium) : std::nullopt;
  if (isFiltered && !onMedium) {
    say("the device has no medium of this name or ID: " + *options.medium);
    return kUsageError;
  }
  if (!print(onMedium ? *onMedium : run.report, options)) {
    say("the report cannot be written");
    return kUsageError;
  }
  if (options.output && run.report.succeeded() && !OutputFile::write(*options.output, run.result)) {
    say("cannot write " + *options.output);
    return kUsageError;
  }
  if (!run.report.succeeded()) return 1;
  return options.strict && !run.report.warnings.empty() ? kStrictError : 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return explain(argc, argv);
  } catch (const std::exception& error) {
    say(error.what());
  } catch (...) {
    say("an exception of an unknown type");
  }
  return 1;
}
