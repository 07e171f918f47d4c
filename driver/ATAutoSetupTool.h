// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "driver/ATOutput.h"
#include "driver/RunObserver.h"
#include "ppd/document/ATPPD.h"
#include "ppd/lines/IATPPDParserDelegate.h"
#include "readers/IATDataReader.h"
#include "updaters/ATPPDUpdatersFactory.h"

/// One run of the tool: reads the PPD into the document, lets the updaters that the PPD names edit it, and writes it.
class ATAutoSetupTool : public IATPPDParserDelegate {
 public:
  /// From the program's arguments: tool name, device URI, PPD path and, optionally, a printer ID. Null when their
  /// number is wrong, the path is not UTF-8, or neither the URI nor the ID is.
  static std::unique_ptr<ATAutoSetupTool> initWithArgc(int argc, const char* const* argv);

  /// The same from the arguments themselves; an absent one is none, or was not UTF-8.
  static std::unique_ptr<ATAutoSetupTool> initWithPrinterURI(const std::optional<std::string>& printerURI,
                                                             const std::optional<std::string>& PPDPath,
                                                             const std::optional<std::string>& printerID);

  /// Who is told what happens in the run (not owned, must outlive it); nobody unless set.
  void setObserver(RunObserver& observer) { observer_ = &observer; }

  /// True when the complete PPD was handed to `output`. Nothing is written before every updater has succeeded.
  /// Programming errors and failures of the device-model library are ATExceptions.
  bool run(ATOutput& output);

  void didRecognizeString(ATPPDParser& parser, const StatementString& string, PPDLineType type) override;
  void didFailWithError(ATPPDParser& parser, const PPDParserError& error) override;

  const std::optional<std::string>& printerURI() const { return printerURI_; }
  const std::string& PPDPath() const { return PPDPath_; }
  const std::optional<std::string>& printerID() const { return printerID_; }
  ATPPD& PPD() { return PPD_; }
  /// The parser's last error, or absent.
  const std::optional<PPDParserError>& parseError() const { return parseError_; }
  void setParseError(std::optional<PPDParserError> error) { parseError_ = error; }

 private:
  ATAutoSetupTool(std::optional<std::string> printerURI, std::string PPDPath, std::optional<std::string> printerID);
  bool parse();
  bool update();
  void tell(const std::function<void(RunObserver&)>& what);
  bool updateWith(const IATPPDUpdater& updater, const IATDataReader* reader);
  bool write(ATOutput& output) const;
  std::unique_ptr<IATDataReader> dataReader() const;

  std::optional<std::string> printerURI_;
  std::string PPDPath_;
  std::optional<std::string> printerID_;
  ATPPD PPD_;
  std::optional<PPDParserError> parseError_;
  RunObserver* observer_ = &RunObserver::none();
};
