// SPDX-License-Identifier: MIT
//
// vorantis-autosetup list | cat NAME: a CUPS driver program (cups-driverd(8)). Lists what the folder of device
// snapshots and base PPDs can set up, and writes a base PPD, set up. Exit status 0; 1 when there is no such setup or it
// failed, with nothing on standard output; 2 for wrong usage.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "explain/report/Wording.h"
#include "setup/SetupFolder.h"
#include "setup/SetupStatement.h"
#include "setup/StrictSetup.h"

namespace {

constexpr int kFailure = 1;
constexpr int kUsageError = 2;

constexpr const char* kUsage = R"(Usage: vorantis-autosetup list
       vorantis-autosetup cat NAME

A driver program of CUPS, which calls it for lpinfo -m, lpadmin -m and its web
interface. It works from the folder )" AT_SETUP_FOLDER R"(:
device snapshots (*.json), and base PPDs (ppd/*.ppd, ppd/*.ppd.gz).

list prints a line for each device with a base PPD of its model; cat writes
the base PPD, set up with the device's media.

  -h, --help     show this help
  -V, --version  show the version
)";

// What a person reads of a line, or of a setup's name, in a log.
constexpr std::size_t kLongestText = 500;
constexpr std::size_t kLongestName = 120;

std::string cutTo(std::size_t size, const std::string& text) {
  const std::string shown = Wording::visible(text);
  return shown.size() <= size ? shown : Wording::cutTo(size, shown) + "...";
}

// One line in the form in which the scheduler logs it. `setup`: the name of the one that it is about, if any.
void say(const char* level, const std::string& what, std::string_view setup = "") {
  if (setup.starts_with(SetupStatement::kScheme)) setup.remove_prefix(SetupStatement::kScheme.size());
  const std::string about = setup.empty() ? "" : cutTo(kLongestName, std::string(setup)) + ": ";
  std::fprintf(stderr, "%s: vorantis-autosetup: %s%s\n", level, about.c_str(), cutTo(kLongestText, what).c_str());
}

bool print(const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

int printed(const std::string& text) {
  if (print(text)) return 0;
  say("ERROR", "standard output cannot be written");
  return kFailure;
}

SetupFolder folder() {
  // Of a process with rights that its caller has not, the caller does not choose the folder.
  const char* path = secure_getenv("VORANTIS_AUTOSETUP_FOLDER");
  return SetupFolder(path == nullptr || *path == '\0' ? AT_SETUP_FOLDER : path);
}

int list() {
  SetupFolder setups = folder();
  std::string lines;
  for (const Setup& setup : setups.all()) lines += setup.line();
  for (const std::string& warning : setups.warnings()) say("WARNING", warning);
  return printed(lines);
}

int cat(const char* name) {
  try {
    const StrictSetup::Result result = StrictSetup::run(folder().named(name));
    for (const std::string& warning : result.warnings) say("WARNING", warning, name);
    if (result.failure.empty()) return printed(result.ppd);
    say("ERROR", result.failure, name);
  } catch (const std::exception& error) {
    say("ERROR", error.what(), name);
  }
  return kFailure;
}

int run(int argc, const char* const* argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "list" && argc == 2) return list();
  if (command == "cat" && argc == 3) return cat(argv[2]);
  if ((command == "--help" || command == "-h") && argc == 2) return printed(kUsage);
  if ((command == "--version" || command == "-V") && argc == 2) return printed("vorantis-autosetup " AT_VERSION "\n");
  say("ERROR", "wrong usage; list, or cat and a name that list prints");
  return kUsageError;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    say("ERROR", error.what());
  } catch (...) {
    say("ERROR", "an exception of an unknown type");
  }
  return kFailure;
}
