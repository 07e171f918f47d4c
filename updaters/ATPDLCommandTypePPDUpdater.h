// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "updaters/IATPPDUpdater.h"
#include "updaters/UpdateObserver.h"

/// Adds named lists of printer-language commands, one for each phase of a job, in one of two sets that the family of
/// the device decides. The lists are only written here; other components interpret them. Earlier lists of the same
/// names are neither replaced nor removed.
class ATPDLCommandTypePPDUpdater : public IATPPDUpdater {
 public:
  /// `observer`, not owned, is told what is done.
  explicit ATPDLCommandTypePPDUpdater(UpdateObserver& observer = UpdateObserver::none()) : observer_(observer) {}

  bool updatePPD(ATPPD* ppd, const IATDataReader* usingDataReader) const override;

  /// The family code in the identification string that the device-model library has for the printer: what follows
  /// "CID:" in its first part that holds that and no other colon. Empty when unknown.
  virtual std::string getDeviceFamilyName(const std::string& printerURI) const;

  /// Adds the first set of commands, for the families QZVR2PCLS and QZVRPCLS.
  virtual void addPDLCommandsForQZVR2PCLS(ATPPD& ppd) const;
  /// Adds the second set, for every other family and for an unknown one.
  virtual void addPDLCommandsForQZVR2PCLAZ(ATPPD& ppd) const;

 private:
  UpdateObserver& observer_;
};
