# SPDX-License-Identifier: MIT
"""A folder of snapshots and base PPDs as large as one may get, and names that a scheduler's list of drivers cannot
take."""
import os

SNAPSHOTS, PPDS, MEDIA, MODELS = 100, 100, 100, 10
PPD_SIZE = 200_000
PADDING = b'*QZPadding Entry%d/Entry: "A statement that only makes the file longer"\n'


def with_media(devices, count, model):
    """The example's device, of another model and with so many custom media."""
    devices[0]["modelName"] = f'"{model}"'
    storage = devices[0]["dataStore"]["VMCustomMediaStorage"]
    medium = storage["MediaInfo"]["4711"]
    storage["MediaInfo"] = {str(number): {**medium, "MediumID": str(number), "Name": f"Medium {number}"}
                            for number in range(5000, 5000 + count)}


def model_name(number):
    return f"Vorantis Y{number % MODELS} 44in"


def fill(driver):
    """Fills the folder; the number of lines that list prints of it."""
    driver.clear()
    padding = b"".join(PADDING % number for number in range(PPD_SIZE // len(PADDING)))
    for number in range(SNAPSHOTS):
        model = model_name(number)
        driver.snapshot(f"plotter{number}", lambda devices, model=model: with_media(devices, MEDIA, model))
    for number in range(PPDS):
        driver.ppd(f"base{number}.ppd", driver.of_model(model_name(number)) + padding)
    return SNAPSHOTS // MODELS * (PPDS // MODELS) * MODELS


def maker(name):
    """Puts a PPD with that maker's name first in the list."""
    changed = b'*Manufacturer: "%b"' % name
    return lambda driver: driver.ppd("a.ppd", driver.base.replace(b'*Manufacturer: "Vorantis"', changed))


def model(name):
    """Puts a snapshot and a PPD of that model first in the list."""
    def change(driver):
        driver.snapshot("a", lambda devices: devices[0].update(modelName=f'"{name}"'))
        driver.ppd("a.ppd", driver.of_model(name))
    return change


def device_id(text):
    return lambda driver: driver.ppd("a.ppd", driver.base + b'*1284DeviceID: "%b"\n' % text)


# The scheduler takes names of 255 bytes, makers of 127 and models of 127; it ends reading at a line that is no line.
ODDITIES = {
    "a PPD's name of 250 bytes": lambda driver: driver.ppd("a" * 246 + ".ppd", driver.base),
    "a snapshot's name of 250 bytes": lambda driver: driver.snapshot("a" * 245),
    "a quotation mark in a PPD's name": lambda driver: driver.ppd('a"a.ppd', driver.base),
    "a quotation mark in a snapshot's name": lambda driver: driver.snapshot('a"a'),
    "a line's end in a PPD's name": lambda driver: driver.ppd("a\na.ppd", driver.base),
    "a line's end in a snapshot's name": lambda driver: driver.snapshot("a\na"),
    "a PPD's name that is no UTF-8": lambda driver: driver.ppd(os.fsdecode(b"a\xff.ppd"), driver.base),
    "a maker's name of 200 bytes": maker(b"M" * 200),
    "an empty maker's name": maker(b""),
    "a maker's name that is no UTF-8": maker(b"M\xfcller"),
    "a model's name of 200 bytes": model("M" * 200),
    "a device ID of 400 bytes": device_id(b"MFG:Vorantis;MDL:" + b"M" * 382 + b";"),
    "an empty device ID": device_id(b""),
}
