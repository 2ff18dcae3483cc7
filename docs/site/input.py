"""Makes, of the pages and public headers, what Doxygen reads: `input.py ROOT FOLDER`.

Pages: each heading gets an address, and each link to a page or heading the form that Doxygen knows; a link to what the site
does not have becomes its text. Headers: each property macro becomes the accessors that it writes, under the name that the
property has on the wire. Lines stay where they are, so that a warning names the right one."""

import pathlib
import re
import shutil
import sys

import_path = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(import_path))
from blocks import anchors  # noqa: E402

# In the order of the site.
PAGES = ["README.md", "docs/guides/README.md", "docs/kit.md", "docs/behaviour.md", "docs/performance.md",
         "tools/repository/README.md", "tools/cli/README.md", "ARCHITECTURE.md", "CONTRIBUTING.md", "CHANGELOG.md"]

PROPERTY = re.compile(r"(?P<comment>(?:^[ ]*///.*\n)*)^[ ]*VARNEL_FORMS_(?P<kind>PROPERTY|FLAG)(?P<ref>_REF)?(?P<named>_NAMED)?"
                      r"\((?P<arguments>[^;]*?)\);", re.M)


def page_id(name):
    return "page_" + re.sub(r"\W+", "_", name.removesuffix(".md").lower())


class Pages:
    def __init__(self, root):
        self.root = root
        guides = sorted(path.relative_to(root).as_posix() for path in (root / "docs/guides").glob("*.md"))
        self.names = [name for name in PAGES if (root / name).exists()]
        # In the order of their list.
        listed = re.findall(r"\]\(([\w-]+\.md)\)", (root / "docs/guides/README.md").read_text())
        self.guides = sorted((name for name in guides if name not in self.names),
                             key=lambda name: listed.index(name.rsplit("/", 1)[1]))
        self.names += self.guides

    def link(self, page, match):
        text, target = match[1], match[2]
        if re.match(r"\w+:", target):
            return match[0]
        name, _, anchor = target.partition("#")
        path = ((self.root / page).parent / name).resolve() if name else self.root / page
        name = path.relative_to(self.root).as_posix()
        if name not in self.names:
            return text if text.startswith("`") else f"`{text}`" if "." in text or "/" in text else text
        if anchor:
            return f"[{text}](@ref {page_id(name)}_{anchor})"
        if page == "docs/guides/README.md" and name in self.guides:
            return f'@subpage {page_id(name)} "{text}"'
        return f"[{text}](@ref {'index' if name == 'README.md' else page_id(name)})"

    def write(self, page, folder):
        seen, lines, is_code = set(), [], False
        for line in (self.root / page).read_text().splitlines():
            if line.startswith("```"):
                is_code = not is_code
            elif is_code:
                pass
            elif re.match(r"<!-- .* -->$", line):
                line = ""
            elif heading := re.match(r"(#+) (.*)$", line):
                (anchor,) = anchors(line)
                label = page_id(page) + ("" if heading[1] == "#" else "_" + anchor)
                while label in seen:
                    label += "_"
                seen.add(label)
                line += " {#" + ("mainpage" if label == page_id("README.md") else label) + "}"
            else:
                pieces = re.split(r"(`+[^`]*`+(?!\]\())", line)
                line = "".join(piece if piece.startswith("`") else
                               re.sub(r"!\[([^\]]*)\]\((?:[^)]*/)?([\w.-]+)\)", r'@image html \2', piece) for piece in pieces)
                line = re.sub(r"(?<!!)\[([^\]]*)\]\(([^)\s]+)\)", lambda match: self.link(page, match), line)
            lines.append(line)
        target = folder / page
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text("\n".join(lines) + "\n")


