#!/usr/bin/env python3
"""Checks what is installed for Windows: installed.py PREFIX. The library with its import library, and nothing exported
but its own."""
import pathlib
import re
import subprocess
import sys

TOOLS = "x86_64-w64-mingw32-"
# The compiler also exports the type information of types that exported classes refer to. It is data, and each library
# that refers to them has a copy.
OWN = re.compile(r"^((vtable|typeinfo|typeinfo name) for |(non-)?virtual thunk to )?VarnelAPI::Forms::|^typeinfo for ")
NEEDED = ["VarnelAPI::Forms::api::ApiClient::callApi(", "typeinfo for VarnelAPI::Forms::api::ApiException"]


def main():
    prefix = pathlib.Path(sys.argv[1])
    library = prefix / "bin/libVarnelForms.dll"
    for file in (library, prefix / "lib/libVarnelForms.dll.a", prefix / "lib/cmake/VarnelForms/VarnelFormsConfig.cmake"):
        if not file.is_file():
            sys.exit(f"{file} is not installed")
    table = subprocess.run([TOOLS + "objdump", "-p", library], check=True, capture_output=True, text=True).stdout
    names = re.findall(r"^\t\[ *\d+\] (?:\+base\[ *\d+\] *[0-9a-f]+ )?([A-Za-z_]\w*)$", table, re.MULTILINE)
    demangled = subprocess.run(
        [TOOLS + "c++filt"], input="\n".join(names), check=True, capture_output=True, text=True
    ).stdout.splitlines()
    foreign = [name for name in demangled if not OWN.search(name)]
    missing = [start for start in NEEDED if not any(name.startswith(start) for name in demangled)]
    if foreign or missing:
        sys.exit("\n".join(["the library exports what is not its own, or not what is:", *foreign, *missing]))
    print(f"{len(demangled)} names are exported, all of them the library's")


main()
