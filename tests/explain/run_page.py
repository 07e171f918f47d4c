#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads the HTML report as people do, in headless Chromium: its folds, the box that finds media, paper, and both themes.

Three pages: of an example, of 2,000 media in 20 languages with a name that attacks the page, and one with everything
odd in it. With --screenshots FOLDER each width and theme is also kept as a picture, for people to look at.
"""
import argparse
import base64
import json
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "cups")]
import page_looks  # noqa: E402
import page_runs  # noqa: E402
import page_source  # noqa: E402
from browser import Browser, missing  # noqa: E402
from checks import Checks  # noqa: E402

URI = "socket://192.0.2.10:9100"
PACKAGES = "chromium, chromium-driver, poppler-utils, python3-selenium"
LARGEST = 3_000_000
MEDIUM = "Medium 5123"
PATIENCE = 10

SHOWN = """return [...document.querySelectorAll('tbody.medium')].filter(each => each.checkVisibility())
    .map(each => each.querySelector('summary').textContent)"""
OPEN = "return [...document.querySelectorAll('details')].map(each => each.open)"
LINKS = """return [...document.querySelectorAll('nav a')].map(each => {
  const section = document.getElementById(each.getAttribute('href').slice(1));
  return section ? section.tagName + section.textContent : '' })"""
SECTIONS = "return [...document.querySelectorAll('h2')].map(each => 'H2' + each.textContent)"
LOADING = """const entry = performance.getEntriesByType('navigation')[0];
return [entry.domInteractive, entry.loadEventEnd]"""
# The time until the page is laid out again.
FINDING = """const box = document.querySelector('input'), started = performance.now();
box.value = arguments[0]; box.dispatchEvent(new Event('input')); document.body.offsetHeight;
return performance.now() - started"""
VIOLATION = """const [address, done] = arguments;
document.addEventListener('securitypolicyviolation', event => done(event.violatedDirective), {once: true});
setTimeout(() => done('none'), 5000); new Image().src = address;"""


class Page:
    """A report as a file, and what Chromium makes of it."""

    def __init__(self, browser, path):
        self.browser, self.driver, self.path = browser, browser.driver, path

    def load(self):
        self.browser.open(self.path.as_uri())

    def script(self, text, *arguments):
        return self.driver.execute_script(text, *arguments)

    def count(self, selector):
        return self.script("return document.querySelectorAll(arguments[0]).length", selector)

    def all(self, selector):
        return self.driver.find_elements("css selector", selector)

    def type(self, text):
        """Types into the box, over what was there; the media that are then shown."""
        box = self.browser.find("input")
        box.clear()
        box.send_keys(text)
        return self.script(SHOWN)

    def requests(self):
        """What was asked for since the last call."""
        messages = [json.loads(entry["message"])["message"] for entry in self.driver.get_log("performance")]
        return [message["params"]["request"]["url"] for message in messages
                if message["method"] == "Network.requestWillBeSent"]

    def printed(self):
        """The text on paper, in the order of the page, and the number of pages."""
        file = self.path.with_suffix(".pdf")
        file.write_bytes(base64.b64decode(self.driver.execute_cdp_cmd("Page.printToPDF", {})["data"]))
        text = subprocess.run(["pdftotext", file, "-"], capture_output=True, text=True, check=True).stdout
        return text.rstrip("\f"), text.count("\f")


def report(options, folder, name, ppd, snapshot):
    environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir), "QZVORANTISMODEL_SNAPSHOT": str(snapshot)}
    path = folder / f"{name}.html"
    with path.open("wb") as file:
        subprocess.run([options.explain, "--format=html", URI, ppd], env=environment, stdout=file, check=True)
    return path


def check_shape(checks, page, media):
    checks.expect_same(f"{page.path.stem}: one heading, and a row for each medium",
                       (page.count("h1"), page.count("tbody.medium")), (1, media))
    sections = page.script(SECTIONS)
    checks.expect(f"{page.path.stem}: the contents lead to the {len(sections)} sections",
                  len(sections) >= 5 and page.script(LINKS) == sections)
    page.all("nav a")[-1].click()
    checks.expect_same(f"{page.path.stem}: a click in the contents leads there",
                       page.script("return document.querySelector(':target').textContent"), sections[-1][2:])
    checks.expect_same(f"{page.path.stem}: the media are folded at first", page.count(".medium details[open]"), 0)


def check_folds(checks, page):
    """By mouse, and by keyboard alone: the box, Tab, Enter."""
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.keys import Keys
    first, second = page.all("tbody.medium")[:2]
    table = first.find_element("css selector", "table")
    before = table.is_displayed()
    first.find_element("css selector", "summary").click()
    checks.expect("a click opens a fold and shows its table", not before and table.is_displayed())
    first.find_element("css selector", "summary").click()
    checks.expect("another one closes it", not table.is_displayed())
    page.browser.find("input").click()
    ActionChains(page.driver).send_keys(*[Keys.TAB] * 4, Keys.ENTER).perform()
    checks.expect("box, four times Tab, Enter: the second row is unfolded, and no other",
                  second.find_element("css selector", "table").is_displayed() and page.count(".medium details[open]") == 1)
    ActionChains(page.driver).send_keys(Keys.ENTER).perform()


def check_box(checks, page):
    from selenium.webdriver.common.keys import Keys
    for what, text, found in (("its name", MEDIUM, MEDIUM), ("its name in other letters", MEDIUM.upper(), MEDIUM),
                              ("its ID", "5123", MEDIUM), ("a hostile name", "</DETAILS>", "<img src=x onerror=alert(1)>"),
                              ("the ID of a hostile one", page_runs.HOSTILE_ID, "<img src=x onerror=alert(1)>")):
        shown = page.type(text)
        checks.expect(f"the box finds a medium by {what}, and hides the others",
                      len(shown) == 1 and shown[0].startswith(found))
    checks.expect_same("blanks around it do not count", page.type(f"  {MEDIUM} "), [MEDIUM])
    count = "return document.querySelector('output').textContent"
    checks.expect_same("how many were found is said", page.script(count), f"1 of {page_runs.MEDIA}")
    checks.expect_same("what is nowhere hides all", page.type("no such medium")[:3], [])
    checks.expect_same("and it is said", page.script(count), "none found")
    checks.expect_same("the emptied box shows all", len(page.type("x" + Keys.BACKSPACE)), page_runs.MEDIA)
    times = ", ".join(f"{page.script(FINDING, text):.0f} ms" for text in (MEDIUM, "5", ""))
    print(f"        figure: finding one of {page_runs.MEDIA} media, most of them, and all again took {times}")


def check_lost(checks, page):
    """The media that lost something, by the state in their rows, which is no matter of colour alone."""
    page.browser.find("input[type=checkbox]").click()
    lost = page.script("return [...document.querySelectorAll('.medium.lost')].map(each => each.rows[0].cells[6].textContent)")
    checks.expect("there are media that lost something, and it is said", lost and set(lost) == {"lost something"})
    checks.expect_same("the filter shows them alone", len(page.script(SHOWN)), len(lost))
    page.browser.find("input[type=checkbox]").click()
    checks.expect_same("without it all are there", len(page.script(SHOWN)), page.count("tbody.medium"))


def check_hostile(checks, page):
    name = page.script("return [...document.querySelectorAll('tbody.medium')].map(each => each.rows[0].cells)"
                       f".find(each => each[1].textContent === '{page_runs.HOSTILE_ID}')?.[0].textContent")
    visible = page_runs.HOSTILE_NAME.encode("ascii", "backslashreplace").decode()
    checks.expect_same("the hostile name is text, its turns of direction visible", name, visible)
    checks.expect_same("it makes no element", (page.count("img"), page.count("script")), (0, 1))


def check_requests(checks, page):
    page.requests()
    page.load()
    checks.expect_same(f"{page.path.stem}: Chromium asks for the file alone",
                       [each for each in page.requests() if each != "data:,"], [page.path.as_uri()])


def is_asked(listener, seconds):
    """Whether anybody connects to the socket within the time."""
    listener.settimeout(seconds)
    try:
        listener.accept()[0].close()
    except TimeoutError:
        return False
    return True


def check_policy(checks, page):
    """The page's own policy forbids what escaping should have kept out; on a page without one the request is seen."""
    with socket.create_server(("127.0.0.1", 0)) as listener:
        address = f"http://127.0.0.1:{listener.getsockname()[1]}/x.png"
        refused = page.driver.execute_async_script(VIOLATION, address)
        checks.expect_same("the page's policy refuses an image from elsewhere", refused, "img-src")
        checks.expect("and nobody is asked for it", not is_asked(listener, 1))
        page.requests()
        other = page.path.with_name("other.html")
        # Behind its load event, since nobody answers.
        later = f"addEventListener('load', () => setTimeout(() => {{ new Image().src = '{address}'; }}))"
        other.write_text(f"<!DOCTYPE html><title>Another</title><script>{later}</script>")
        page.browser.open(other.as_uri())
        checks.expect("of a page without a policy the request is seen",
                      is_asked(listener, PATIENCE) and address in page.requests())


