# SPDX-License-Identifier: MIT
"""PPDs and snapshots of runs whose pages are hard to show: one of many media, and one that has everything odd in it."""
import json

MEDIA = 2000
LANGUAGES = b"en de fr it es pt nl da sv fi no pl cs hu ru tr ja ko zh_CN zh_TW"
HOSTILE_ID = "6666"
# Scripts, the end of the fold, and characters that turn the direction of text.
HOSTILE_NAME = "<img src=x onerror=alert(1)> </details>\u202e\u2067evil\u2066<script>alert(2)</script>"
LONG_WORD = "Unbreakable" * 20


def medium(number, name, profile_name="Canvas"):
    number = str(number)
    profile = {"URL": f"file:///Library/ColorSync/Profiles/Custom/medium{number}.icc", "ICCName": profile_name}
    return {"Name": name, "MediumID": number, "CategoryName": "Custom", "CategoryID": "CUSTOM", "ParentID": "1002",
            "ICCProfiles": [profile]}


def write(folder, name, example, media, replaced, replacement):
    """The example's PPD with another text in it, and its snapshot with other media."""
    ppd, snapshot = folder / f"{name}.ppd", folder / f"{name}.json"
    text = (example / "input.ppd").read_bytes()
    if replaced not in text:
        raise ValueError(f"{example}/input.ppd has no {replaced}")
    ppd.write_bytes(text.replace(replaced, replacement))
    content = json.loads((example / "snapshot.json").read_text())
    storage = content["devices"][0]["dataStore"]["VMCustomMediaStorage"]
    storage["MediaInfo"] = {each["MediumID"]: each for each in media}
    snapshot.write_text(json.dumps(content))
    return ppd, snapshot


def large(folder, example):
    """As many media and languages as one may have, and one name that attacks the page."""
    numbers = range(5000, 5000 + MEDIA)
    media = [medium(each, HOSTILE_NAME if str(each) == HOSTILE_ID else f"Medium {each}") for each in numbers]
    return write(folder, "large", example, media, b'*cupsLanguages: "en de fr"', b'*cupsLanguages: "%b"' % LANGUAGES)


def odd(folder, example):
    """Every colour: a profile that is replaced, a medium and a profile that are left out, an unknown updater; long words."""
    nameless = medium(5001, None)
    del nameless["Name"]
    factory = {**medium(1001, "Plain Paper"), "CategoryID": "PLAIN"}
    media = [factory, nameless, medium(5002, "Canvas", 'No "such" name'), medium(5003, LONG_WORD)]
    updaters = b'*QZPPDUpdaters: "ATMediaTypePCL3PPDUpdater'
    return write(folder, "odd", example, media, updaters, updaters + b" " + LONG_WORD.encode())
