// SPDX-License-Identifier: MIT
//
// VorantisAutosetupTool DEVICE-URI PPD-PATH [PRINTER-ID]: writes the PPD, set up for the device, to standard output.
// Exit status 0, or 1 when the printing system is to keep its own PPD.

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "base/ATException.h"
#include "base/ATLog.h"
#include "driver/ATAutoSetupTool.h"
#include "readers/ATDeviceDataReader.h"

namespace {

void logException([[maybe_unused]] const ATException& exception) {
  ATLog("int main(int, const char **)", "Exception caught in autosetup, name: {}, reason: {}, info: {}",
        exception.name(), exception.reason(), exception.userInfo());
}

bool runTool(int argc, const char** argv) {
  try {
    if constexpr (ATDiagnosticLog) ATOpenLogFile();
    registerReaderImplementations();
    ATStreamOutput output(stdout);
    // The process ends right after the run: taking the document apart object by object would only cost time.
    static ATAutoSetupTool* const tool = ATAutoSetupTool::initWithArgc(argc, argv).release();
    return tool != nullptr && tool->run(output);
  } catch (const ATException& exception) {
    logException(exception);
  } catch (const std::exception& exception) {
    logException(ATException("std::exception", exception.what()));
  } catch (...) {
    logException(ATException("unknown", "an exception of an unknown type"));
  }
  return false;
}

// Ends the process. Every library that libcups brings along would take its data apart now, which costs a run a
// thirtieth of its time and is of no use to anybody; sanitizers and coverage, though, report from there.
[[noreturn]] void end(int status) {
#ifdef AT_EXIT_HANDLERS
  std::exit(status);
#else
  std::_Exit(status);
#endif
}

void logWritingError() {
  ATLog("-[ATAutoSetupTool run]", "Stdout writing error.");
}

// Whether there is a standard output. Without one its number would go to the next file that anyone opens, and the PPD
// into that file; so it goes to a folder, into which nobody writes bytes.
bool hasStandardOutput() {
  if (fcntl(STDOUT_FILENO, F_GETFD) != -1) return true;
  const int folder = open("/", O_RDONLY | O_CLOEXEC);
  if (folder != STDOUT_FILENO) {  // standard input is closed as well
    dup2(folder, STDOUT_FILENO);
    close(folder);
  }
  return false;
}

}  // namespace

int main(int argc, const char** argv) {
  const bool hasOutput = hasStandardOutput();
  std::signal(SIGXFSZ, SIG_IGN);  // a limit on the size of files is a failed write like any other
  const bool succeeded = runTool(argc, argv);
  // The last flush is the moment at which a full disk or a closed pipe shows.
  const bool flushed = std::fclose(stdout) == 0 && hasOutput;
  if (succeeded && !flushed) logWritingError();
  end(succeeded && flushed ? 0 : 1);
}
