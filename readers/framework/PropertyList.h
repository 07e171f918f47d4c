// SPDX-License-Identifier: MIT
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

#include "readers/DeviceValue.h"
#include "readers/ValueBudget.h"

/// Device values as Foundation's property lists, and back: NSString, NSNumber, NSArray and NSDictionary with string
/// keys. For Objective-C++ only.
namespace PropertyList {

/// Values of our own, with nothing shared between places; nil is absent. A map's entries come in the order in which
/// its enumerator visits them. An object of another kind, also as a key, becomes a value of another kind, and so does a
/// text that is not Unicode. Throws ATException for a list that goes too deep, or takes more than there is in the
/// budget, such as one that holds itself.
DeviceValue deviceValueOf(id object, ValueBudget& budget);

/// An autoreleased property list; nil for an absent value. Members of a list or map that are absent are left out.
id objectOf(const DeviceValue& value);

/// The same for single texts. Throws ATException for one that is not Unicode.
std::string stringOf(NSString* text);
NSString* textOf(std::string_view string);

}  // namespace PropertyList
