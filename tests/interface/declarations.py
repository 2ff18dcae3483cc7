"""Holds the declarations of the public headers, one a line, against declarations.txt beside this file:
`declarations.py SOURCE SCRATCH [--update]`. Doxygen reads the headers, with the macros of the properties expanded."""

import difflib
import pathlib
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ET

HEADERS = ["include", "tools/repository/include"]
SETTINGS = """
QUIET = YES
WARNINGS = NO
WARN_IF_DOC_ERROR = NO
WARN_IF_INCOMPLETE_DOC = NO
RECURSIVE = YES
FILE_PATTERNS = *.h
EXTRACT_ALL = YES
GENERATE_HTML = NO
GENERATE_LATEX = NO
GENERATE_XML = YES
XML_PROGRAMLISTING = NO
BUILTIN_STL_SUPPORT = YES
HAVE_DOT = NO
EXCLUDE_SYMBOLS = *::detail *::detail::* boost std web pplx
MACRO_EXPANSION = YES
SEARCH_INCLUDES = YES
PREDEFINED = VARNEL_FORMS_API= VARNEL_FORMS_CURL_API= VARNEL_FORMS_DETAIL_KEPT= "_XPLATSTR(text)=text" __cpp_impl_coroutine
"""
AT_LEAST = 2000


def text(element, path):
    found = element.find(path)
    return "" if found is None else " ".join("".join(found.itertext()).split())


def template(element):
    parameters = element.find("templateparamlist")
    if parameters is None:
        return ""
    written = []
    for parameter in parameters:
        name, default = text(parameter, "declname"), text(parameter, "defval")
        written.append(text(parameter, "type") + (f" {name}" if name else "") + (f" = {default}" if default else ""))
    return f"template <{', '.join(written)}> "


def member(owner, element):
    """The line of a member, which begins with its owner: so the lines of one stand together."""
    kind = element.get("kind")
    if element.get("prot") == "private" or "detail::" in text(element, "definition"):
        return
    head = f"{owner}: " + ("protected " if element.get("prot") == "protected" else "") + template(element)
    if kind == "define":
        parameters = [text(parameter, "defname") for parameter in element.findall("param")]
        if "_DETAIL_" not in text(element, "name"):
            yield f"#define {text(element, 'name')}" + (f"({', '.join(parameters)})" if parameters else "")
    elif kind == "enum":
        yield head + ("enum class " if element.get("strong") == "yes" else "enum ") + text(element, "name")
        for value in element.findall("enumvalue"):
            yield f"{owner}: {text(element, 'name')}::{text(value, 'name')} {text(value, 'initializer')}".rstrip()
    elif kind in ("function", "variable", "typedef", "friend"):
        words = [text(element, "definition") + text(element, "argsstring")]
        for word in ("explicit", "static"):
            if element.get(word) == "yes" and f"{word} " not in words[0]:
                words.insert(0, word)
        # The value of a constant, which programs have compiled in.
        if kind == "variable" and "constexpr" in words[-1]:
            words.append(text(element, "initializer"))
        yield head + " ".join(words).replace(f"{owner}::", "").strip()


def declarations(folder):
    lines = set()
    for path in folder.glob("*.xml"):
        compound = ET.parse(path).getroot().find("compounddef")
        if compound is None or compound.get("prot") == "private":
            continue
        name, kind = text(compound, "compoundname"), compound.get("kind")
        if kind in ("class", "struct", "union"):
            bases = [f"{base.get('prot')} {''.join(base.itertext())}" for base in compound.findall("basecompoundref")]
            final = " final" if compound.get("final") == "yes" else ""
            lines.add(f"{name}: {template(compound)}{kind}{final}" + (f" : {', '.join(bases)}" if bases else ""))
        elif kind not in ("namespace", "file"):
            continue
        for element in compound.iter("memberdef"):
            if kind != "file" or element.get("kind") == "define":
                lines.update(member(name, element))
    return sorted(lines)


def main():
    source, scratch = map(pathlib.Path, sys.argv[1:3])
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    folders = " ".join(f'"{source / folder}"' for folder in HEADERS)
    subprocess.run(["doxygen", "-"], input=f'{SETTINGS}INPUT = {folders}\nINCLUDE_PATH = {folders}\nOUTPUT_DIRECTORY = "{scratch}"\n',
                   check=True, text=True, timeout=60)
    found = declarations(scratch / "xml")
    if len(found) < AT_LEAST:
        sys.exit(f"only {len(found)} declarations: are they written in another way now?")
    committed = source / "tests/interface/declarations.txt"
    if "--update" in sys.argv:
        committed.write_text("\n".join(found) + "\n")
        return
    difference = list(difflib.unified_diff(committed.read_text().splitlines(), found, "declarations.txt", "the headers", n=0, lineterm=""))
    if difference:
        sys.exit("\n".join(difference) + "\nWhat programs can name has changed. If it is meant: scripts/interface --update, "
                 "and commit it;\nwhat may change, and when, is in CONTRIBUTING.md, \"How to change the interface\".")


main()