def accessors(match):
    """What a property macro writes; see model/Property.h."""
    arguments = [argument.strip() for argument in re.split(r",(?![^<]*>)", match["arguments"].replace("\n", " "))]
    value = "bool" if match["kind"] == "FLAG" else arguments.pop(0)
    stem, name, key = arguments[:3]
    flag, unset = arguments[3:] if match["named"] else (name + "IsSet", "unset" + stem)
    getter = ("is" if match["kind"] == "FLAG" else "get") + stem
    comment = " ".join(line.strip().removeprefix("///").strip() for line in match["comment"].splitlines())
    wire = key.strip('"')
    getters = f"{value} {getter}() const; "
    if match["ref"] or match["named"]:
        getters = (f"{value}& {getter}(); "
                   f"/** What `{name}` is. */ const {value}& {getter}() const; ")
    text = (f"/** @name \"{wire}\" on the wire */ /** {comment} @{{ */ {getters}"
            f"/** Sets `{name}`: it is sent from now on. */ void set{stem}({value} value); "
            f"/** Whether `{name}` is sent. */ bool {flag}() const; "
            f"/** Lets `{name}` be sent no more; its value stays. */ void {unset}(); "
            f"/** Its name in filters, selections and orders: \"{wire}\". */ "
            f"static constexpr PropertyName<Self, {value}> {name}{{{key}}}; /** @}} */")
    # As many lines as there were.
    return "\n" * match[0].count("\n") + text


def drop_line(match):
    """The line, unless it has a comment, which then belongs to it."""
    before = match.string[:match.start()].rsplit("\n", 1)[-1].strip()
    return match[0] if before.startswith("///") else "\n"


# What is no declaration of its own.
OTHERS = ("VARNEL", "template", "class ", "namespace", "public", "protected", "private", "return", "}")


def share(text):
    """A declaration right below one that has a comment shares it."""
    lines, comment, is_open = [], [], False
    for line in text.splitlines():
        words = line.strip()
        if words.startswith("///"):
            comment = ([] if is_open else comment) + [words.removeprefix("///").strip()]
            is_open = False
        elif is_open and comment and re.match(r"[\w:~].*[;}]$", words) and not words.startswith(OTHERS) and "///<" not in words:
            line = re.sub(r"^ *", lambda indent: f"{indent[0]}/** {' '.join(comment)} */ ", line)
        elif not words or words.endswith(("{", ":")) or words in ("}", "};"):
            comment, is_open = [], False
        if words.endswith((";", "}")) and comment and not any(mark in " ".join(comment) for mark in ("@{", "@}")):
            is_open = True
        lines.append(line)
    return "\n".join(lines) + "\n"


def write_header(source, target):
    text = source.read_text()
    # What every class has, where nothing is said of it.
    text = re.sub(r"(\n[ ]*(?:explicit )?(?:virtual )?(?:(\w+)& operator=|~?(\w+))\((?:(?:const )?(?:\2|\3)\s*&&?)?\)"
                  r"(?: noexcept| override| = (?:default|delete))*;)(?=.*\n)", drop_line, text)
    text = share(text)
    # Operators, and the types that an iterator has, mean what they always do.
    text = re.sub(r"(\n +(?:(?:friend )?(?:[\w:&]+ )?operator ?[\w:=!+*<>&|]*\(.*[;}]|"
                  r"using (?:iterator_category|value_type|difference_type|pointer|reference) = .*;))(?=\n)", drop_line, text)
    # They are there as inherited ones.
    text = re.sub(r"^ *using \w+::\w+;$", "", text, flags=re.M)
    if source.name != "Property.h":
        text = PROPERTY.sub(accessors, text)
        if re.search(r"^\s*VARNEL_FORMS_(PROPERTY|FLAG)", text, re.M):
            sys.exit(f"{source}: a property macro that {__file__} does not know")
    target.parent.mkdir(parents=True, exist_ok=True)
    target.write_text(text)


def main():
    root, folder = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    shutil.rmtree(folder, ignore_errors=True)
    pages = Pages(root)
    for page in pages.names:
        pages.write(page, folder)
    for part in ("include", "tools/repository/include"):
        for header in sorted((root / part).rglob("*.h")):
            if "detail" not in header.relative_to(root).parts:
                write_header(header, folder / header.relative_to(root))
    # Doxygen shows pages in the order in which it reads them.
    (folder / "order").write_text("".join(f"INPUT += {folder / page}\n" for page in pages.names))


main()
