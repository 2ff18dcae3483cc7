"""Holds what the library costs its users against weights.txt beside this file, with room of a tenth, or of 100: the lines that the
preprocessor makes of each public header, which all who include it compile in each of their files, and the bytes of the
stripped libraries, by the type of their build."""

import argparse
import pathlib
import subprocess
import sys
import tempfile


def lines(compiler, include, header):
    """Of the kit what it makes together with an API class, beside which it is used."""
    text = f"#include <{header}>\n"
    if "/kit/" in header:
        text = "#include <VarnelAPI/Forms/api/ListTreeApi.h>\n" + text
    standard = "c++20" if header.endswith("/Coroutines.h") else "c++17" # which is C++20 only
    command = [compiler, f"-std={standard}", "-E", "-P", "-I", include, "-x", "c++", "-"]
    return subprocess.run(command, input=text, text=True, check=True, stdout=subprocess.PIPE).stdout.count("\n")


def stripped_size(library):
    with tempfile.NamedTemporaryFile() as file:
        subprocess.run(["strip", "-o", file.name, library], check=True)
        return pathlib.Path(file.name).stat().st_size


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("source", type=pathlib.Path)
    parser.add_argument("build_type")
    parser.add_argument("library", type=pathlib.Path, nargs="+")
    parser.add_argument("--compiler", help="measures the headers, too")
    parser.add_argument("--update", action="store_true", help="writes the figures")
    options = parser.parse_args()

    found = {f"{library.name.split('.')[0]}, {options.build_type}": stripped_size(library) for library in options.library}
    if options.compiler:
        include = options.source / "include"
        for header in sorted(include.rglob("*.h")):
            name = header.relative_to(include).as_posix()
            found[name] = lines(options.compiler, include, name)

    file = options.source / "tests/interface/weights.txt"
    committed = {}
    for line in file.read_text().splitlines() if file.exists() else []:
        figure, name = line.split(maxsplit=1)
        committed[name] = int(figure)
    if options.update:
        if options.compiler: # A header that is no more has no figure.
            committed = {name: figure for name, figure in committed.items() if not name.endswith(".h")}
        weights = sorted((committed | found).items())
        file.write_text("".join(f"{figure:>9} {name}\n" for name, figure in weights))
        return
    wrong = [f"{name} has no figure" for name in found if name not in committed]
    wrong += [f"{name}: {figure:,}, and {committed[name]:,} was committed: more than a tenth above"
              for name, figure in found.items() if name in committed and figure > max(committed[name] * 11 // 10, committed[name] + 100)]
    if options.compiler:
        wrong += [f"{name} is no more" for name in committed if name.endswith(".h") and name not in found]
    if wrong:
        sys.exit("\n".join(wrong) + "\nTake out what users pay for and don't need; if it is worth its cost: "
                 f"{'scripts/interface' if options.compiler else 'scripts/packages'} --update, and commit it.")


main()
