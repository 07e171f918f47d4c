# SPDX-License-Identifier: MIT
"""Whether a report's page can be read on a telephone and on a wide screen, in the light and in the dark theme."""
import base64

WIDTHS, HEIGHT = (400, 1400), 900
SMALLEST_FONT = 13
# So many pixels take an ordinary word; words break in a narrower column.
NARROWEST = 90
# Level AA of the Web Content Accessibility Guidelines, for text of ordinary size.
LEAST_CONTRAST = 4.5
# A page with everything odd has text in each of these.
SHOWN = {"body", "td", "th", "a", ".good", ".bad", ".odd", "ins", "del", "summary", "input", "placeholder", "code", "h2"}

# For each element that has text of its own: what it is, its font size, and the contrast of its text with what lies under it.
TEXTS = """
const parsed = colour => {
  const parts = /^rgba?\\(([\\d.]+), ([\\d.]+), ([\\d.]+)(?:, ([\\d.]+))?\\)$/.exec(colour);
  if (!parts) throw new Error('a colour that is not known: ' + colour);
  return [Number(parts[1]), Number(parts[2]), Number(parts[3]), parts[4] === undefined ? 1 : Number(parts[4])];
};
const over = (upper, lower) => [0, 1, 2].map(i => upper[i] * upper[3] + lower[i] * (1 - upper[3])).concat(1);
const under = element => element ? over(parsed(getComputedStyle(element).backgroundColor), under(element.parentElement))
                                 : arguments[0];
const light = colour => {
  const [red, green, blue] = colour.map(part => part / 255)
    .map(part => part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4);
  return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
};
const contrast = (upper, lower) => {
  const [more, less] = [light(over(upper, lower)), light(lower)].sort((one, other) => other - one);
  return (more + 0.05) / (less + 0.05);
};
const found = {};
const add = (what, style, element) => {
  const here = [parseFloat(style.fontSize), contrast(parsed(style.color), under(element))];
  const before = found[what] || here;
  found[what] = [Math.min(here[0], before[0]), Math.min(here[1], before[1])];
};
for (const element of document.body.querySelectorAll('*')) {
  const style = getComputedStyle(element), name = element.localName;
  if (name === 'script') continue;
  if (name === 'input') {
    add('input', style, element);
    add('placeholder', getComputedStyle(element, '::placeholder'), element);
  } else if ([...element.childNodes].some(node => node.nodeType === Node.TEXT_NODE && node.data.trim())) {
    add(element.className && name === 'span' ? '.' + element.className : name, style, element);
  }
}
add('body', getComputedStyle(document.body), document.body);
return found;
"""
UNFOLD = "for (const fold of document.querySelectorAll('details')) fold.open = true;"
# The element that reaches furthest to the right, to say which it is.
WIDTH = """let widest = document.body;
for (const each of document.body.querySelectorAll('*'))
  if (each.getBoundingClientRect().right > widest.getBoundingClientRect().right) widest = each;
return [document.scrollingElement.scrollWidth, innerWidth, widest.localName + ': ' + widest.textContent.slice(0, 60)];"""
CELLS = """return [...document.querySelectorAll('td, th')].filter(each => each.checkVisibility())
  .map(each => each.getBoundingClientRect().width)"""
# What a browser paints under a page that paints nothing.
CANVAS = {"light": [255, 255, 255, 1], "dark": [18, 18, 18, 1]}


def emulate(page, width, theme):
    command = page.driver.execute_cdp_cmd
    command("Emulation.setDeviceMetricsOverride", {"width": width, "height": HEIGHT, "deviceScaleFactor": 1, "mobile": False})
    command("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": theme}]})


def picture(page, folder, name, width):
    """The page's top, as much as somebody looks at."""
    if folder is None:
        return
    folder.mkdir(parents=True, exist_ok=True)
    height = min(page.script("return document.scrollingElement.scrollHeight"), 2400)
    clip = {"x": 0, "y": 0, "width": width, "height": height, "scale": 1}
    shot = page.driver.execute_cdp_cmd("Page.captureScreenshot", {"clip": clip, "captureBeyondViewport": True})
    (folder / f"{name}.png").write_bytes(base64.b64decode(shot["data"]))


def check_theme(checks, page, name, width, theme):
    scroll, inner, widest = page.script(WIDTH)
    checks.expect(f"{name}: {scroll} of {inner} pixels are used" + (f"; {widest}" if scroll > inner else ""),
                  scroll <= inner == width)
    narrowest = min(page.script(CELLS))
    checks.expect(f"{name}: the narrowest column has {narrowest:.0f} pixels", narrowest >= NARROWEST)
    texts = page.script(TEXTS, CANVAS[theme])
    small = {what: size for what, (size, _) in texts.items() if size < SMALLEST_FONT}
    checks.expect(f"{name}: no text is smaller than {SMALLEST_FONT} pixels {small or ''}".rstrip(), texts and not small)
    what, (_, least) = min(texts.items(), key=lambda item: item[1][1])
    checks.expect(f"{name}: the least contrast, {least:.2f}, is that of {what}", least >= LEAST_CONTRAST)
    return set(texts)


def check(checks, page, folder, whole):
    """whole: the page must have all that the style sheet gives a colour."""
    found, backgrounds = set(), set()
    for folds in ("folded", "unfolded"):
        if folds == "unfolded":
            page.script(UNFOLD)
        for width in WIDTHS:
            for theme in CANVAS:
                emulate(page, width, theme)
                name = f"{page.path.stem}, {folds}, {width} wide, {theme}"
                found |= check_theme(checks, page, name, width, theme)
                backgrounds.add((theme, page.script("return getComputedStyle(document.body).backgroundColor")))
                picture(page, folder, name.replace(", ", "-").replace(" ", "-"), width)
    checks.expect(f"{page.path.stem}: two themes, of two backgrounds",
                  len(backgrounds) == len({each for _, each in backgrounds}) == 2)
    if whole:
        checks.expect_same(f"{page.path.stem}: all that has a colour was looked at", SHOWN - found, set())
    page.driver.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})
