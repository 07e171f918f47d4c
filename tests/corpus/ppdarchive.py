# SPDX-License-Identifier: MIT
"""The real PPDs of Debian's package openprinting-ppds, of the makers that this project uses."""
import base64
import importlib.machinery
import importlib.util
import lzma
import pathlib
import sys

ARCHIVE = "/usr/lib/cups/driver/openprinting-ppds"
MAKERS = ("Ricoh", "Kyocera", "Oce", "Brother", "Sharp", "Canon", "Epson", "Lexmark", "Samsung", "Oki", "Toshiba", "Konica")


def load_archive():
    """The package's driver is a Python program that holds the archive and an index of it."""
    sys.dont_write_bytecode = True
    loader = importlib.machinery.SourceFileLoader("openprinting_ppds", ARCHIVE)
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    index = module.load()
    return index, lzma.decompress(base64.b64decode(index.pop("ARCHIVE")))


def choose(index, count):
    """At most count keys, taken round robin over the makers and evenly over each maker's list."""
    lists = [sorted(key for key in index if key.split("/")[3].lower().startswith(maker.lower())) for maker in MAKERS]
    quotas = [0] * len(lists)
    while count and any(quota < len(keys) for quota, keys in zip(quotas, lists)):
        for number, keys in enumerate(lists):
            if count and quotas[number] < len(keys):
                quotas[number] += 1
                count -= 1
    return [keys[i * len(keys) // quota] for quota, keys in zip(quotas, lists) for i in range(quota)]


def extract(folder, count):
    """Writes count PPDs into the folder, unless they are there already; returns their paths."""
    folder = pathlib.Path(folder)
    done = folder / f".complete-{count}"
    if not done.exists():
        index, archive = load_archive()
        folder.mkdir(parents=True, exist_ok=True)
        for old in folder.glob("*.ppd"):
            old.unlink()
        for key in choose(index, count):
            start, length = index[key][0], index[key][1]
            name = "_".join(key.split("/")[3:]).replace(" ", "_").removesuffix(".ppd") + ".ppd"
            (folder / name).write_bytes(archive[start:start + length])
        done.touch()
    return sorted(folder.glob("*.ppd"))


def is_utf8(data):
    try:
        data.decode()
        return True
    except UnicodeDecodeError:
        return False


if __name__ == "__main__":
    print(len(extract(sys.argv[1], int(sys.argv[2]))), "PPDs")
