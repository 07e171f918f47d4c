// SPDX-License-Identifier: MIT
#include "setup/Setup.h"

#include <fmt/format.h>

#include <string_view>

#include "base/Text.h"
#include "explain/report/Wording.h"

namespace {

using Wording::visible;

// What CUPS 2.4 reads of a line of the list; it takes a longer name or make, or an empty make, for the end of the list.
constexpr std::size_t kLongestName = 255;
constexpr std::size_t kLongestMake = 127;
// A line of more than 2,046 bytes is two to it, the second of which ends the list; only the ID has no limit so far.
constexpr std::size_t kLongestDeviceID = 255;

// Neither a quotation mark nor a line end may stand in a field.
bool isField(std::string_view text) {
  return Text::isValidUTF8(text) && visible(text) == text && text.find('"') == std::string_view::npos;
}

}  // namespace

std::string Setup::line() const {
  const std::string deviceID =
      ppd.deviceID.empty() ? fmt::format("MFG:{};MDL:{};", ppd.make(), ppd.model()) : ppd.deviceID;
  return fmt::format("\"{}\" en \"{}\" \"{}\" \"{}\"\n", name, ppd.make(),
                     Wording::cutTo(kLongestDescription, description), Wording::cutTo(kLongestDeviceID, deviceID));
}

const char* Setup::problemOfLine() const {
  if (name.size() > kLongestName) return "its name is longer than 255 bytes";
  if (ppd.make().empty()) return "its PPD names no manufacturer";
  if (ppd.make().size() > kLongestMake) return "its manufacturer is longer than 127 bytes";
  const bool isReadable =
      isField(name) && isField(ppd.make()) && isField(ppd.model()) && isField(description) && isField(ppd.deviceID);
  return isReadable ? nullptr : "a name holds a quotation mark or a control character";
}
