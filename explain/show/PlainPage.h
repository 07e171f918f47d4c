// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// A page of notes and tables that needs no other file and asks for none. All that is given is text.
class PlainPage {
 public:
  explicit PlainPage(const std::string& title);

  void note(const std::string& text);
  void beginTable(const std::vector<std::string>& titles);
  /// `styleClass`: "good", "odd" or "bad" for the first cell, or none.
  void row(const std::vector<std::string>& cells, const char* styleClass = "");
  void endTable() { html_ += "</tbody></table>\n"; }

  /// The whole page; nothing may be added afterwards.
  std::string take();

 private:
  std::string html_;
};
