// SPDX-License-Identifier: MIT
#include "explain/show/PlainPage.h"

#include <fmt/format.h>

#include <utility>

#include "explain/show/HTMLPage.h"

namespace {

// Contrasts of at least 4.5 to 1, in light and in dark.
constexpr const char* kPageHead = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width, initial-scale=1">
<title>{0}</title><style>
:root {{ color-scheme: light dark; --good: #116329; --bad: #a40e26; --odd: #7d4e00; --line: #8888; }}
@media (prefers-color-scheme: dark) {{ :root {{ --good: #3fb950; --bad: #ff7b72; --odd: #d29922; }} }}
body {{ font: 1rem/1.5 system-ui, sans-serif; max-width: 75rem; margin: auto; padding: 1rem; }}
table {{ border-collapse: collapse; }}
th, td {{ text-align: left; vertical-align: top; padding: .2rem .8rem .2rem 0; border-bottom: 1px solid var(--line);
  overflow-wrap: anywhere; }}
.good {{ color: var(--good); }} .bad {{ color: var(--bad); }} .odd {{ color: var(--odd); }}
</style></head><body><main>
<h1>{0}</h1>
)";

}  // namespace

PlainPage::PlainPage(const std::string& title) : html_(fmt::format(kPageHead, HTMLPage::escaped(title))) {}

void PlainPage::note(const std::string& text) {
  html_ += "<p>" + HTMLPage::escaped(text) + "</p>\n";
}

void PlainPage::beginTable(const std::vector<std::string>& titles) {
  html_ += "<table><thead><tr>";
  for (const std::string& title : titles) html_ += "<th scope=\"col\">" + HTMLPage::escaped(title) + "</th>";
  html_ += "</tr></thead><tbody>\n";
}

void PlainPage::row(const std::vector<std::string>& cells, const char* styleClass) {
  html_ += "<tr>";
  for (std::size_t index = 0; index < cells.size(); ++index) {
    const bool isStyled = index == 0 && *styleClass != '\0';
    html_ += isStyled ? fmt::format("<td class=\"{}\">", styleClass) : "<td>";
    html_ += HTMLPage::escaped(cells[index]) + "</td>";
  }
  html_ += "</tr>\n";
}

std::string PlainPage::take() {
  html_ += "</main></body></html>\n";
  return std::move(html_);
}
