"""Holds the pages to the programs that they quote.

A block of C++, CMake or shell on a page is preceded by a comment that says what it is cut out of: a whole file, or a
region of it, which stands between two lines like "// [name]". The text is on the page too, so that the page reads as well
where nobody renders it:

    <!-- docs/programs/lists.cpp#open -->
    ```cpp
    ...
    ```

"<!-- in FILE -->" is for lines of a file that are shown as they stand, without marks in it.

Without options it says what is wrong: a block that differs, that is cut out of nothing, or that has no language; a link to
a file or heading that there is not; a guide without one of its sections, or missing in their list. A block of shell that is
cut out of nothing may name only what there is: scripts, presets, targets, options. With --update it writes what the regions
say into the pages."""

import argparse
import json
import pathlib
import re
import sys
import textwrap

QUOTED = {"cpp", "cmake", "sh", "python"}
FREE = {"json", "text"}
SECTIONS = ["## A program", "## What can go wrong"]
SKIPPED = {"build", ".git"}

MARK = re.compile(r"^\s*(?://|#) \[([\w-]+)\]\s*$")
BLOCK = re.compile(r"^(?:<!-- (?P<within>in )?(?P<source>[\w./-]+?)(?:#(?P<region>[\w-]+))? -->\n)?```(?P<language>\w*)\n"
                   r"(?P<text>.*?)^```$", re.M | re.S)
LINK = re.compile(r"(?<!!)\[[^\]]*\]\(([^)\s]+)\)|!\[[^\]]*\]\(([^)\s]+)\)")


def flush_left(lines):
    """The lines, without empty ones around them, as far to the left as they go."""
    text = textwrap.dedent("".join(line.rstrip() + "\n" for line in lines)).strip("\n")
    return text + "\n" if text else ""


def region(text, name):
    """What stands between the marks of that name, or all without one, but for marks; None if it is never begun, or not
    ended. Several pieces are one after the other."""
    pieces, isInside = [[]] if name is None else [], name is None
    for line in text.splitlines():
        mark = MARK.match(line)
        if mark and mark[1] == name:
            isInside = not isInside
            pieces += [[]] if isInside else []
        elif isInside and not mark:
            pieces[-1].append(line)
    if not pieces or (isInside and name is not None):
        return None
    return "".join(map(flush_left, pieces))


def anchors(text):
    """The addresses of a page's headings, as the repository's web view makes them."""
    text = re.sub(r"^```.*?^```$", "", text, flags=re.M | re.S)
    return {re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")
            for heading in re.findall(r"^#+ (.*)$", text, re.M)}


