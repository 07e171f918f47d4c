// SPDX-License-Identifier: MIT
#include "tests/framework/ThroughFoundation.h"

#include "readers/framework/PropertyList.h"

DeviceValue throughFoundation(const DeviceValue& value) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  ValueBudget budget;
  DeviceValue result = PropertyList::deviceValueOf(PropertyList::objectOf(value), budget);
  [pool drain];
  return result;
}
