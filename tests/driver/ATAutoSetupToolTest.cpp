// SPDX-License-Identifier: MIT
#include "driver/ATAutoSetupTool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "base/ATException.h"
#include "ppd/lines/ATPPDParser.h"
#include "readers/ATDeviceDataReader.h"
#include "tests/readers/FakeDeviceModelLibrary.h"
#include "tests/support/TestLog.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr const char* kPDL = "*QZPPDUpdaters: \"ATPDLCommandTypePPDUpdater\"\n";
constexpr const char* kMedia = "*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater\"\n";
constexpr const char* kURI = "socket://a";

std::string initLine(const std::string& message) {
  return "-[ATAutoSetupTool initWithArgc:argv:]: " + message;
}

std::string runLine(const std::string& message) {
  return "-[ATAutoSetupTool run]: " + message;
}

std::unique_ptr<ATAutoSetupTool> toolWith(std::vector<const char*> arguments) {
  const int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  return ATAutoSetupTool::initWithArgc(count, arguments.data());
}

// Keeps the pieces in which it is written.
class PieceOutput : public ATOutput {
 public:
  std::size_t write(std::string_view bytes) override {
    pieces.emplace_back(bytes);
    return bytes.size();
  }
  std::vector<std::string> pieces;
};

// Takes this many bytes in all, and counts the writes.
class ShortOutput : public ATOutput {
 public:
  explicit ShortOutput(std::size_t room) : room_(room) {}

  std::size_t write(std::string_view bytes) override {
    ++writes;
    if (failed_) ++writesAfterTheFailure;
    const std::size_t taken = std::min(room_, bytes.size());
    room_ -= taken;
    taken_ += bytes.substr(0, taken);
    failed_ = failed_ || taken < bytes.size();
    return taken;
  }
  const std::string& taken() const { return taken_; }

  int writes = 0;
  int writesAfterTheFailure = 0;

 private:
  std::size_t room_;
  std::string taken_;
  bool failed_ = false;
};

/// A run in this process, with a fake device-model library and the reader implementations of the start-up.
class ATAutoSetupToolTest : public testing::Test {
 protected:
  ATAutoSetupToolTest() : original_(ATDeviceDataReader::implementations()) { registerReaderImplementations(); }
  ~ATAutoSetupToolTest() override { ATDeviceDataReader::implementations() = original_; }

  std::string path(const std::string& contents) const { return folder_.file("input.ppd", contents); }

  // Runs the tool on a PPD with these contents.
  bool run(const std::string& contents, const char* uri = kURI, const char* printerID = nullptr) {
    const std::string file = path(contents);
    std::vector<const char*> arguments = {"tool", uri, file.c_str()};
    if (printerID != nullptr) arguments.push_back(printerID);
    const auto tool = toolWith(arguments);
    if (tool == nullptr) {
      ADD_FAILURE() << "no tool";
      return false;
    }
    return tool->run(output_);
  }

  TemporaryFolder folder_;
  FakeDeviceModelLibrary library_;
  ATMemoryOutput output_;

 private:
  ATDeviceDataReader::Implementations original_;
};

}  // namespace

TEST(ATAutoSetupToolArguments, TwoArgumentsAreURIAndPath) {
  const auto tool = toolWith({"tool", kURI, "/a.ppd"});
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(tool->printerURI(), kURI);
  EXPECT_EQ(tool->PPDPath(), "/a.ppd");
  EXPECT_EQ(tool->printerID(), std::nullopt);
  EXPECT_FALSE(tool->parseError().has_value());
  EXPECT_THAT(tool->PPD().strings(), IsEmpty());
}

TEST(ATAutoSetupToolArguments, ThirdArgumentIsThePrinterID) {
  const auto tool = toolWith({"tool", kURI, "/a.ppd", "printer-1"});
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(tool->printerID(), "printer-1");
  EXPECT_EQ(tool->printerURI(), kURI);
}

