// SPDX-License-Identifier: MIT
#include "explain/show/HTMLPage.h"

#include <fmt/format.h>

#include <utility>

#include "explain/report/Wording.h"

namespace {

// Names of the device or the PPD may be one long word, so every word may break, and no column gets narrower than a
// short one. Marks, which are not copied with the lines, tell added from removed on paper, which has no backgrounds.
constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>{0}</title>
<meta name="viewport" content="width=device-width">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<link rel="icon" href="data:,">
<style>
:root {{ color-scheme: light dark; --text: #1b1f24; --page: #fff; --faint: #57606a; --line: #d0d7de; --box: #f6f8fa;
  --good: #116329; --bad: #a40e26; --odd: #7d4e00; --new: #dafbe1; --old: #ffebe9; }}
@media (prefers-color-scheme: dark) {{ :root {{ --text: #e6edf3; --page: #0d1117; --faint: #9ea7b3; --line: #30363d;
  --box: #161b22; --good: #3fb950; --bad: #ff7b72; --odd: #d29922; --new: #12361f; --old: #4a1b1e; }} }}
body {{ font: 15px/1.45 system-ui, sans-serif; max-width: 62rem; margin: 2rem auto; padding: 0 1rem; color: var(--text);
  background: var(--page); overflow-wrap: anywhere; }}
h1 {{ font-size: 1.4rem; }} h2 {{ font-size: 1.1rem; margin-top: 2rem; border-bottom: 1px solid var(--line); }}
a {{ color: inherit; }} summary {{ cursor: pointer; padding: .15rem 0; }} details table {{ margin: 0 0 .6rem 1.2rem; }}
table {{ border-collapse: collapse; }} td, th {{ padding: .15rem .8rem .15rem 0; text-align: left; vertical-align: top; }}
td, th {{ min-width: 6.5rem; }} th {{ font-weight: 600; color: var(--faint); }}
code, pre {{ font: 13px/1.4 ui-monospace, monospace; overflow-wrap: anywhere; }}
pre {{ background: var(--box); padding: .6rem; white-space: pre-wrap; }}
ins, del {{ text-decoration: none; display: block; min-height: 1.4em; }}
ins {{ background: var(--new); }} del {{ background: var(--old); }}
ins::before {{ content: "+ "; }} del::before {{ content: "- "; }}
.good {{ color: var(--good); }} .bad, .refused {{ color: var(--bad); }} .odd {{ color: var(--odd); }}
.badge {{ font-weight: 600; border: 2px solid currentColor; border-radius: .4rem; padding: .3rem .7rem; }}
.consequence {{ margin-left: 1.2rem; }}
.find {{ display: flex; flex-wrap: wrap; gap: .3rem 1rem; align-items: center; margin: .4rem 0; }}
.find[hidden] {{ display: none; }}
input[type=search] {{ font: inherit; width: 100%; max-width: 24rem; box-sizing: border-box; }}
input::placeholder {{ color: var(--faint); }}
.media {{ overflow-x: auto; }} .media > table {{ width: 100%; min-width: 50rem; }}
.media > table > tbody {{ border-top: 1px solid var(--line); }} .media .details {{ display: none; }}
.media tr:has(details[open]) + .details {{ display: table-row; }}
@supports not selector(:has(*)) {{ .media .details {{ display: table-row; }} }}
.lost td:last-child {{ color: var(--bad); font-weight: 600; }} .factory > tr > td:last-child {{ color: var(--faint); }}
@media print {{ .find {{ display: none; }} body {{ margin: 0; max-width: none; }} .media {{ overflow: visible; }}
  .media > table {{ min-width: 0; }} .media .details {{ display: table-row; }} }}
</style></head><body><main>
<h1>{0}</h1>
)";

// The box hides the media whose rows do not hold what is typed. All that is not hidden is printed unfolded.
constexpr const char* kTail = R"(</main><script>
for (const find of document.querySelectorAll('.find')) {
  const box = find.querySelector('[type=search]'), lost = find.querySelector('[type=checkbox]');
  const count = find.querySelector('output'), media = find.nextElementSibling.querySelectorAll('tbody.medium');
  const texts = [...media].map(medium => medium.rows[0].textContent.toLowerCase());
  const update = () => {
    const wanted = box.value.trim().toLowerCase();
    let found = 0;
    media.forEach((medium, index) => {
      medium.hidden = !texts[index].includes(wanted) || (lost.checked && !medium.classList.contains('lost'));
      found += !medium.hidden;
    });
    count.textContent = found === media.length ? '' : found === 0 ? 'none found' : found + ' of ' + media.length;
  };
  find.hidden = false;
  box.addEventListener('input', update);
  lost.addEventListener('change', update);
}
let closed = [];
addEventListener('beforeprint', () => {
  closed = [...document.querySelectorAll('details:not([open])')];
  for (const fold of closed) fold.open = true;
});
addEventListener('afterprint', () => { for (const fold of closed) fold.open = false; });
</script>
</body></html>
)";

}  // namespace

HTMLPage::HTMLPage(const std::string& title) : html_(fmt::format(fmt::runtime(kHead), escaped(title))) {}

std::string HTMLPage::escaped(std::string_view text) {
  std::string html;
  for (const char character : Wording::visible(text)) {
    switch (character) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += character;
    }
  }
  return html;
}

std::string HTMLPage::code(std::string_view text) {
  return "<code>" + escaped(text) + "</code>";
}

std::string HTMLPage::span(const char* styleClass, const std::string& content) {
  return fmt::format("<span class=\"{}\">{}</span>", styleClass, content);
}

void HTMLPage::badge(const char* styleClass, const std::string& text) {
  html_ += fmt::format("<p class=\"badge {}\">{}</p>\n", styleClass, escaped(text));
}

void HTMLPage::section(const std::string& titleText) {
  if (sections_.empty()) contents_ = html_.size();
  sections_.push_back(escaped(titleText));
  html_ += fmt::format("<h2 id=\"s{}\">{}</h2>\n", sections_.size(), sections_.back());
}

void HTMLPage::beginFold(const std::string& summaryContent, bool isOpen, const char* styleClass) {
  const std::string attribute = *styleClass == '\0' ? "" : fmt::format(" class=\"{}\"", styleClass);
  html_ += fmt::format("<details{}{}><summary>{}</summary>\n", attribute, isOpen ? " open" : "", summaryContent);
}

// Without JavaScript there is nothing to type into.
void HTMLPage::beginMedia(std::size_t count) {
  html_ += fmt::format(
      "<div class=\"find\" hidden><input type=\"search\" placeholder=\"Find media by name or ID\" "
      "aria-label=\"Find media\"><label><input type=\"checkbox\"> lost something only</label>"
      "<output></output></div>\n<div class=\"media\" tabindex=\"0\"><table><caption>{} media</caption><thead><tr>"
      "<th>Name</th><th>ID</th><th>Choice</th><th>Parent</th><th>Profiles</th><th>Gloss</th><th>State</th></tr></"
      "thead>\n",
      count);
}

void HTMLPage::beginMedium(const char* styleClass, const std::string& nameContent,
                           const std::vector<std::string>& cells) {
  html_.append("<tbody class=\"medium ").append(styleClass).append("\"><tr><td><details><summary>");
  html_.append(nameContent).append("</summary></details></td>");
  for (const std::string& cell : cells) html_.append("<td>").append(cell).append("</td>");
  html_ += "</tr>\n<tr class=\"details\"><td colspan=\"7\"><table>\n";
}

void HTMLPage::row(const std::string& nameText, const std::string& content) {
  html_ += "<tr><th>" + escaped(nameText) + "</th><td>" + content + "</td></tr>\n";
}

std::string HTMLPage::take() {
  std::string contents = "<nav><ul>\n";
  for (std::size_t index = 0; index < sections_.size(); ++index) {
    contents += fmt::format("<li><a href=\"#s{}\">{}</a></li>\n", index + 1, sections_[index]);
  }
  if (!sections_.empty()) html_.insert(contents_, contents + "</ul></nav>\n");
  return std::move(html_) + kTail;
}
