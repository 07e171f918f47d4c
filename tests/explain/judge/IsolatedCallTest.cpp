// SPDX-License-Identifier: MIT
#include "explain/judge/IsolatedCall.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

using std::chrono::milliseconds;

TEST(IsolatedCall, GivesWhatTheFunctionGave) {
  EXPECT_EQ(IsolatedCall::resultOf([] { return std::string("a\0b", 3); }), std::string("a\0b", 3));
  EXPECT_EQ(IsolatedCall::resultOf([] { return std::string(); }), "");
  const std::string large(1000000, 'x');
  EXPECT_EQ(IsolatedCall::resultOf([&] { return large; }), large);
}

TEST(IsolatedCall, LeavesThisProcessAsItIs) {
  int changed = 1;
  const auto inside = IsolatedCall::resultOf([&] {
    changed = 2;
    setenv("AUTOSETUP_ISOLATED", "yes", 1);
    return std::to_string(getpid());
  });
  EXPECT_NE(inside, std::to_string(getpid()));
  EXPECT_EQ(changed, 1);
  EXPECT_EQ(std::getenv("AUTOSETUP_ISOLATED"), nullptr);
}

TEST(IsolatedCall, GivesNothingOfACallThatDoesNotReturn) {
  EXPECT_EQ(IsolatedCall::resultOf([]() -> std::string { std::abort(); }), std::nullopt);
  EXPECT_EQ(IsolatedCall::resultOf([]() -> std::string { _exit(0); }), "");
  EXPECT_EQ(IsolatedCall::resultOf([]() -> std::string { throw std::runtime_error("a reason"); }), std::nullopt);
}

TEST(IsolatedCall, EndsACallThatTakesTooLong) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(IsolatedCall::resultOf(
                []() -> std::string {
                  while (true) pause();
                },
                milliseconds(50)),
            std::nullopt);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(IsolatedCall::resultOf([] { return std::string("in time"); }, milliseconds(5000)), "in time");
}