TEST(ATAutoSetupToolArguments, AnyOtherNumberIsRefused) {
  const TestLog log;
  const char* arguments[] = {"tool", kURI, "/a.ppd", "printer-1", "more", nullptr};
  for (const int count : {-1, 0, 1, 2, 5}) EXPECT_EQ(ATAutoSetupTool::initWithArgc(count, arguments), nullptr) << count;
  log.expectLines(std::vector<std::string>(5, initLine("AutoSetupTool was launched with incorrect arguments")));
}

TEST(ATAutoSetupToolArguments, EmptyStringsAreArguments) {
  const auto tool = toolWith({"tool", "", "", ""});
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(tool->printerURI(), "");
  EXPECT_EQ(tool->PPDPath(), "");
  EXPECT_EQ(tool->printerID(), "");
}

TEST(ATAutoSetupToolArguments, PathThatIsNotUTF8IsRefused) {
  const TestLog log;
  EXPECT_EQ(toolWith({"tool", kURI, "/\xFF", "printer-1"}), nullptr);
  log.expectLines({initLine("Launched Autosetup Tool (tool) for device: socket://a"), initLine("Processed PPD: (null)"),
                   initLine("Printer ID: printer-1"),
                   initLine("Invalid args (PPDPath: (null), printerURI: socket://a, printerID: printer-1)")});
}

TEST(ATAutoSetupToolArguments, URIThatIsNotUTF8NeedsAPrinterID) {
  const TestLog log;
  EXPECT_EQ(toolWith({"tool", "\xC0\xAF", "/a.ppd"}), nullptr);
  log.expectLines({initLine("Launched Autosetup Tool (tool) for device: (null)"), initLine("Processed PPD: /a.ppd"),
                   initLine("Invalid args (PPDPath: /a.ppd, printerURI: (null), printerID: (null))")});
  const auto tool = toolWith({"tool", "\xC0\xAF", "/a.ppd", "printer-1"});
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(tool->printerURI(), std::nullopt);
}

TEST(ATAutoSetupToolArguments, NeitherURINorIDAsUTF8IsRefused) {
  const TestLog log;
  EXPECT_EQ(toolWith({"tool", "\xFF", "/a.ppd", "\xED\xA0\x80"}), nullptr);
  log.expectLines({initLine("Launched Autosetup Tool (tool) for device: (null)"), initLine("Processed PPD: /a.ppd"),
                   initLine("Printer ID: (null)"),
                   initLine("Invalid args (PPDPath: /a.ppd, printerURI: (null), printerID: (null))")});
}

TEST(ATAutoSetupToolArguments, PrinterIDThatIsNotUTF8IsAbsent) {
  const auto tool = toolWith({"tool", kURI, "/a.ppd", "\xFF"});
  ASSERT_NE(tool, nullptr);
  EXPECT_EQ(tool->printerID(), std::nullopt);
}

TEST(ATAutoSetupToolArguments, MessagesShowTheToolsNameByteForByte) {
  const TestLog log;
  EXPECT_NE(toolWith({"/usr/\xFFtool", kURI, "/a.ppd", "printer-1"}), nullptr);
  log.expectLines({initLine("Launched Autosetup Tool (/usr/\xFFtool) for device: socket://a"),
                   initLine("Processed PPD: /a.ppd"), initLine("Printer ID: printer-1")});
}

TEST_F(ATAutoSetupToolTest, PPDThatNamesNoUpdatersIsWrittenUnchangedAndNothingIsAsked) {
  const std::string ppd = "*PPD-Adobe: \"4.3\"\r\n*% comment\r\n\r\n*ModelName: \"Z9\"\n*Last: x";
  EXPECT_TRUE(run(ppd));
  EXPECT_EQ(output_.bytes(), ppd);
  EXPECT_THAT(library_.calls, IsEmpty());
}

TEST_F(ATAutoSetupToolTest, NoReaderIsNeededWithoutUpdaters) {
  EXPECT_TRUE(run("*Foo: x\n", ""));
  EXPECT_TRUE(run("*Foo: x\n", kURI, ""));
}

TEST_F(ATAutoSetupToolTest, EmptyFileIsWrittenAsNothing) {
  EXPECT_TRUE(run(""));
  EXPECT_EQ(output_.bytes(), "");
}

