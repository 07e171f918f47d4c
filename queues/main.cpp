// SPDX-License-Identifier: MIT
//
// vorantis-queues status|refresh|apply|explain: keeps queues that the driver program vorantis-autosetup made as their
// sources say. Exit status as monitoring plugins have it (Administration).

#include <cups/cups.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "explain/CommandLine.h"
#include "explain/Terminal.h"
#include "queues/Administration.h"
#include "queues/ApplyFile.h"
#include "scheduler/IPPScheduler.h"

namespace {

constexpr const char* kProgram = "vorantis-queues";
constexpr int kUnknown = 3;

struct Options {
  std::string server, file, queue;
  std::vector<std::string> queues, ofReport;
  bool all = false, others = false, json = false, metrics = false, dryRun = false, prune = false;
  int wait = 300, settle = 35;
};

// Of a process with rights that its caller has not, the caller does not choose the folder.
std::string folderFrom(const char* variable, const char* standard) {
  const char* path = secure_getenv(variable);
  return path == nullptr || *path == '\0' ? standard : path;
}

std::string folderOfSetups() {
  return folderFrom("VORANTIS_AUTOSETUP_FOLDER", AT_SETUP_FOLDER);
}

void print(const std::string& text) {
  if (!Terminal::print(text)) throw std::runtime_error("standard output cannot be written");
}

void showProgress(std::size_t number, std::size_t count, const std::string& queue) {
  if (count < 2 || isatty(STDERR_FILENO) == 0) return;
  std::fprintf(stderr, "\r\x1b[K[%zu/%zu] %s%s", number, count, queue.c_str(), number == count ? "\r\x1b[K" : "");
}

// The report's program beside this one, or wherever the shell finds it.
std::string explainingProgram() {
  constexpr const char* kName = "vorantis-autosetup-explain";
  std::array<char, PATH_MAX> path{};
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size() - 1);
  const std::string own(path.data(), size < 0 ? 0 : static_cast<std::size_t>(size));
  const std::string beside = own.substr(0, own.rfind('/') + 1) + kName;
  return access(beside.c_str(), X_OK) == 0 ? beside : kName;
}

class Program {
 public:
  Program() : line_(kProgram, AT_VERSION) {
    CLI::App& app = line_.app();
    app.description("Keeps queues that vorantis-autosetup made as their snapshots and base PPDs say.");
    app.set_help_flag("--help", "show this help");
    app.add_option("-h,--host", options_.server, "the scheduler, as HOST:PORT or the path of its socket");
    app.require_subcommand(1);
    app.fallthrough();
    addStatus(app);
    addRefresh(app);
    addApply(app);
    addExplain(app);
  }

  int run(int argc, const char* const* argv) {
    if (const auto status = line_.parse(argc, argv)) return *status == 0 ? 0 : kUnknown;
    const int status = line_.run([this] { return work(); });
    return failed_ ? kUnknown : status;
  }

 private:
  void addStatus(CLI::App& app) {
    CLI::App* status = app.add_subcommand("status", "tell which queues are not as their sources say");
    status->add_option("QUEUE", options_.queues, "these queues only");
    status->add_flag("--all-drivers", options_.others, "list queues of other drivers too");
    auto* json = status->add_flag("--json", options_.json, "as JSON");
    status->add_flag("--openmetrics", options_.metrics, "as OpenMetrics, for a textfile collector")->excludes(json);
    status->final_callback([this] { work_ = &Program::status; });
  }
  void addRefresh(CLI::App& app) {
    CLI::App* refresh = app.add_subcommand("refresh", "set queues up again whose sources changed");
    auto* queues = refresh->add_option("QUEUE", options_.queues, "these queues, also when they were edited by hand");
    refresh->add_flag("--all", options_.all, "all queues but those that were edited by hand")->excludes(queues);
    addChanging(*refresh);
    refresh->final_callback([this] { work_ = &Program::refresh; });
  }
  void addApply(CLI::App& app) {
    CLI::App* apply = app.add_subcommand("apply", "make the queues of a file so");
    apply->add_option("FILE", options_.file, "JSON (queues.schema.json)")->required();
    apply->add_flag("--prune", options_.prune, "remove queues that an earlier apply made and that are not in it");
    addChanging(*apply);
    apply->final_callback([this] { work_ = &Program::apply; });
  }
  void addExplain(CLI::App& app) {
    CLI::App* explain = app.add_subcommand("explain", "the report of the run that makes the queue's PPD");
    explain->add_option("QUEUE", options_.queue, "the queue; options of vorantis-autosetup-explain behind it")
        ->required();
    explain->allow_extras()->fallthrough(false);
    explain->final_callback([this, explain] {
      options_.ofReport = explain->remaining();
      work_ = &Program::explain;
    });
  }
  void addChanging(CLI::App& app) {
    app.add_flag("--dry-run", options_.dryRun, "say what would be done, and change nothing");
    app.add_option("--wait", options_.wait, "seconds that a job that is being printed is waited for")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    app.add_option("--settle", options_.settle,
                   "seconds after which the scheduler has written its state (cupsd.conf: "
                   "DirtyCleanInterval, and a few more)")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
  }

