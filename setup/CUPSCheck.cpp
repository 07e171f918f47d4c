// SPDX-License-Identifier: MIT
#include "setup/CUPSCheck.h"

#include <cups/ppd.h>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "explain/judge/IsolatedCall.h"
#include "explain/watch/MemoryFile.h"
#include "setup/WrittenKinds.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"  // nothing else tells what the scheduler makes of a PPD

namespace {

using PPD = std::unique_ptr<ppd_file_t, void (*)(ppd_file_t*)>;
using Found = std::vector<std::string>;

constexpr const char* kGood = "+";  // in front of what the process gives back; empty results would look like a crash

PPD opened(const MemoryFile& file) {
  return {ppdOpenFile(file.path().c_str()), ppdClose};
}

const char* orEmpty(const char* text) {
  return text == nullptr ? "" : text;
}

// All that a caller of libcups acts on, but for what is written for media.
class Inventory {
 public:
  explicit Inventory(const ppd_file_t& ppd) {
    for (int index = 0; index < ppd.num_attrs; ++index) take(*ppd.attrs[index]);
    for (int index = 0; index < ppd.num_filters; ++index) take("cupsFilter", ppd.filters[index]);
    for (int index = 0; index < ppd.num_groups; ++index) take(ppd.groups[index]);
    for (int index = 0; index < ppd.num_consts; ++index) take(ppd.consts[index]);
    for (int index = 0; index < ppd.num_emulations; ++index) take("StartEmulator", ppd.emulations[index].start);
    take("JCLBegin", ppd.jcl_begin);
    take("JCLToPSInterpreter", ppd.jcl_ps);
    take("JCLEnd", ppd.jcl_end);
    take("JobPatchFile", ppd.patches);
    std::sort(found_.begin(), found_.end());
  }

  // What is in one of the two only, as often as it is there; the first of it.
  static std::string difference(const Inventory& one, const Inventory& other) {
    Found found;
    std::set_symmetric_difference(one.found_.begin(), one.found_.end(), other.found_.begin(), other.found_.end(),
                                  std::back_inserter(found));
    return found.empty() ? "" : found.front();
  }

 private:
  void take(const char* name, const char* value) { found_.push_back(fmt::format("*{}: {}", name, orEmpty(value))); }

  void take(const ppd_attr_t& attribute) {
    if (WrittenKinds::isWritten(attribute.name)) return;
    found_.push_back(
        fmt::format("*{} {}/{}: {}", attribute.name, attribute.spec, attribute.text, orEmpty(attribute.value)));
  }

  void take(const ppd_group_t& group) {
    for (int index = 0; index < group.num_options; ++index) take(group.options[index], group.name);
    for (int index = 0; index < group.num_subgroups; ++index) take(group.subgroups[index]);
  }

  void take(const ppd_option_t& option, const char* group) {
    found_.push_back(
        fmt::format("*OpenUI *{}/{} in {}, default {}", option.keyword, option.text, group, option.defchoice));
    for (int index = 0; index < option.num_choices; ++index) {
      const ppd_choice_t& choice = option.choices[index];
      if (WrittenKinds::isCustomChoice(option.keyword, choice.choice)) continue;
      found_.push_back(fmt::format("*{} {}/{}: {}", option.keyword, choice.choice, choice.text, orEmpty(choice.code)));
    }
  }

  void take(const ppd_const_t& constraint) {
    found_.push_back(fmt::format("*UIConstraints: {} {} {} {}", constraint.option1, constraint.choice1,
                                 constraint.option2, constraint.choice2));
  }

  Found found_;
};

std::string reasonOf() {
  int line = 0;
  const ppd_status_t status = ppdLastError(&line);
  return fmt::format("{} in line {}", ppdErrorString(status), line);
}

std::string differenceOf(const MemoryFile& base, const MemoryFile& result) {
  const PPD one = opened(base);
  const PPD other = opened(result);
  if (one == nullptr || other == nullptr) return reasonOf();
  return Inventory::difference(Inventory(*one), Inventory(*other));
}

// What `ask` gives in a process of its own; empty is nothing.
std::optional<std::string> isolated(const std::function<std::string()>& ask) {
  const auto answer = IsolatedCall::resultOf([&ask] { return kGood + ask(); });
  if (!answer || !answer->starts_with(kGood)) return "libcups crashed, or did not come to an end";
  return *answer == kGood ? std::nullopt : std::optional(answer->substr(1));
}

}  // namespace

std::optional<std::string> CUPSCheck::whyRefused(const std::string& ppd) {
  MemoryFile file;
  if (!file.isThere() || !file.append(ppd)) return "there is no memory to check it in";
  return isolated([&file] {
    ppdSetConformance(PPD_CONFORM_RELAXED);
    return opened(file) == nullptr ? reasonOf() : "";
  });
}

std::optional<std::string> CUPSCheck::foreignStatement(const std::string& base, const std::string& result) {
  MemoryFile baseFile;
  MemoryFile resultFile;
  const bool isThere = baseFile.isThere() && resultFile.isThere() && baseFile.append(base) && resultFile.append(result);
  if (!isThere) return "there is no memory to check it in";
  return isolated([&] { return differenceOf(baseFile, resultFile); });
}