def check_paper(checks, page):
    before = page.script(OPEN)
    text, pages = page.printed()
    path = "/Library/ColorSync/Profiles/Custom/canvas satin.icc"
    fold = " ".join(text.split("What became of each medium", maxsplit=2)[-1].split("Changes of the PPD")[0].split())
    checks.expect(f"on paper ({pages} pages) the folds of the media are open", f"My Canvas, {path}" in fold)
    checks.expect("on paper no box stands", "Find a medium" not in text)
    checks.expect("afterwards the folds are as they were", page.script(OPEN) == before and False in before and True in before)
    # Browsers leave backgrounds out on paper unless they are asked for.
    changes = text.split("Changes of the PPD")[-1].splitlines()
    checks.expect("on paper what was removed can be told from what was added",
                  any(line.startswith("- *cupsICCProfile .Plain.") for line in changes) and
                  any(line.startswith("+ *cupsICCProfile .Plain.") for line in changes))


def check_large_paper(checks, page):
    page.type(MEDIUM)
    text, pages = page.printed()
    media = text.split("What became of each medium")[-1].split("Changes of the PPD")[0]
    checks.expect(f"the box leaves one medium to be printed ({pages} pages with all warnings and changes)",
                  media.count("setpagedevice") == 1 and media.count(".icc") == 1 and "medium5123.icc" in media)
    checks.expect_same("afterwards the others are hidden still",
                       [each[:len(MEDIUM)] for each in page.script(SHOWN)[:3]], [MEDIUM])
    checks.expect_same("and all are folded", page.count(".medium details[open]"), 0)


