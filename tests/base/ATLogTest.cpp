// SPDX-License-Identifier: MIT
#include "base/ATLog.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestLog.h"

namespace {

/// The log file is opened once a process, so each of these tests runs in a process of its own, as a death test that
/// starts the program anew.
class ATOpenLogFileTest : public testing::Test {
 protected:
  ATOpenLogFileTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  // Ends the process, which takes no object apart.
  [[noreturn]] void end(int status) {
    std::error_code ignored;
    std::filesystem::remove_all(folder_.path(), ignored);
    std::_Exit(status);
  }

  // Ends the process: with status 0 when the file has these contents.
  [[noreturn]] void endWithContents(const std::string& path, const std::string& expected) {
    const std::string contents = contentsOfFile(path);
    if (contents != expected) std::fprintf(stderr, "the file holds: %s\n", contents.c_str());
    end(contents == expected ? 0 : 1);
  }

  TemporaryFolder folder_;
};

}  // namespace

TEST_F(ATOpenLogFileTest, OpensAFileThatExistsAndEmptiesIt) {
  EXPECT_EXIT(
      {
        const std::string path = folder_.file("log", "old messages\n");
        ATOpenLogFile(path.c_str());
        endWithContents(path, "");
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ATOpenLogFileTest, MakesNoFile) {
  EXPECT_EXIT(
      {
        const std::string path = folder_.path("log");
        ATOpenLogFile(path.c_str());
        ATLogMessage("signature", "message");
        end(std::filesystem::exists(path) ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ATOpenLogFileTest, ReportsNoFailureAndTriesTheNextPath) {
  EXPECT_EXIT(
      {
        const std::string path = folder_.file("log", "");
        ATOpenLogFile(folder_.path().c_str());  // a folder can be written to, and not opened
        ATLogMessage("signature", "lost");
        ATOpenLogFile(path.c_str());
        ATLogMessage("signature", "message");
        endWithContents(path, "signature: message\n");
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ATOpenLogFileTest, FollowsNoLink) {
  EXPECT_EXIT(
      {
        const std::string target = folder_.file("target", "untouched");
        const std::string link = folder_.path("link");
        std::filesystem::create_symlink(target, link);
        ATOpenLogFile(link.c_str());
        ATLogMessage("signature", "message");
        endWithContents(target, "untouched");
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ATOpenLogFileTest, DoesNotWaitForTheReaderOfAPipe) {
  EXPECT_EXIT(
      {
        const std::string pipe = folder_.path("pipe");
        if (mkfifo(pipe.c_str(), 0600) != 0) end(2);
        alarm(10);
        ATOpenLogFile(pipe.c_str());
        const int reader = open(pipe.c_str(), O_RDWR | O_NONBLOCK);  // now it could be opened, and is no file
        const int next = dup(reader);
        close(next);
        ATOpenLogFile(pipe.c_str());
        ATLogMessage("signature", "message");
        if (dup(reader) != next) end(3);  // nothing was left open
        char byte;
        end(reader >= 0 && read(reader, &byte, 1) < 0 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ATOpenLogFileTest, KeepsTheFirstFile) {
  EXPECT_EXIT(
      {
        const std::string first = folder_.file("first", "");
        const std::string second = folder_.file("second", "untouched");
        ATOpenLogFile(first.c_str());
        ATLogMessage("signature", "one");
        ATOpenLogFile(second.c_str());
        ATOpenLogFile(first.c_str());
        ATLogMessage("signature", "two");
        if (contentsOfFile(second) != "untouched") end(2);
        endWithContents(first, "signature: one\nsignature: two\n");
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ATOpenLogFileTest, OpensTheFileAlsoWhenStandardInputIsClosed) {
  EXPECT_EXIT(
      {
        const std::string path = folder_.file("log", "");
        close(STDIN_FILENO);
        ATOpenLogFile(path.c_str());
        ATLogMessage("signature", "message");
        endWithContents(path, "signature: message\n");
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(ATOpenLogFileTest, WithoutAFileMessagesGoNowhere) {
  EXPECT_EXIT(
      {
        ATLogMessage("signature", "message");
        end(0);
      },
      testing::ExitedWithCode(0), "^$");
}

TEST(ATLog, MessageIsOneLineThatIsThereAtOnce) {
  const TestLog log;
  ATLogMessage("-[Class operation:]", "message");
  EXPECT_EQ(log.text(), "-[Class operation:]: message\n");
  ATLogMessage("s", "");
  EXPECT_EQ(log.text(), "-[Class operation:]: message\ns: \n");
}

TEST(ATLog, LineEndsAndBracesInAMessageStayAsTheyAre) {
  const TestLog log;
  ATLogMessage("s", "a\nb\r\n{} %@\n");
  EXPECT_EQ(log.text(), "s: a\nb\r\n{} %@\n\n");
}

TEST(ATLog, CallWritesInTheDiagnosticBuildOnly) {
  const TestLog log;
  ATLog("s", "{} and {}", 1, "two");
  log.expectLines({"s: 1 and two"});
}

TEST(ATLog, ArgumentsAreEvaluatedInTheDiagnosticBuildOnly) {
  int evaluated = 0;
  const TestLog log;
  ATLog("s", "{}", ++evaluated);
  EXPECT_EQ(evaluated, ATDiagnosticLog ? 1 : 0);
}

TEST(ATLog, AbsentTextPrintsAsNull) {
  EXPECT_EQ(fmt::format("{}", std::optional<std::string>()), "(null)");
  EXPECT_EQ(fmt::format("{}", std::optional<std::string>("a")), "a");
  EXPECT_EQ(fmt::format("{}", std::optional<std::string>("")), "");
}
