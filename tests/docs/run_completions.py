#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Holds the completion of bash, fish and zsh to the options that the programs' own help shows."""
import argparse
import pathlib
import re
import subprocess
import sys

PROGRAMS = {"vorantis-autosetup-explain": "explain", "vorantis-device-snapshot": "capture"}

# What zsh itself completes at the end of a command line, asked for in a terminal of its own.
ZSH = r"""
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell 'fpath=(%(folder)s $fpath); autoload -U compinit; compinit -D -u; LISTMAX=0; PS1=; stty -echo; print ready'
zpty -r shell output '*ready*ready*'
zpty -w -n shell $'%(program)s --\t\t'
sleep 1
while zpty -r -t shell line; do print -rn -- "$line"; done
zpty -d shell
"""


def options_of(program):
    """The long options in the help of a program."""
    usage = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    return set(re.findall(r"^ +(?:-\w, )?(--[a-z-]+)", usage, re.MULTILINE))


def in_bash(folder, name):
    function = "_" + name.replace("-", "_")
    script = (f'. "{folder}/{name}.bash"; COMP_WORDS=({name} --); COMP_CWORD=1; {function}; printf "%s\\n" "${{COMPREPLY[@]}}"')
    return subprocess.run(["bash", "-c", script], capture_output=True, text=True, check=False).stdout


def in_fish(folder, name):
    return subprocess.run(["fish", "--no-config", "-c", f'source "{folder}/{name}.fish"; complete -C "{name} --"'],
                          capture_output=True, text=True, check=False).stdout


def in_zsh(folder, name):
    return subprocess.run(["zsh", "-f", "-c", ZSH % {"folder": folder, "program": name}], capture_output=True, text=True,
                          timeout=60, check=False).stdout


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--completions", type=pathlib.Path, required=True)
    options = parser.parse_args()
    failed = 0
    for name, folder in PROGRAMS.items():
        wanted = options_of(options.build / folder / name)
        for shell in (in_bash, in_fish, in_zsh):
            completed = set(re.findall(r"--[a-z-]*[a-z]", shell(options.completions.resolve(), name)))
            missing, more = wanted - completed, completed - wanted
            failed += bool(missing or more)
            print(f"{'FAILED' if missing or more else 'passed'}  {name} {shell.__name__.replace('_', ' ')}: "
                  f"{len(wanted)} options{', missing ' + ' '.join(sorted(missing)) if missing else ''}"
                  f"{', not in the help ' + ' '.join(sorted(more)) if more else ''}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