class Project:
    def __init__(self, root):
        self.root = root
        self.builds = "\n".join(path.read_text() for path in self.files("CMakeLists.txt"))
        presets = json.loads((root / "CMakePresets.json").read_text()) if (root / "CMakePresets.json").exists() else {}
        self.presets = {preset["name"] for kind in presets.values() if isinstance(kind, list) for preset in kind}

    def files(self, pattern):
        return sorted(path for path in self.root.rglob(pattern)
                      if not any(part in SKIPPED or part.startswith("build-")
                                 for part in path.relative_to(self.root).parts))

    def unknown(self, shell):
        """What a block of shell names that there is not."""
        def isThere(kind, name):
            if kind == "target":
                return re.search(rf"\b(?:add_executable|add_library)\({name}\b|foreach\(\w+ [\w ]*\b{name}\b", self.builds)
            if kind == "program": # a target, or the name that it is given
                return re.search(rf"\b{name}\b", self.builds)
            if kind == "option":
                return name in self.builds
            return name in self.presets if kind == "preset" else (self.root / name).exists()
        for kind, pattern in (("preset", r"--(?:build --)?preset[ =](\S+)"), ("preset", r"\bbuild/(\w+)/"),
                              ("target", r"--target (\w+)"), ("option", r"-D((?:VARNEL|BUILD)_\w+)="),
                              ("file", r"(?<![\w/.-])((?:scripts|examples|docs|tools|tests|cmake)/[\w./-]+)"),
                              ("program", r"\bbuild/\w+/[\w/]+/([\w-]+)")):
            for name in re.findall(pattern, shell):
                if not isThere(kind, name):
                    yield f"there is no {kind} {name}"

    def wanted(self, block):
        """What the block should say, and what is wrong with where it comes from."""
        language, source = block["language"], block["source"]
        if source is None:
            if not language:
                return None, ["a block has no language"]
            if language == "sh":
                return None, list(self.unknown(block["text"]))
            return None, [] if language in FREE else [f"a block of {language} is cut out of nothing"]
        if language not in QUOTED:
            return None, [f"a block of {language or 'no language'} is said to be cut out of {source}"]
        path = self.root / source
        if not path.is_file():
            return None, [f"there is no file {source}"]
        if block["within"]:
            lines = [line.strip() for line in block["text"].splitlines()]
            isThere = "\n".join(lines) in "\n".join(line.strip() for line in path.read_text().splitlines())
            return None, [] if isThere and lines else [f"the block is not in {source}"]
        text = region(path.read_text(), block["region"])
        return text, [] if text else [f"{source} has no region {block['region']}"]

    def look(self, page, update):
        """What is wrong with a page, which is mended where it can be."""
        text = page.read_text()
        faults = []

        def mended(block):
            wanted, wrong = self.wanted(block)
            line = text.count("\n", 0, block.start()) + 1
            faults.extend(f"{line}: {fault}" for fault in wrong)
            if wanted is None or wanted == block["text"]:
                return block[0]
            if not update:
                name = block["source"] + ("#" + block["region"] if block["region"] else "")
                faults.append(f"{line}: the block is not what {name} says; scripts/docs --update")
            return block[0].replace(f"```{block['language']}\n{block['text']}", f"```{block['language']}\n{wanted}")

        new = BLOCK.sub(mended, text)
        if update and new != text:
            page.write_text(new)
        prose = BLOCK.sub("", text)
        if re.search(r"^(?:    |\t)[^\s|*-].*$", re.sub(r"^( *(?:[-*]|\d+\.) .*\n(?:.+\n)*)", "", prose, flags=re.M), re.M):
            faults.append("a block is indented: fence it, so that it has a language")
        for plain, picture in LINK.findall(re.sub(r"`[^`\n]*`", "", prose)):
            fault = self.broken(page, plain or picture)
            if fault:
                faults.append(fault)
        return faults

    def broken(self, page, link):
        if re.match(r"\w+:", link):
            return None
        name, _, anchor = link.partition("#")
        target = (page.parent / name).resolve() if name else page
        if not target.exists():
            return f"there is nothing at {link}"
        if anchor and target.suffix == ".md" and anchor not in anchors(target.read_text()):
            return f"there is no such heading: {link}"
        return None

    def guides(self):
        folder = self.root / "docs/guides"
        listed = (folder / "README.md").read_text() if (folder / "README.md").exists() else ""
        for guide in sorted(folder.glob("*.md")):
            if guide.name == "README.md":
                continue
            headings = re.findall(r"^## .*$", guide.read_text(), re.M)
            for section in SECTIONS:
                if not any(heading.startswith(section) for heading in headings):
                    yield f"docs/guides/{guide.name}: there is no section \"{section[3:]}\""
            if f"({guide.name})" not in listed:
                yield f"docs/guides/README.md: {guide.name} is not listed"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("root", type=pathlib.Path, nargs="?", default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("--update", action="store_true")
    options = parser.parse_args()
    project = Project(options.root.resolve())
    faults = [f"{page.relative_to(project.root)}:{fault}" for page in project.files("*.md")
              for fault in project.look(page, options.update)] + list(project.guides())
    if faults:
        sys.exit("\n".join(faults))


if __name__ == "__main__":
    main()
