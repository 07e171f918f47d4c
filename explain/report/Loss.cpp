// SPDX-License-Identifier: MIT
#include "explain/report/Loss.h"

const char* nameOf(Loss loss) {
  static constexpr const char* kNames[] = {
      "refused",           "not-added",         "no-option",       "option-not-shown",    "no-choice",
      "name-otherwise",    "profiles-failed",   "profile-skipped", "profile-not-read",    "profile-spec",
      "profile-no-option", "profile-no-choice", "profile-behind",  "properties-not-read", "properties-empty",
      "gloss-not-set",     "no-gloss-choice"};
  return kNames[static_cast<int>(loss)];
}
