// SPDX-License-Identifier: MIT
#include "readers/IATReaderImpl.h"

#include "base/ATException.h"

DeviceValue IATReaderImpl::dataFromDevice(const std::string& /*deviceURI*/,
                                          const std::optional<std::string>& /*modelName*/) {
  throw ATException::unsupportedOperation("-[IATReaderImpl dataFromDevice:modelName:]");
}

DeviceValue IATReaderImpl::dataFromPPD(ppd_file_s* /*ppd*/) {
  throw ATException::unsupportedOperation("-[IATReaderImpl dataFromPPD:]");
}

DeviceValue IATReaderImpl::familyNameFromDevice(const std::string& /*deviceURI*/) {
  throw ATException::unsupportedOperation("-[IATReaderImpl familyNameFromDevice:]");
}
