// SPDX-License-Identifier: MIT
#include "explain/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* kHelp = "Usage: program [OPTION...] URI\n";

// A program with an option, a flag and arguments; what became of a call of it.
struct Called {
  explicit Called(const std::vector<const char*>& arguments, const std::string& help = kHelp) {
    CommandLine line("program", "1.2", help);
    line.app().add_option("-p,--ppd", ppd);
    line.app().add_flag("--check", check);
    line.app().add_option("--ignore", ignored)->allow_extra_args(false);
    line.app().add_option("arguments", rest);
    std::vector<const char*> all = {"program"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    status = line.parse(static_cast<int>(all.size()), all.data());
    output = testing::internal::GetCapturedStdout();
    errors = testing::internal::GetCapturedStderr();
  }

  std::optional<int> status;
  std::string output, errors, ppd;
  bool check = false;
  std::vector<std::string> ignored, rest;
};

std::string saidBy(const std::function<int()>& work, int expected) {
  const CommandLine line("program", "1.2");
  testing::internal::CaptureStderr();
  EXPECT_EQ(line.run(work), expected);
  return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(CommandLine, GivesOptionsAndArgumentsWhereverTheyStand) {
  for (const auto& arguments : std::vector<std::vector<const char*>>{{"--check", "--ppd=a b", "uri", "more"},
                                                                     {"uri", "--ppd", "a b", "more", "--check"},
                                                                     {"-pa b", "uri", "--check", "more"}}) {
    const Called called(arguments);
    EXPECT_EQ(called.status, std::nullopt);
    EXPECT_EQ(called.ppd, "a b");
    EXPECT_TRUE(called.check);
    EXPECT_EQ(called.rest, (std::vector<std::string>{"uri", "more"}));
    EXPECT_EQ(called.output + called.errors, "");
  }
}

TEST(CommandLine, WhatStandsBehindTwoDashesIsNoOption) {
  const Called called({"--", "--check", "--ppd="});
  EXPECT_EQ(called.status, std::nullopt);
  EXPECT_EQ(called.rest, (std::vector<std::string>{"--check", "--ppd="}));
}

TEST(CommandLine, TheLastOfAnOptionCountsAndEachValueOfAList) {
  const Called called({"--ppd=a", "--ppd=b", "--check", "--check", "--ignore=c", "--ignore", "d", "uri"});
  EXPECT_EQ(called.status, std::nullopt);
  EXPECT_EQ(called.ppd, "b");
  EXPECT_EQ(called.ignored, (std::vector<std::string>{"c", "d"}));
  EXPECT_EQ(called.rest, std::vector<std::string>{"uri"});
}

TEST(CommandLine, BytesThatAreNoUTF8AndEmptyArgumentsArrive) {
  EXPECT_EQ(Called({"\xFF", ""}).rest, (std::vector<std::string>{"\xFF", ""}));
}

TEST(CommandLine, ShowsHelpAndVersion) {
  for (const char* option : {"-h", "--help"}) {
    EXPECT_EQ(Called({option}).output, kHelp);
    EXPECT_EQ(Called({option}).status, 0);
  }
  for (const char* option : {"-V", "--version"}) {
    EXPECT_EQ(Called({option}).output, "program 1.2\n");
    EXPECT_EQ(Called({option}).status, 0);
  }
}

TEST(CommandLine, MakesHelpOfTheOptionsWhenItHasNone) {
  const Called called({"--help"}, "");
  EXPECT_EQ(called.status, 0);
  EXPECT_THAT(called.output, HasSubstr("--check"));
}

TEST(CommandLine, TellsOfWrongUsage) {
  for (const char* wrong : {"--what", "-w", "--ppd=", "--ppd", "--chec"}) {
    SCOPED_TRACE(wrong);
    const Called called({"uri", wrong});
    EXPECT_EQ(called.status, 2);
    EXPECT_THAT(called.errors, StartsWith("program: "));
    EXPECT_THAT(called.errors, HasSubstr("Try 'program --help'.\n"));
    EXPECT_EQ(called.output, "");
  }
}

TEST(CommandLine, AnOptionWithoutItsValueDoesNotTakeTheNextArgument) {
  const Called called({"--ppd=", "uri"});
  EXPECT_EQ(called.status, 2);
  EXPECT_THAT(called.errors, HasSubstr("--ppd="));
}

TEST(CommandLine, WhatWasTypedCannotReachTheTerminal) {
  EXPECT_THAT(Called({"--\x1b[2J"}).errors, HasSubstr("\\x1b[2J"));
}

TEST(CommandLine, GivesTheStatusOfTheWork) {
  EXPECT_EQ(saidBy([] { return 3; }, 3), "");
}

TEST(CommandLine, TellsWhatTheWorkThrew) {
  EXPECT_EQ(saidBy([]() -> int { throw std::runtime_error("the\nreason"); }, 1), "program: the\\nreason\n");
  EXPECT_EQ(saidBy([]() -> int { throw 1; }, 1), "program: an exception of an unknown type\n");
}
