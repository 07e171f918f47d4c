// SPDX-License-Identifier: MIT
#include "driver/ATAutoSetupTool.h"

#include <algorithm>
#include <utility>

#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/lines/ATPPDParser.h"
#include "readers/ATDeviceDataReader.h"
#include "readers/ATPPDDataReader.h"
#include "readers/DeviceModelLibrary.h"
#include "readers/LibraryQuestion.h"
#include "updaters/PPDKeywords.h"

namespace {

constexpr const char* kRunSignature = "-[ATAutoSetupTool run]";

// Writes line after line; after the first write that fails, nothing more is written. Lines that lie behind one another
// in memory, as unchanged ones do, are written together: one by one they would cost 5 % of a run's instructions more.
class LineWriter {
 public:
  explicit LineWriter(ATOutput& output) : output_(output) {}
  void write(const StatementString& string) {
    const std::string_view line = string;
    if (waiting_.data() + waiting_.size() == line.data()) {
      waiting_ = {waiting_.data(), waiting_.size() + line.size()};
    } else {
      writeWaiting();
      waiting_ = line;
    }
  }
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
  const auto printerURI = Text::fromUTF8(argv[1]);
  const auto PPDPath = Text::fromUTF8(argv[2]);
  ATLog(kSignature, "Launched Autosetup Tool ({}) for device: {}", argv[0], printerURI);
  ATLog(kSignature, "Processed PPD: {}", PPDPath);
  std::optional<std::string> printerID;
  if (argc == 4) {
    printerID = Text::fromUTF8(argv[3]);
    ATLog(kSignature, "Printer ID: {}", printerID);
  }
  auto tool = initWithPrinterURI(printerURI, PPDPath, printerID);
  if (tool == nullptr) {
    ATLog(kSignature, "Invalid args (PPDPath: {}, printerURI: {}, printerID: {})", PPDPath, printerURI, printerID);
  }
  return tool;
}

std::unique_ptr<ATAutoSetupTool> ATAutoSetupTool::initWithPrinterURI(const std::optional<std::string>& printerURI,
                                                                     const std::optional<std::string>& PPDPath,
                                                                     const std::optional<std::string>& printerID) {
  if (!PPDPath || (!printerURI && !printerID)) return nullptr;
  return std::unique_ptr<ATAutoSetupTool>(new ATAutoSetupTool(printerURI, *PPDPath, printerID));
}

ATAutoSetupTool::ATAutoSetupTool(std::optional<std::string> printerURI, std::string PPDPath,
                                 std::optional<std::string> printerID)
    : printerURI_(std::move(printerURI)), PPDPath_(std::move(PPDPath)), printerID_(std::move(printerID)) {}

bool ATAutoSetupTool::run(ATOutput& output) {
  if (!parse()) return false;
  tell([this](RunObserver& observer) { observer.didParse(PPD_); });
  return update() && write(output);
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
  const auto updaters = ATPPDUpdatersFactory::defaultFactory().updatersForPPD(PPD_, observer_->ofUpdates());
  if (updaters.empty()) return true;
  const LibraryQuestion question;  // whichever updater asks the library, and whenever it releases what it got
  DeviceModelLibrary::defaultLibrary().beginRun();
  const auto reader = dataReader();
  const bool updated = std::all_of(updaters.begin(), updaters.end(),
                                   [&](const auto& updater) { return updateWith(*updater, reader.get()); });
  if (!updated) ATLog(kRunSignature, "ERROR: Updater(s) cannot update PPD file.");
  return updated;
}

bool ATAutoSetupTool::updateWith(const IATPPDUpdater& updater, const IATDataReader* reader) {
  tell([this](RunObserver& observer) { observer.willUpdate(PPD_); });
  const bool updated = updater.updatePPD(&PPD_, reader);
  const UpdateResult result = updated ? UpdateResult::succeeded : UpdateResult::failed;
  tell([&](RunObserver& observer) { observer.didUpdate(PPD_, result); });
  return updated;
}

// What an observer asks of the document is no work of the run.
void ATAutoSetupTool::tell(const std::function<void(RunObserver&)>& what) {
  const Budget::Amounts left = PPD_.budget().left();
  PPD_.budget().restore(Budget::kUnlimited);
  what(*observer_);
  PPD_.budget().restore(left);
}

std::unique_ptr<IATDataReader> ATAutoSetupTool::dataReader() const {
  if (printerID_) return ATPPDDataReader::initWithPrinterID(printerID_);
  const auto modelName = PPD_.attributeForName(PPDKeyword::modelName);
  const auto value = modelName ? modelName->value() : std::nullopt;
  return ATDeviceDataReader::initWithDeviceURI(printerURI_, std::optional<std::string>(value));
}

bool ATAutoSetupTool::write(ATOutput& output) const {
  LineWriter writer(output);
  PPD_.giveStringsTo([&writer](const StatementString& string) { writer.write(string); });
  const bool succeeded = writer.finish();
  if (!succeeded) ATLog(kRunSignature, "Stdout writing error.");
  return succeeded;
}

void ATAutoSetupTool::didRecognizeString(ATPPDParser& /*parser*/, const StatementString& string, PPDLineType type) {
  PPD_.addString(string, type);
}

void ATAutoSetupTool::didFailWithError(ATPPDParser& /*parser*/, const PPDParserError& error) {
  parseError_ = error;
}
