"""Checks that every class and every property of the public headers has a comment above it, which tooltips show, and that
the line of an operation begins with its HTTP method, which reflowed comments lose."""

import pathlib
import re
import sys

NEEDS = re.compile(r"\s*(VARNEL_FORMS_(PROPERTY|FLAG|DETAIL_REF_GETTER)\w*\(|class VARNEL_FORMS_API )")
TEMPLATE = re.compile(r"template <.*>$")
TORN = re.compile(r"^\s*///.*\S (GET|PUT|POST|DELETE)( `|$)")


def faults(name, lines):
    inside_macro = False
    before = above = ""
    for number, line in enumerate(lines, 1):
        needs = NEEDS.match(line) or (TEMPLATE.match(above) and re.match(r"class \w+ .*\{(\};)?$", line))
        if needs and not inside_macro and not (before if TEMPLATE.match(above) else above).lstrip().startswith("///"):
            yield f"{name}:{number}: no comment above: {line.strip()}"
        if TORN.match(line) and " or " not in line:
            yield f"{name}:{number}: the method is torn from its line"
        inside_macro = line.endswith("\\")
        before, above = above, line


PLANTED = [
    ["/// One.", "class VARNEL_FORMS_API A : public Model {", "    VARNEL_FORMS_PROPERTY(int, A, a, \"a\");"],
    ["", "class VARNEL_FORMS_API A {};"],
    ["", "template <class T>", "class A {};"],
    ["    /// Lists them. GET `{location}`"],
    ["    /// Lists them, all of them. POST"],
]


def main():
    found = [f"planted and not found: {lines}" for lines in PLANTED if len(list(faults("planted", lines))) != 1]
    properties = 0
    for path in sorted(pathlib.Path(sys.argv[1], "include").rglob("*.h")):
        lines = path.read_text(encoding="utf-8").splitlines()
        found += faults(path.name, lines)
        properties += sum(line.startswith(("    VARNEL_FORMS_PROPERTY", "    VARNEL_FORMS_FLAG")) for line in lines)
    if properties < 200:
        found.append(f"only {properties} properties: are they written in another way now?")
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main())
