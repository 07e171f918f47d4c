// SPDX-License-Identifier: MIT
#include "explain/Terminal.h"

#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "explain/show/TextLayout.h"

namespace {

constexpr int kCommandNotFound = 127;  // the shell's status for it

bool isTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}

bool isDumb() {
  const char* terminal = std::getenv("TERM");
  return terminal == nullptr || std::string_view(terminal) == "dumb";
}

// The command of the pager; empty: none.
std::string pager() {
  if (!isTerminal() || isDumb()) return "";
  const char* command = std::getenv("PAGER");
  if (command == nullptr) return "less";
  return std::string_view(command) == "cat" ? "" : command;
}

bool writeTo(std::FILE* file, const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

// Whether the pager was there to show it.
bool page(const std::string& text, const std::string& command) {
  setenv("LESS", "FRX", 0);  // as git has it: no pager for a screenful, colours, the screen stays
  std::FILE* pipe = popen(command.c_str(), "w");
  const auto before = std::signal(SIGPIPE, SIG_IGN);  // here, not in the pager: its user may leave it early
  if (pipe != nullptr) writeTo(pipe, text);
  const int status = pipe == nullptr ? -1 : pclose(pipe);
  std::signal(SIGPIPE, before);
  return status != -1 && !(WIFEXITED(status) && WEXITSTATUS(status) == kCommandNotFound);
}

}  // namespace

bool Terminal::print(const std::string& text) {
  return writeTo(stdout, text);
}

bool Terminal::showsColours() {
  const char* noColour = std::getenv("NO_COLOR");
  const bool wanted = noColour == nullptr || *noColour == '\0';
  return wanted && isTerminal() && !isDumb();
}

std::size_t Terminal::width() {
  winsize size;
  const bool isKnown = isTerminal() && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : TextLayout::kUsual;
}

bool Terminal::show(const std::string& text) {
  const std::string command = pager();
  return (!command.empty() && page(text, command)) || print(text);
}