def check_large(checks, page):
    size = page.path.stat().st_size
    checks.expect(f"{page_runs.MEDIA} media in {len(page_runs.LANGUAGES.split())} languages: {size} bytes", size < LARGEST)
    page.load()
    checks.expect_same("no script of a name ran", dialogues(page.driver), [])
    interactive, loaded = page.script(LOADING)
    print(f"        figure: {page_runs.MEDIA} media were there after {interactive:.0f} ms, loaded after {loaded:.0f} ms")
    check_shape(checks, page, page_runs.MEDIA)
    check_hostile(checks, page)
    check_folds(checks, page)
    check_box(checks, page)
    check_large_paper(checks, page)
    check_requests(checks, page)
    check_policy(checks, page)


def dialogues(driver):
    """The texts of those that a script opened; each is closed."""
    from selenium.common.exceptions import NoAlertPresentException
    texts = []
    try:
        while True:
            dialogue = driver.switch_to.alert
            texts.append(dialogue.text)
            dialogue.accept()
    except NoAlertPresentException:
        return texts


def run(checks, options, folder):
    example = options.examples / "pcl3"
    runs = {"example": (example / "input.ppd", example / "snapshot.json"), "large": page_runs.large(folder, example),
            "odd": page_runs.odd(folder, example)}
    with Browser(folder / "browser", logs_requests=True) as browser:
        pages = {name: Page(browser, report(options, folder, name, *files)) for name, files in runs.items()}
        for page in pages.values():
            page_source.check(checks, page.path)
        check_large(checks, pages["large"])
        pages["example"].load()
        check_shape(checks, pages["example"], 3)
        check_paper(checks, pages["example"])
        check_requests(checks, pages["example"])
        pages["odd"].load()
        check_lost(checks, pages["odd"])
        for page in pages.values():
            page.load()
            page_looks.check(checks, page, options.screenshots, whole=page is pages["odd"])


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    for name in ("explain", "library-dir", "examples"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    parser.add_argument("--screenshots", type=pathlib.Path)
    options = parser.parse_args()
    absent = missing(files=()) + ("" if shutil.which("pdftotext") else " pdftotext")
    if absent:
        sys.exit(f"NOT TESTED: not installed: {absent} (packages {PACKAGES})")
    checks = Checks()
    with tempfile.TemporaryDirectory() as folder:
        run(checks, options, pathlib.Path(folder))
    return checks.status()


if __name__ == "__main__":
    sys.exit(main())
