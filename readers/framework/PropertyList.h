// SPDX-License-Identifier: MIT
#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "readers/DeviceValue.h"

/// Device values as Foundation's property lists, and back: NSString, NSNumber, NSArray and NSDictionary with string
/// keys. For Objective-C++ only.
namespace PropertyList {

/// How large a property list may be: kSizeOfValue for each value and each key, and the bytes of its texts. Only a
/// library gone wrong has more: an enumerator without an end, or lists that hold one another so often that they cannot
/// be written out.
inline constexpr std::size_t kLargestSize = std::size_t{64} << 20;
inline constexpr std::size_t kSizeOfValue = 16;

/// Values of our own, with nothing shared between places; nil is absent. A map's entries come in the order in which
/// its enumerator visits them. An object of another kind, also as a key, becomes a value of another kind, and so does a
/// text that is not Unicode. Throws ATException for a list that goes too deep or is too large, such as one that holds
/// itself.
DeviceValue deviceValueOf(id object);

/// An autoreleased property list; nil for an absent value. Members of a list or map that are absent are left out.
id objectOf(const DeviceValue& value);

/// The same for single texts. Throws ATException for one that is not Unicode.
std::string stringOf(NSString* text);
NSString* textOf(std::string_view string);

}  // namespace PropertyList
