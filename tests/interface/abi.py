"""Holds the binary interface of the shared libraries that are installed against the dumps beside this file:
`abi.py SOURCE SCRATCH LIBRARY... [--update]`. The libraries have debug information."""

import pathlib
import subprocess
import sys

BREAKS = ("This breaks programs that were built with the library. Undo it, or begin a new major version:\n"
          "CONTRIBUTING.md, \"How to change the interface\".")
ADDS = "Programs don't break by this. If it is meant: scripts/interface --update, and commit the dump."


def dump(library, source, out):
    command = ["abidw", "--suppressions", str(source / "tests/interface/others.abignore"), "--drop-undefined-syms",
               "--exported-interfaces-only", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-elf-needed",
               "--no-parameter-names", "--type-id-style", "hash", "--out-file", str(out), str(library)]
    subprocess.run(command, check=True)


def compare(old, new, *options):
    """What abidiff says, if it says that there is a difference."""
    result = subprocess.run(["abidiff", *options, str(old), str(new)], capture_output=True, text=True)
    if result.returncode & 3 or result.stderr:
        sys.exit(f"abidiff failed:\n{result.stdout}{result.stderr}")
    return result.stdout if result.returncode else ""


def main():
    words = [word for word in sys.argv[1:] if word != "--update"]
    source, scratch = map(pathlib.Path, words[:2])
    scratch.mkdir(parents=True, exist_ok=True)
    wrong = []
    for library in map(pathlib.Path, words[2:]):
        name = library.name.split(".")[0] + ".abi"
        committed = source / "tests/interface" / name
        found = scratch / name
        dump(library, source, found)
        if "--update" in sys.argv:
            committed.write_bytes(found.read_bytes())
        elif text := compare(committed, found, "--no-added-syms"):
            wrong.append(f"{library.name}:\n{text}\n{BREAKS}")
        elif text := compare(committed, found):
            wrong.append(f"{library.name}:\n{text}\n{ADDS}")
    sys.exit("\n".join(wrong) or 0)


main()
