// SPDX-License-Identifier: MIT
#pragma once

#include "readers/DeviceValue.h"

/// The value as a property list, and back; for plain C++, which knows no Objective-C objects.
DeviceValue throughFoundation(const DeviceValue& value);
