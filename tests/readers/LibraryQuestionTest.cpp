// SPDX-License-Identifier: MIT
#include "readers/LibraryQuestion.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>

#include "base/ATException.h"

using testing::ExitedWithCode;

namespace {

void print(const std::string& text) {
  std::fputs(text.c_str(), stdout);
}

// What a process writes to standard output in which this is done.
std::string printedIn(const std::function<void()>& deed) {
  testing::internal::CaptureStdout();
  deed();
  return testing::internal::GetCapturedStdout();
}

bool isOpen(int descriptor) {
  return fcntl(descriptor, F_GETFD) != -1;
}

std::set<int> openDescriptors() {
  std::set<int> open;
  for (int descriptor = 0; descriptor < 256; ++descriptor) {
    if (isOpen(descriptor)) open.insert(descriptor);
  }
  return open;
}

void closeAllButTheFirstThree() {
  for (int descriptor = STDERR_FILENO + 1; descriptor < 256; ++descriptor) close(descriptor);
}

}  // namespace

TEST(LibraryQuestion, WhatIsPrintedMeanwhileGoesNowhere) {
  EXPECT_EQ(printedIn([] {
              print("before ");
              {
                const LibraryQuestion question;
                print("meanwhile ");
                EXPECT_EQ(write(STDOUT_FILENO, "meanwhile ", 10), 10);
              }
              print("after");
            }),
            "before after");
}

TEST(LibraryQuestion, NestedQuestionsKeepItAwayUntilTheLastEnds) {
  EXPECT_EQ(printedIn([] {
              const LibraryQuestion outer;
              { const LibraryQuestion inner; }
              print("meanwhile");
            }),
            "");
}

TEST(LibraryQuestion, AnExceptionGivesStandardOutputBack) {
  EXPECT_EQ(printedIn([] {
              EXPECT_THROW(
                  {
                    const LibraryQuestion question;
                    print("meanwhile");
                    throw ATException::libraryFailure("the printer is on fire");
                  },
                  ATException);
              print("after");
            }),
            "after");
}

TEST(LibraryQuestion, KeepsOneDescriptorThatNoOtherProgramGets) {
  const std::set<int> before = openDescriptors();
  {
    const LibraryQuestion question;
    const std::set<int> meanwhile = openDescriptors();
    ASSERT_EQ(meanwhile.size(), before.size() + 1);
    for (const int descriptor : meanwhile) {
      EXPECT_TRUE(before.contains(descriptor) || fcntl(descriptor, F_GETFD) == FD_CLOEXEC) << descriptor;
    }
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST(LibraryQuestion, TakesNoNumberThatHasAMeaning) {
  EXPECT_EXIT(
      {
        close(STDIN_FILENO);
        close(STDERR_FILENO);
        const LibraryQuestion question;
        _exit(isOpen(STDIN_FILENO) || isOpen(STDERR_FILENO) ? 1 : 0);
      },
      ExitedWithCode(0), "");
}

TEST(LibraryQuestion, AStandardOutputThatIsClosedStaysClosed) {
  EXPECT_EXIT(
      {
        close(STDOUT_FILENO);
        {
          const LibraryQuestion question;
          if (!isOpen(STDOUT_FILENO)) _exit(1);
        }
        _exit(isOpen(STDOUT_FILENO) ? 2 : 0);
      },
      ExitedWithCode(0), "");
}

TEST(LibraryQuestion, AStandardOutputThatCannotBeGivenBackIsClosed) {
  EXPECT_EXIT(
      {
        {
          const LibraryQuestion question;
          closeAllButTheFirstThree();
        }
        _exit(isOpen(STDOUT_FILENO) ? 2 : 0);
      },
      ExitedWithCode(0), "");
}

TEST(LibraryQuestion, AnExitMeanwhileIsAFailure) {
  EXPECT_EXIT(
      {
        const LibraryQuestion question;
        std::exit(0);
      },
      ExitedWithCode(1), "");
}

TEST(LibraryQuestion, AnExitAfterwardsIsWhatItIs) {
  EXPECT_EXIT(
      {
        { const LibraryQuestion question; }
        std::exit(5);
      },
      ExitedWithCode(5), "");
}

TEST(LibraryQuestion, AnExitBetweenTheEndsOfNestedQuestionsIsAFailure) {
  EXPECT_EXIT(
      {
        const LibraryQuestion outer;
        { const LibraryQuestion inner; }
        std::exit(0);
      },
      ExitedWithCode(1), "");
}

TEST(LibraryQuestion, AChildOfTheLibraryExitsAsItLikes) {
  const LibraryQuestion question;
  const pid_t child = fork();
  if (child == 0) std::exit(7);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 7);
}