TEST_F(ATAutoSetupToolTest, DeviceIsAskedByURIAndQuotedModelName) {
  EXPECT_TRUE(run(std::string(kMedia) + "*ModelName:   \"Vorantis Z9 44in\"  \n"));
  EXPECT_EQ(library_.calls.front(),
            "serviceInfoWithSpec kURIProp=socket://a kModelNameProp=\"Vorantis Z9 44in\" "
            "kVMSkipReachabilityCheckProp=true");
}

TEST_F(ATAutoSetupToolTest, FirstModelNameCountsWhateverItsSpec) {
  EXPECT_TRUE(run(std::string(kMedia) + "*ModelName spec: \"one\"\n*ModelName: \"two\"\n"));
  EXPECT_THAT(library_.calls.front(), HasSubstr("kModelNameProp=\"one\" "));
}

TEST_F(ATAutoSetupToolTest, RunGoesOnWithoutAModelName) {
  EXPECT_TRUE(run(kMedia));
  EXPECT_EQ(library_.calls.front(), "serviceInfoWithSpec kURIProp=socket://a kVMSkipReachabilityCheckProp=true");
}

TEST_F(ATAutoSetupToolTest, ModelNameInsideAGroupIsNotSeen) {
  EXPECT_TRUE(run(std::string(kMedia) + "*OpenGroup: A\n*ModelName: \"Z9\"\n*CloseGroup: A\n"));
  EXPECT_EQ(library_.calls.front(), "serviceInfoWithSpec kURIProp=socket://a kVMSkipReachabilityCheckProp=true");
}

TEST_F(ATAutoSetupToolTest, PrinterIDTakesTheURIsPlace) {
  EXPECT_TRUE(run(kPDL, kURI, "printer-1"));
  EXPECT_EQ(library_.calls.front(), "serviceInfoWithSpec kURIProp=printer-1 kVMSkipReachabilityCheckProp=true");
}

TEST_F(ATAutoSetupToolTest, PrinterIDHasNoMedia) {
  EXPECT_TRUE(run(kMedia, kURI, "printer-1"));
  EXPECT_EQ(output_.bytes(), kMedia);
  EXPECT_THAT(library_.calls, IsEmpty());
}

TEST_F(ATAutoSetupToolTest, PrinterIDThatIsNotUTF8LeavesTheDeviceReader) {
  EXPECT_TRUE(run(kPDL, kURI, "\xFF"));
  EXPECT_THAT(library_.calls.front(), HasSubstr("kURIProp=socket://a"));
}

TEST_F(ATAutoSetupToolTest, TheLogSaysWhyThePPDWasRefused) {
  const TestLog log;
  EXPECT_FALSE(run("*PPD-Adobe: \"4.3\"\n*End\n*End\n"));
  EXPECT_EQ(log.messages("-[ATAutoSetupTool run]"),
            logged({"Failed to parse PPD file: PPDParserErrorDomain code 6 (Line Number: 3)"}));
}

TEST_F(ATAutoSetupToolTest, EmptyURIFailsTheFirstUpdater) {
  const std::string file = path(kPDL);
  const auto tool = toolWith({"tool", "", file.c_str()});
  const TestLog log;
  EXPECT_FALSE(tool->run(output_));
  EXPECT_EQ(output_.bytes(), "");
  EXPECT_THAT(library_.calls, IsEmpty());
  log.expectLines({runLine("ERROR: Updater(s) cannot update PPD file.")});
}

TEST_F(ATAutoSetupToolTest, EmptyPrinterIDFailsTheFirstUpdaterAlthoughThereIsAURI) {
  EXPECT_FALSE(run(kPDL, kURI, ""));
  EXPECT_EQ(output_.bytes(), "");
  EXPECT_THAT(library_.calls, IsEmpty());
}

TEST_F(ATAutoSetupToolTest, UpdatersEditWhatIsWritten) {
  library_.familyName = "CID:QZVR2PCLS;";
  EXPECT_TRUE(run(std::string(kPDL) + "*% the end\n"));
  EXPECT_THAT(output_.bytes(), StartsWith(std::string(kPDL) + "*QZVorantisFamily: \"VR-K-410\"\n"));
  EXPECT_THAT(output_.bytes(), testing::EndsWith("*End\n*% the end\n"));
}

