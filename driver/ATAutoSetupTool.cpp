// SPDX-License-Identifier: MIT
#include "driver/ATAutoSetupTool.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "driver/ATLog.h"
#include "ppd/ATPPDParser.h"
#include "readers/ATDeviceDataReader.h"
#include "readers/ATPPDDataReader.h"

namespace {

constexpr const char* kRunSignature = "-[ATAutoSetupTool run]";

// Writes line after line; after the first write that fails, nothing more is written. Lines that lie behind one another
// in memory, as unchanged ones do, are written together.
class OutputSink : public IStatementSink {
 public:
  explicit OutputSink(ATOutput& output) : output_(output) {}
  void take(const StatementString& string) override {
    const std::string_view text = string;
    if (text.data() == waiting_.data() + waiting_.size()) {
      waiting_ = {waiting_.data(), waiting_.size() + text.size()};
    } else {
      writeWaiting();
      waiting_ = text;
    }
  }
  bool takesRuns() const override { return true; }
  /// Writes what is left; whether everything was written.
  bool finish() {
    writeWaiting();
    return succeeded_;
  }

 private:
  void writeWaiting() {
    if (succeeded_ && !waiting_.empty()) succeeded_ = output_.write(waiting_) == waiting_.size();
  }

  ATOutput& output_;
  std::string_view waiting_;  // taken and not yet written
  bool succeeded_ = true;
};

}  // namespace

std::unique_ptr<ATAutoSetupTool> ATAutoSetupTool::initWithArgc(int argc, const char* const* argv) {
  static constexpr const char* kSignature = "-[ATAutoSetupTool initWithArgc:argv:]";
  if (argc < 3 || argc >= 5) {
    ATLog(kSignature, "AutoSetupTool was launched with incorrect arguments");
    return nullptr;
  }
  auto printerURI = Text::fromUTF8(argv[1]);
  auto PPDPath = Text::fromUTF8(argv[2]);
  ATLog(kSignature, "Launched Autosetup Tool ({}) for device: {}", argv[0], printerURI);
  ATLog(kSignature, "Processed PPD: {}", PPDPath);
  std::optional<std::string> printerID;
  if (argc == 4) {
    printerID = Text::fromUTF8(argv[3]);
    ATLog(kSignature, "Printer ID: {}", printerID);
  }
  if (!PPDPath || (!printerURI && !printerID)) {
    ATLog(kSignature, "Invalid args (PPDPath: {}, printerURI: {}, printerID: {})", PPDPath, printerURI, printerID);
    return nullptr;
  }
  return std::unique_ptr<ATAutoSetupTool>(
      new ATAutoSetupTool(std::move(printerURI), std::move(*PPDPath), std::move(printerID)));
}

ATAutoSetupTool::ATAutoSetupTool(std::optional<std::string> printerURI, std::string PPDPath,
                                 std::optional<std::string> printerID)
    : printerURI_(std::move(printerURI)), PPDPath_(std::move(PPDPath)), printerID_(std::move(printerID)) {}

bool ATAutoSetupTool::run(ATOutput& output) {
  return parse() && update() && write(output);
}

bool ATAutoSetupTool::parse() {
  ATPPDParser parser;
  parser.setDelegate(this);
  if (parser.parsePPDFileAtPath(PPDPath_)) return true;
  ATLog(kRunSignature, "Failed to parse PPD file: {}",
        parseError_ ? std::optional(parseError_->description()) : std::nullopt);
  return false;
}

bool ATAutoSetupTool::update() {
  const auto updaters = updatersFactory_->updatersForPPD(PPD_);
  if (updaters.empty()) return true;
  const auto reader = dataReader();
  const bool updated = std::all_of(updaters.begin(), updaters.end(),
                                   [&](const auto& updater) { return updater->updatePPD(&PPD_, reader.get()); });
  if (!updated) ATLog(kRunSignature, "ERROR: Updater(s) cannot update PPD file.");
  if (updated) composeLines();
  return updated;
}

// Changed lines are composed when somebody asks for them: all of them now, so that from here on nothing but the writing
// itself can fail and nothing is written by halves.
void ATAutoSetupTool::composeLines() const {
  struct : IStatementSink {
    void take(const StatementString& /*string*/) override {}
    bool takesRuns() const override { return true; }
  } nowhere;
  PPD_.giveStringsTo(nowhere);
}

std::unique_ptr<IATDataReader> ATAutoSetupTool::dataReader() const {
  if (printerID_) return ATPPDDataReader::initWithPrinterID(printerID_);
  const auto modelName = PPD_.attributeForName("ModelName");
  return ATDeviceDataReader::initWithDeviceURI(printerURI_, modelName ? modelName->value() : std::nullopt);
}

bool ATAutoSetupTool::write(ATOutput& output) const {
  OutputSink sink(output);
  PPD_.giveStringsTo(sink);
  const bool succeeded = sink.finish();
  if (!succeeded) ATLog(kRunSignature, "Stdout writing error.");
  return succeeded;
}

void ATAutoSetupTool::didRecognizeString(ATPPDParser& /*parser*/, const StatementString& string, PPDLineType type) {
  PPD_.addString(string, type);
}

void ATAutoSetupTool::didFailWithError(ATPPDParser& /*parser*/, const PPDParserError& error) {
  parseError_ = error;
}
