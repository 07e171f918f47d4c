// SPDX-License-Identifier: MIT
#include "explain/show/PlainPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(PlainPage, HoldsNotesAndTables) {
  PlainPage page("A <title>");
  page.note("5 < 6 & \x1b");
  page.beginTable({"One", "Two"});
  page.row({"a", "<b>"}, "bad");
  page.row({"c", "d"});
  page.endTable();
  const std::string html = page.take();
  EXPECT_THAT(html, StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(html, HasSubstr("<h1>A &lt;title&gt;</h1>"));
  EXPECT_THAT(html, HasSubstr("<p>5 &lt; 6 &amp; \\x1b</p>"));
  EXPECT_THAT(html, HasSubstr("<th scope=\"col\">One</th><th scope=\"col\">Two</th>"));
  EXPECT_THAT(html, HasSubstr("<tr><td class=\"bad\">a</td><td>&lt;b&gt;</td></tr>\n<tr><td>c</td><td>d</td></tr>"));
  EXPECT_THAT(html, EndsWith("</tbody></table>\n</main></body></html>\n"));
  EXPECT_THAT(html, Not(HasSubstr("http")));
}