TEST_F(ATAutoSetupToolTest, EveryUpdaterRunsOnceInOrder) {
  EXPECT_TRUE(run("*QZPPDUpdaters: \"ATMediaTypePSPPDUpdater ATPDLCommandTypePPDUpdater ATMediaTypePSPPDUpdater\"\n"));
  std::vector<std::string> asked;
  for (const std::string& call : library_.calls) {
    if (call == "deviceFamilyName" || call == "representedObject") asked.push_back(call);
  }
  EXPECT_THAT(asked, ElementsAre("representedObject", "deviceFamilyName", "representedObject"));
}

TEST_F(ATAutoSetupToolTest, SecondOfThreeUpdatersThatFailsKeepsTheThirdFromRunningAndNothingIsWritten) {
  library_.failsAt = "itemForKey";
  EXPECT_THROW(
      run("*QZPPDUpdaters: \"ATPDLCommandTypePPDUpdater ATMediaTypePSPPDUpdater ATPDLCommandTypePPDUpdater\"\n"),
      ATException);
  EXPECT_EQ(std::count(library_.calls.begin(), library_.calls.end(), "deviceFamilyName"), 1);
  EXPECT_EQ(output_.bytes(), "");
}

TEST_F(ATAutoSetupToolTest, AbsentLibraryLeavesThePPDToTheMediaUpdaterAsItIs) {
  library_.available = false;
  const std::string ppd = std::string(kMedia) + "*QZMediaListVersion: 17\n";
  EXPECT_TRUE(run(ppd));
  EXPECT_EQ(output_.bytes(), ppd);
}

TEST_F(ATAutoSetupToolTest, MissingFileFailsWithItsError) {
  const std::string file = folder_.path("missing.ppd");
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  const TestLog log;
  EXPECT_FALSE(tool->run(output_));
  EXPECT_EQ(output_.bytes(), "");
  ASSERT_TRUE(tool->parseError().has_value());
  EXPECT_EQ(tool->parseError()->code, PPDParserErrorFileNotFound);
  EXPECT_FALSE(tool->parseError()->lineNumber.has_value());
  if constexpr (ATDiagnosticLog) {
    EXPECT_THAT(log.text(), HasSubstr(runLine("Failed to parse PPD file: ")));
    EXPECT_THAT(log.text(), HasSubstr("PPDParserErrorDomain"));
  }
}

TEST_F(ATAutoSetupToolTest, EmptyPathIsAFileThatDoesNotExist) {
  const auto tool = toolWith({"tool", kURI, ""});
  EXPECT_FALSE(tool->run(output_));
  ASSERT_TRUE(tool->parseError().has_value());
  EXPECT_EQ(tool->parseError()->code, PPDParserErrorFileNotFound);
}

TEST_F(ATAutoSetupToolTest, MalformedLineFailsAndNothingIsWrittenOrAsked) {
  const std::string file = path(std::string(kPDL) + "*End\n*End\n");
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  EXPECT_FALSE(tool->run(output_));
  EXPECT_EQ(output_.bytes(), "");
  EXPECT_THAT(library_.calls, IsEmpty());
  ASSERT_TRUE(tool->parseError().has_value());
  EXPECT_EQ(tool->parseError()->code, PPDParserErrorUnexpectedEnd);
  EXPECT_EQ(tool->parseError()->lineNumber, 3);
}

TEST_F(ATAutoSetupToolTest, LineThatIsNotUTF8EndsThePPDWithSuccess) {
  EXPECT_TRUE(run("*Foo: x\n*Bar: \"\xFF\"\n*Baz: y\n"));
  EXPECT_EQ(output_.bytes(), "*Foo: x\n");
}

