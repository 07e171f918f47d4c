// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// A page that needs no other file and asks for none: sections with a table of contents, folds, tables, and a box that
/// finds media. What is called text is escaped here; what is called content is HTML.
class HTMLPage {
 public:
  explicit HTMLPage(const std::string& title);

  /// Text as HTML, with its unsafe characters visible (Wording::visible).
  static std::string escaped(std::string_view text);
  /// The same in the face of code.
  static std::string code(std::string_view text);
  /// Content of a class of the style sheet.
  static std::string span(const char* styleClass, const std::string& content);

  /// The verdict in a colour of its own.
  void badge(const char* styleClass, const std::string& text);
  /// The table of contents stands in front of the first one.
  void section(const std::string& titleText);

  void beginFold(const std::string& summaryContent, bool isOpen, const char* styleClass = "");
  void endFold() { html_ += "</details>\n"; }

  /// A table of so many media, with a box that finds some.
  void beginMedia(std::size_t count);
  /// A row, in which only the name is text, and below it a table that its name unfolds.
  void beginMedium(const char* styleClass, const std::string& nameContent, const std::vector<std::string>& cells);
  void endMedium() { html_ += "</table></td></tr></tbody>\n"; }
  void endMedia() { html_ += "</table></div>\n"; }

  void beginTable() { html_ += "<table>\n"; }
  void row(const std::string& nameText, const std::string& content);
  void endTable() { html_ += "</table>\n"; }
  void beginList() { html_ += "<ul>\n"; }
  void item(const std::string& content) { html_ += "<li>" + content + "</li>\n"; }
  void endList() { html_ += "</ul>\n"; }
  void note(const std::string& text) { paragraph(escaped(text)); }
  void paragraph(const std::string& content) { html_ += "<p>" + content + "</p>\n"; }

  /// Lines of the PPD.
  void beginChanges() { html_ += "<pre>"; }
  void removed(std::string_view lineText) { html_ += "<del>" + escaped(lineText) + "</del>"; }
  void added(std::string_view lineText) { html_ += "<ins>" + escaped(lineText) + "</ins>"; }
  void endChanges() { html_ += "</pre>\n"; }

  /// The whole page; nothing may be added afterwards.
  std::string take();

 private:
  std::string html_;
  std::size_t contents_ = 0;           // where they stand in `html_`
  std::vector<std::string> sections_;  // their titles, escaped; each has its number as anchor
};
