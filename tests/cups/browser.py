# SPDX-License-Identifier: MIT
"""The scheduler's own web interface in a headless browser: what somebody does there who adds a printer by hand."""
import importlib.util
import pathlib
import shutil

TEMPLATES = pathlib.Path("/usr/share/cups/templates/choose-model.tmpl")
ADMIN_PROGRAM = pathlib.Path("/usr/lib/cups/cgi-bin/admin.cgi")
PACKAGES = "chromium, chromium-driver, python3-selenium, cups, cups-server-common"
PATIENCE = 60


def missing(files=(TEMPLATES, ADMIN_PROGRAM)):
    """What is not installed, in words; empty when all is."""
    absent = [name for name in ("chromium", "chromedriver") if shutil.which(name) is None]
    absent += [str(path) for path in files if not path.exists()]
    if importlib.util.find_spec("selenium") is None:
        absent.append("selenium")
    return " ".join(absent)


class Browser:
    """Chromium without a window, with a profile of its own; it can log every request that its pages make."""

    def __init__(self, folder, logs_requests=False):
        from selenium import webdriver
        from selenium.webdriver.chrome.service import Service
        options = webdriver.ChromeOptions()
        options.binary_location = shutil.which("chromium")
        for argument in ("--headless", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu", "--no-first-run",
                         "--disable-background-networking", "--disable-component-update", "--no-proxy-server",
                         "--window-size=1280,2400", f"--user-data-dir={folder}"):
            options.add_argument(argument)
        if logs_requests:
            options.set_capability("goog:loggingPrefs", {"performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)
        self.driver.set_page_load_timeout(PATIENCE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.driver.quit()

    def open(self, address):
        self.driver.get(address)

    def find(self, selector):
        """The element, once a page has it: some pages load themselves again until they have."""
        from selenium.common.exceptions import StaleElementReferenceException, TimeoutException
        from selenium.webdriver.support.ui import WebDriverWait
        wait = WebDriverWait(self.driver, PATIENCE, ignored_exceptions=[StaleElementReferenceException])
        try:
            return wait.until(lambda driver: (driver.find_elements("css selector", selector) or [None])[0])
        except TimeoutException:
            raise TimeoutError(f"no page with {selector} came; this one did: {self.text()}") from None

    def text(self):
        return " ".join(self.driver.execute_script("return document.body.innerText").split())[:500]

    def press(self, label, near=""):
        """Presses a button; near is the selector of something in its form."""
        form = f"form:has({near}) " if near else ""
        self.find(f'{form}input[type="submit"][value="{label}"]').click()

    def type(self, field, text):
        element = self.find(f'input[name="{field}"]')
        element.clear()
        element.send_keys(text)

    def choices(self, field):
        """The value and text of each choice of a list."""
        self.find(f'select[name="{field}"] option')
        return [(option.get_attribute("value"), " ".join(option.get_attribute("textContent").split()))
                for option in self.driver.find_elements("css selector", f'select[name="{field}"] option')]

    def choose(self, field, value):
        self.find(f'select[name="{field}"] option[value="{value}"]').click()


def add_printer(browser, address, queue, uri, make, name):
    """Through the pages, from Administration to the one that says that the printer was added. The models offered."""
    browser.open(f"http://{address}/admin")
    browser.press("Add Printer")
    browser.find('input[name="DEVICE_URI"][value^="socket"]').click()
    browser.press("Continue", 'input[name="DEVICE_URI"][type="radio" i]')
    browser.type("DEVICE_URI", uri)
    browser.press("Continue", 'input[name="DEVICE_URI"][type="url" i]')
    browser.type("PRINTER_NAME", queue)
    browser.press("Continue", 'input[name="PRINTER_NAME"]')
    browser.choose("PPD_MAKE", make)
    browser.press("Continue", 'select[name="PPD_MAKE"]')
    models = browser.choices("PPD_NAME")
    browser.choose("PPD_NAME", name)
    browser.press("Add Printer", 'select[name="PPD_NAME"]')
    browser.find(f'a[href="/printers/{queue}"]')
    return models


def media_types(browser, address, queue):
    """The choices of the page Set Printer Options, which comes when it is chosen from a list on the queue's page."""
    browser.open(f"http://{address}/printers/{queue}")
    browser.choose("OP", "set-printer-options")
    return browser.choices("MediaType")
