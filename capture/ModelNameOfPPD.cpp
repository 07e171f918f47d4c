// SPDX-License-Identifier: MIT
#include "capture/ModelNameOfPPD.h"

#include "base/ATException.h"
#include "ppd/document/ATPPD.h"
#include "ppd/lines/ATPPDParser.h"
#include "updaters/PPDKeywords.h"

namespace {

class Reader : public IATPPDParserDelegate {
 public:
  void didRecognizeString(ATPPDParser& /*parser*/, const StatementString& string, PPDLineType type) override {
    PPD.addString(string, type);
  }
  void didFailWithError(ATPPDParser& /*parser*/, const PPDParserError& error) override {
    throw ATException("ATPPDException", "the PPD cannot be used: " + error.description());
  }

  ATPPD PPD;
};

}  // namespace

std::optional<std::string> ModelNameOfPPD::at(const std::string& path) {
  Reader reader;
  ATPPDParser parser;
  parser.setDelegate(&reader);
  parser.parsePPDFileAtPath(path);
  const auto attribute = reader.PPD.attributeForName(PPDKeyword::modelName);
  const auto value = attribute ? attribute->value() : std::nullopt;
  return std::optional<std::string>(value);
}
