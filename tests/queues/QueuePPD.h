// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/format.h>

#include <string>
#include <vector>

/// The PPD of a queue with custom media of these IDs, in this order, as the updaters number them.
inline std::string queuePPD(const std::vector<std::string>& IDs, const std::string& defaultChoice = "Plain") {
  std::string choices;
  std::string names;
  for (std::size_t index = 0; index < IDs.size(); ++index) {
    const std::string choice = fmt::format("Custom{:x}", index + 1);
    names += (names.empty() ? "" : ",\n") + choice;
    choices += fmt::format("*MediaType {0}/Medium {1}: \"<</MediaType({0})/QZMediaID({1})>>setpagedevice\"\n", choice,
                           IDs[index]);
  }
  return fmt::format(
      "*PPD-Adobe: \"4.3\"\n*ModelName: \"Z9\"\n{}*OpenGroup: QZImagingOptions/Imaging Options\n"
      "*OpenUI *MediaType/Media Type: PickOne\n*DefaultMediaType: {}\n*MediaType Plain/Plain: \"(1)\"\n{}"
      "*CloseUI: *MediaType\n*CloseGroup: QZImagingOptions\n",
      IDs.empty() ? "" : "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"" + names + "\"\n*End\n",
      defaultChoice, choices);
}
