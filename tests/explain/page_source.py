# SPDX-License-Identifier: MIT
"""The text of a report's page: every element ends where it should, and nothing in it names something outside."""
import html.parser
import re

WITHOUT_END = {"input", "link", "meta"}
ELEMENTS = WITHOUT_END | {"a", "body", "caption", "code", "del", "details", "div", "h1", "h2", "head", "html", "ins", "label", "li", "main", "nav", "output", "p", "pre",
                          "script", "span", "strong", "style", "summary", "table", "tbody", "td", "th", "thead", "title", "tr", "ul"}
POLICY = "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'"
# What would load something: an address, or a style or script that asks for one.
OUTSIDE = re.compile(r"https?:|//|url\(|@import|src=|fetch|XMLHttpRequest|sendBeacon|WebSocket|EventSource|import\(")


class Source(html.parser.HTMLParser):
    """Gathers elements, attributes, and what styles and scripts hold; text that is shown may say anything."""

    def __init__(self, text):
        super().__init__()
        self.open, self.faults, self.elements, self.attributes, self.programs = [], [], set(), [], ""
        self.feed(text)
        self.close()
        self.faults += [f"{name} has no end" for name in self.open]

    def handle_starttag(self, tag, attrs):
        self.elements.add(tag)
        self.attributes += [(tag, name, value or "") for name, value in attrs]
        if tag not in WITHOUT_END:
            self.open.append(tag)

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"line {self.getpos()[0]}: an end of {tag}")

    def handle_data(self, data):
        if self.open and self.open[-1] in ("style", "script"):
            self.programs += data


def is_local(tag, name, value):
    """Whether an attribute leads nowhere outside."""
    if name == "href":
        return value == "data:," if tag == "link" else re.fullmatch(r"#s\d+", value) is not None
    return name not in ("src", "srcset", "action", "style", "background", "poster", "ping", "data") and \
        not name.startswith("on") and not OUTSIDE.search(value)


def check(checks, path):
    source = Source(path.read_text(encoding="utf-8"))
    checks.expect_same(f"{path.stem}: every element ends where it should", source.faults[:3], [])
    checks.expect_same(f"{path.stem}: no other elements than a report has", source.elements - ELEMENTS, set())
    checks.expect_same(f"{path.stem}: no attribute leads outside",
                       [each for each in source.attributes if not is_local(*each)][:3], [])
    checks.expect(f"{path.stem}: neither styles nor the script ask for anything",
                  len(source.programs) > 1000 and not OUTSIDE.search(source.programs))
    checks.expect(f"{path.stem}: the policy allows nothing but the page's own styles and script",
                  ("meta", "content", POLICY) in source.attributes)
