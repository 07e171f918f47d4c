// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// What a physical line of a PPD is. The numbers are fixed: messages print them.
enum PPDLineType : std::int32_t {
  PPDLineTypeInvalid = 0,              ///< rejected; never delivered
  PPDLineTypeComment = 1,              ///< begins "*%"
  PPDLineTypeStatement = 2,            ///< first line of a main-keyword statement outside a UI block
  PPDLineTypeContinuation = 3,         ///< further line of a statement: its quoted value is open, or it has no "*"
  PPDLineTypeEnd = 4,                  ///< *End after a statement whose value is closed
  PPDLineTypeOpenGroup = 5,            ///< *OpenGroup
  PPDLineTypeCloseGroup = 6,           ///< *CloseGroup
  PPDLineTypeOpenUI = 7,               ///< *OpenUI
  PPDLineTypeCloseUI = 8,              ///< *CloseUI inside a UI block
  PPDLineTypeOrderDependency = 9,      ///< *OrderDependency inside a UI block
  PPDLineTypeDefaultChoice = 10,       ///< begins "*Default" inside a UI block
  PPDLineTypeChoice = 11,              ///< any other keyword line inside a UI block
  PPDLineTypeNewLine = 12,             ///< an empty line
  PPDLineTypeChoiceContinuation = 13,  ///< a line without "*" after a choice or choice continuation
  PPDLineTypeChoiceEnd = 14,           ///< *End after a choice continuation
};
