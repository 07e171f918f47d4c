// SPDX-License-Identifier: MIT
#pragma once

#include "ppd/document/ATPPD.h"
#include "readers/IATDataReader.h"

/// One editing step that a PPD asks for by its class name. Updaters hold no state.
class IATPPDUpdater {
 public:
  virtual ~IATPPDUpdater() = default;

  /// Edits the document in place with what the reader knows of the printer. True when the chain may go on, also when
  /// there was nothing to do; false, always without a document or a reader, when the whole run must fail. Throws
  /// ATException when the device-model library fails or gives a value of the wrong type.
  virtual bool updatePPD(ATPPD* ppd, const IATDataReader* usingDataReader) const = 0;
};
