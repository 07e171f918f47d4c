// SPDX-License-Identifier: MIT
#include "tests/framework/ThroughFoundation.h"

#include "readers/framework/PropertyList.h"

DeviceValue throughFoundation(const DeviceValue& value) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  DeviceValue result = PropertyList::deviceValueOf(PropertyList::objectOf(value));
  [pool drain];
  return result;
}