  int work() {
    if (!options_.server.empty()) cupsSetServer(options_.server.c_str());
    failed_ = true;  // unless it comes to its end
    const int status = (this->*work_)();
    failed_ = false;
    return status;
  }

  Administration administration() {
    return Administration(
        {scheduler_, folderOfSetups(), [this](const std::string& text) { line_.say(text); }, print, showProgress});
  }

  Refresh refreshing(const StateFolder& state) {
    Refresh::Settings settings;
    settings.longestJob = std::chrono::seconds(options_.wait);
    settings.settling = std::chrono::seconds(options_.settle);
    settings.sleep = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); };
    settings.say = [this](const std::string& text) { line_.say(text); };
    return {scheduler_, state, settings};
  }

  // A setup is made of files of this machine, so the queues must be here as well.
  void demandLocalScheduler() const {
    if (IPPScheduler::isLocal()) return;
    throw std::runtime_error(fmt::format("the scheduler {} is on another machine; call this there", cupsServer()));
  }

  int status() {
    demandLocalScheduler();
    const auto format = options_.json      ? StatusWriter::Format::JSON
                        : options_.metrics ? StatusWriter::Format::openMetrics
                                           : StatusWriter::Format::text;
    return administration().status(options_.queues, options_.others, format);
  }

  // Calls it with what changes queues, or null for a dry run, and with what previews.
  template <class Work>
  int changing(Work work) {
    demandLocalScheduler();
    StateFolder state(folderFrom("VORANTIS_AUTOSETUP_STATE", AT_STATE_FOLDER), options_.dryRun);
    if (!options_.dryRun) state.lock([this] { line_.say("another call is changing queues; waits for it"); });
    Refresh refresh = refreshing(state);
    return work(state, options_.dryRun ? nullptr : &refresh, refresh);
  }

  int refresh() {
    if (!options_.all && options_.queues.empty()) throw std::runtime_error("name queues, or call refresh --all");
    return changing([this](const StateFolder&, Refresh* refresh, Refresh& preview) {
      return administration().refresh(options_.queues, refresh, preview);
    });
  }

  int apply() {
    const auto wishes = ApplyFile::read(options_.file);
    return changing([&](const StateFolder& state, Refresh* refresh, Refresh& preview) {
      return administration().apply(wishes, options_.prune, state, refresh, preview);
    });
  }

  int explain() {
    demandLocalScheduler();
    const std::string& queue = options_.queue;
    const auto ppd = scheduler_.PPDOf(queue);
    const auto statement = SetupStatement::of(ppd.value_or(""));
    if (!statement) throw std::runtime_error(queue + ": no queue of the driver program vorantis-autosetup");
    const Setup setup = SetupFolder(folderOfSetups()).named(std::string(SetupStatement::kScheme) + statement->source);
    std::vector<std::string> arguments = {explainingProgram()};
    arguments.insert(arguments.end(), options_.ofReport.begin(), options_.ofReport.end());
    arguments.insert(arguments.end(), {setup.deviceURI, setup.PPDPath});
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    setenv("QZVORANTISMODEL_SNAPSHOT", setup.snapshotPath.c_str(), 1);
    execvp(pointers.front(), pointers.data());
    throw std::runtime_error("vorantis-autosetup-explain cannot be started");
  }

  CommandLine line_;
  Options options_;
  IPPScheduler scheduler_;
  int (Program::*work_)() = nullptr;
  bool failed_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  return Program().run(argc, argv);
}
