// SPDX-License-Identifier: MIT
#include "updaters/ATPDLCommandTypePPDUpdater.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <memory>

#include "base/ATLog.h"
#include "base/Text.h"
#include "readers/DeviceModelLibrary.h"

namespace {

struct CommandSet {
  const char* family;
  struct List {
    const char* key;
    const char* commands;  // between blanks
  } lists[7];
};

// The names are those that the printing components know, "pcl-cutter", "pcl-inkedarea" and misspellings included.
constexpr CommandSet kFirstSet = {
    "VR-K-410",
    {
        {"initial-reset", "pdl-flush-raster pdl-reset pdl-end-job-pjl"},
        {"pjl-job-header",
         "pdl-string-code-set pdl-job-name pdl-job-attr6-app-name pdl-job-attr11-system-version "
         "pdl-job-attr14-driver-version pdl-pjl-born-on-date"},
        {"pcl-job-header",
         "pdl-language-version pdl-pcl-media-source pdl-media-type velmor-pdl-media-type "
         "pdl-print-quality pdl-page-count pdl-color-mode pdl-pcl-color-space-mode pcl-cutter "
         "pcl-inkedarea pdl-media-size pdl-resolution velmor-pdl-paper-width-height"},
        {"begin-page", "pdl-max-raster-width pdl-raster-data-format-vorantis-rgb pdl-raster-cmd-start"},
        {"end-page", "pdl-raster-end pdl-form-feed"},
        {"job-aborting", "pdl-flush-raster pdl-cancel"},
        {"job-final-reset", "pdl-reset pdl-end-job pdl-pjl-end-job"},
    },
};

constexpr CommandSet kSecondSet = {
    "VR-K-Q",
    {
        {"initial-reset", "pdl-flush-raster pdl-form-feed pdl-reset pdl-end-job-pjl pdl-job"},
        {"pjl-job-header",
         "pdl-string-code-set pdl-set-jobname pdl-pjl-born-on-date pdl-job-attr1-user-name "
         "pdl-job-attr2-client-name pdl-job-attr3-domain-name pdl-job-attr4-timestamp pdl-job-attr5-uuid "
         "pdl-job-attr6-app-name pdl-job-attr8-account-id pdl-job-attr11-system-version "
         "pdl-job-attr14-driver-version pdl-driver-usage-metrics pdl-media-source pdl-paper-width-height "
         "pdl-set-printarea pdl-margin-layout pdl-set-margins-size pdl-set-margins "
         "pdl-set-borderless-method pdl-set-cutter pdl-set-y-cutter pdl-set-mediaid pdl-max-detail "
         "pdl-set-gloss-enahncer pdl-extrapasses pdl-render-mode pdl-color-space-mode "
         "pdl-rendering-intent pdl-lightness-adjustment pdl-red-adjustment pdl-green-adjustment "
         "pdl-blue-adjustment pdl-cropmarks"},
        {"pcl-job-header", "pdl-language-version pdl-print-quality pdl-resolution"},
        {"begin-page", "pdl-max-raster-width pdl-raster-data-format-tavik-rgb pdl-raster-cmd-start"},
        {"end-page", "pdl-raster-end pdl-form-feed"},
        {"job-aborting", "pdl-flush-raster pdl-cancel"},
        {"job-final-reset", "pdl-reset pdl-end-job pdl-pjl-end-job"},
    },
};

void addAttribute(const std::string& name, const std::string& value, ATPPD& ppd) {
  ppd.addPPDAttribute(ATPPDAttribute::initWithName(name, std::nullopt, std::nullopt, value));
}

void addCommandSet(const CommandSet& set, ATPPD& ppd) {
  addAttribute("QZVorantisFamily", fmt::format("\"{}\"", set.family), ppd);
  for (const auto& [key, commands] : set.lists) {
    addAttribute(fmt::format("QZPDLCommand {}", key),
                 fmt::format("\"{}\"\n*End", fmt::join(Text::split(commands, " "), ";;\n")), ppd);
  }
}

std::string identificationString(DeviceModelLibrary& library, const std::string& printerURI) {
  const auto info = library.serviceInfoForDevice(printerURI).info;
  return library.deviceFamilyName(info.get()).textFor("device family name").value_or("");
}

std::string familyInIdentification(std::string_view identification) {
  for (const std::string_view part : Text::split(identification, ";")) {
    if (!Text::contains(part, "CID:")) continue;
    const auto pieces = Text::split(part, ":");
    if (pieces.size() == 2) return std::string(pieces[1]);
  }
  return {};
}

}  // namespace

bool ATPDLCommandTypePPDUpdater::updatePPD(ATPPD* ppd, const IATDataReader* usingDataReader) const {
  if (ppd == nullptr || usingDataReader == nullptr) return false;
  const auto printerURI = usingDataReader->printerURI();
  if (!printerURI || printerURI->empty()) return true;
  const std::string family = getDeviceFamilyName(*printerURI);
  if (family == "QZVR2PCLS" || family == "QZVRPCLS") {
    addPDLCommandsForQZVR2PCLS(*ppd);
  } else {
    addPDLCommandsForQZVR2PCLAZ(*ppd);
  }
  return true;
}

std::string ATPDLCommandTypePPDUpdater::getDeviceFamilyName(const std::string& printerURI) const {
  static constexpr const char* kSignature = "-[ATPDLCommandTypePPDUpdater getDeviceFamilyName:]";
  DeviceModelLibrary& library = DeviceModelLibrary::defaultLibrary();
  if (!library.isAvailable()) {
    ATLog(kSignature, "QZVorantisModel framework is not loaded");
    observer_.didReadFamily(std::nullopt);
    return {};
  }
  std::string family = familyInIdentification(identificationString(library, printerURI));
  ATLog(kSignature, "pinwax ==> ATAutoSetupTool == getDeviceFamilyName == Family name extracted {}", family);
  observer_.didReadFamily(family);
  return family;
}

void ATPDLCommandTypePPDUpdater::addPDLCommandsForQZVR2PCLS(ATPPD& ppd) const {
  addCommandSet(kFirstSet, ppd);
}

void ATPDLCommandTypePPDUpdater::addPDLCommandsForQZVR2PCLAZ(ATPPD& ppd) const {
  addCommandSet(kSecondSet, ppd);
}
