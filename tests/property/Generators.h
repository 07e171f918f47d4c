// SPDX-License-Identifier: MIT
#pragma once

#include <rapidcheck.h>

#include <string>
#include <vector>

/// Random PPDs. Names come from small sets, so that look-ups meet repeats, prefixes and near misses.
namespace Generators {

inline rc::Gen<std::string> word() {
  return rc::gen::element<std::string>("MediaType", "Foo", "foo", "Foo2", "cupsICCProfile", "de.cupsICCProfile",
                                       "fr.cupsICCProfile", "QZValueAttributes", "ModelName");
}

inline rc::Gen<std::string> spec() {
  return rc::gen::element<std::string>("", " .Plain.", " .Custom1.", " .Custom12.", " .Custom1./Text",
                                       " MediaType.Plain", "  A /B", " Custom1", "\t\xC2\xA0X");
}

inline rc::Gen<std::string> value() {
  return rc::gen::element<std::string>("\"\"", "\"x\"", "x", "\"glossy=YES;defaultGE='off-ge'\"", "\"a b", "\"",
                                       " \"y\" ", "\"\xC3\xA4\xE2\x82\xAC\"");
}

inline rc::Gen<std::string> lineEnd() {
  return rc::gen::weightedElement<std::string>({{10, "\n"}, {2, "\r\n"}, {1, "\r"}});
}

inline rc::Gen<std::string> statement() {
  return rc::gen::apply([](const std::string& name, const std::string& option, const std::string& content,
                           const std::string& end) { return "*" + name + option + ": " + content + end; },
                        word(), spec(), value(), lineEnd());
}

inline rc::Gen<std::string> anyLine() {
  return rc::gen::oneOf(
      statement(), rc::gen::element<std::string>(
                       "*% comment\n", "\n", "\r\n", "*End\n", "*OpenGroup: QZImagingOptions/Imaging\n",
                       "*OpenGroup: Other\n", "*CloseGroup: QZImagingOptions\n", "*OpenUI *MediaType/Media: PickOne\n",
                       "*OpenUI *Foo\n", "*CloseUI: *MediaType\n", "*DefaultMediaType: Plain\n",
                       "*MediaType Plain/Plain: \"1001\"\n", "*MediaType Custom1/A: \"4711\"\n", "*DefaultFoo: x\n",
                       "*OrderDependency: 10 AnySetup *MediaType\n", "text\"\n", "  \n", "\xFF\n"));
}

/// Lines of every kind in any order; most such documents end at a malformed line.
inline rc::Gen<std::string> document() {
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(anyLine()),
                      [](const std::vector<std::string>& lines) {
                        std::string text;
                        for (const std::string& line : lines) text += line;
                        return text;
                      });
}

/// Statements of one line with complete values, and comments: a document that is read to its end.
inline rc::Gen<std::string> plainDocument() {
  const auto line = rc::gen::suchThat(rc::gen::oneOf(statement(), rc::gen::just<std::string>("*% comment\n")),
                                      [](const std::string& text) {
                                        const auto quotes = std::count(text.begin(), text.end(), '"');
                                        return quotes != 1;
                                      });
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(line), [](const std::vector<std::string>& lines) {
    std::string text = "*cupsLanguages: \"en de fr de\"\n";
    for (const std::string& each : lines) text += each;
    return text;
  });
}

}  // namespace Generators