TEST_F(ATAutoSetupToolTest, ShortWriteFailsAtOnceAndKeepsWhatWasWritten) {
  const std::string file = path("*A: 1\n*B: 2\n*C: 3\n*D: 4\n");
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  ShortOutput output(8);
  const TestLog log;
  EXPECT_FALSE(tool->run(output));
  EXPECT_EQ(output.taken(), "*A: 1\n*B");
  EXPECT_EQ(output.writesAfterTheFailure, 0);
  log.expectLines({runLine("Stdout writing error.")});
}

TEST_F(ATAutoSetupToolTest, ShortWriteOfALineThatAnUpdaterMadeFailsToo) {
  const std::string file = path(std::string(kPDL) + "*% the end\n");
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  const std::string made = "*QZVorantisFamily: \"VR-K-Q\"\n";
  const std::string before = kPDL;
  ShortOutput output(before.size() + made.size() - 1);
  EXPECT_FALSE(tool->run(output));
  EXPECT_EQ(output.taken(), before + made.substr(0, made.size() - 1));
  EXPECT_EQ(output.writesAfterTheFailure, 0);
}

TEST_F(ATAutoSetupToolTest, OutputWithoutRoomGetsNothingMoreAfterTheFirstFailure) {
  const std::string file = path("*A: 1\n*B: 2\n");
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  ShortOutput output(0);
  EXPECT_FALSE(tool->run(output));
  EXPECT_EQ(output.taken(), "");
  EXPECT_EQ(output.writesAfterTheFailure, 0);
}

TEST_F(ATAutoSetupToolTest, LinesThatWereReadOneBehindAnotherAreWrittenTogether) {
  const std::string file = path(std::string("*A: 1\n*B: \"\n\"\n*End\n") + kPDL + "*% the end\n");
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  PieceOutput output;
  EXPECT_TRUE(tool->run(output));
  ASSERT_THAT(output.pieces, testing::Not(IsEmpty()));
  EXPECT_EQ(output.pieces.front(), std::string("*A: 1\n*B: \"\n\"\n*End\n") + kPDL);
  EXPECT_EQ(output.pieces.back(), "*% the end\n");
  EXPECT_GT(output.pieces.size(), 2U) << "a line that an updater made is a piece of its own";
}

TEST_F(ATAutoSetupToolTest, LinesOfTwoBlocksAreTwoPieces) {
  std::string contents;
  while (contents.size() < 100'000) contents += "*A: 1\n";
  const std::string file = path(contents);
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  PieceOutput output;
  EXPECT_TRUE(tool->run(output));
  ASSERT_EQ(output.pieces.size(), 2U);
  EXPECT_EQ(output.pieces[0] + output.pieces[1], contents);
}

TEST_F(ATAutoSetupToolTest, SuccessLogsNothingOfItsOwn) {
  const std::string file = path("*A: 1\n");
  const auto tool = toolWith({"tool", kURI, file.c_str()});
  const TestLog log;
  EXPECT_TRUE(tool->run(output_));
  EXPECT_EQ(log.text().find("-[ATAutoSetupTool"), std::string::npos);
}

TEST_F(ATAutoSetupToolTest, RecognizedLinesGoToTheDocument) {
  const auto tool = toolWith({"tool", kURI, "/a.ppd"});
  ATPPDParser parser;
  parser.setDelegate(tool.get());
  EXPECT_TRUE(parser.recognizeString(StatementString("*A: 1\n")));
  EXPECT_NE(tool->PPD().attributeForName("A"), nullptr);
  ASSERT_EQ(tool->PPD().strings().size(), 1U);
}

TEST_F(ATAutoSetupToolTest, LaterParseErrorReplacesTheEarlier) {
  const auto tool = toolWith({"tool", kURI, "/a.ppd"});
  ATPPDParser parser;
  tool->didFailWithError(parser, {PPDParserErrorFileNotFound, std::nullopt});
  tool->didFailWithError(parser, {PPDParserErrorUnexpectedEnd, 5});
  ASSERT_TRUE(tool->parseError().has_value());
  EXPECT_EQ(tool->parseError()->code, PPDParserErrorUnexpectedEnd);
  tool->setParseError(std::nullopt);
  EXPECT_FALSE(tool->parseError().has_value());
}
