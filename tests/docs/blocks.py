"""The pages are as the programs say; and docs/blocks.py finds each mistake of a page, one at a time. SOURCE is the project."""

import pathlib
import subprocess
import sys
import tempfile

source = pathlib.Path(sys.argv[1])
tool = source / "docs/blocks.py"

GUIDE = """# A

## A program

<!-- docs/programs/a.cpp#two -->
```cpp
int a;

  int b;
int c;
```

```sh
scripts/test --preset dev && cmake --build --preset dev --target thing -DVARNEL_X=ON && build/dev/docs/programs/thing
```

See [below](#what-can-go-wrong), [the list](README.md#one-two) and `[no](link)`.

## What can go wrong

- Text, and more
    of it.
"""
PROJECT = {
    "docs/programs/a.cpp": "// [two]\n    int a;\n\n    // [one]\n      int b;\n    // [one]\n// [two]\n-\n// [two]\nint c;\n"
                           "// [two]\n// [open]\n",
    "docs/programs/CMakeLists.txt": "add_executable(thing a.cpp) # option VARNEL_X",
    "CMakePresets.json": '{"configurePresets": [{"name": "dev"}]}',
    "scripts/test": "",
    "docs/guides/README.md": "# Guides\n\n## One, *two*\n\n[A](a.md)\n",
    "docs/guides/a.md": GUIDE,
}
# What is done to the project, and what is then said.
FAULTS = [
    ("docs/programs/a.cpp", "int b", "int x", "is not what docs/programs/a.cpp#two says"),
    ("docs/guides/a.md", "  int b", "int b", "is not what docs/programs/a.cpp#two says"),
    ("docs/guides/a.md", "#two -->", "#three -->", "has no region three"),
    ("docs/guides/a.md", "#two -->", "#open -->", "has no region open"),
    ("docs/guides/a.md", "a.cpp#two -->", "b.cpp#two -->", "there is no file docs/programs/b.cpp"),
    ("docs/guides/a.md", "docs/programs/a.cpp#two", "in docs/programs/a.cpp", "the block is not in"),
    ("docs/guides/a.md", "<!-- docs/programs/a.cpp#two -->\n", "", "a block of cpp is cut out of nothing"),
    ("docs/guides/a.md", "-->\n", "-->\n\n", "a block of cpp is cut out of nothing"),
    ("docs/guides/a.md", "```sh", "```cmake", "a block of cmake is cut out of nothing"),
    ("docs/guides/a.md", "```sh", "```", "a block has no language"),
    ("docs/guides/a.md", "```sh\nscripts", "\n    scripts", "a block is indented"),
    ("docs/guides/a.md", "scripts/test", "scripts/rest", "there is no file scripts/rest"),
    ("docs/guides/a.md", "--preset dev", "--preset def", "there is no preset def"),
    ("docs/guides/a.md", "--target thing", "--target think", "there is no target think"),
    ("docs/guides/a.md", "VARNEL_X", "VARNEL_Y", "there is no option VARNEL_Y"),
    ("docs/guides/a.md", "programs/thing", "programs/think", "there is no program think"),
    ("docs/guides/a.md", "(#what-", "(#that-", "there is no such heading: #that-can-go-wrong"),
    ("docs/guides/README.md", "## One", "## Won", "there is no such heading: README.md#one-two"),
    ("docs/guides/README.md", "[A](a.md)", "A", "a.md is not listed"),
    ("docs/guides/README.md", "(a.md)", "(a.md) [B](b.md)", "there is nothing at b.md"),
    ("docs/guides/a.md", "## A program", "## Code", 'there is no section "A program"'),
]


def write(root, changed=None):
    for name, text in {**PROJECT, **(changed or {})}.items():
        (root / name).parent.mkdir(parents=True, exist_ok=True)
        (root / name).write_text(text)


def look(root, *options):
    result = subprocess.run([sys.executable, str(tool), str(root), *options], capture_output=True, text=True, timeout=50)
    return result.returncode, result.stderr


wrong = []
with tempfile.TemporaryDirectory() as folder:
    root = pathlib.Path(folder)
    write(root)
    if look(root) != (0, ""):
        wrong.append(f"a project without a mistake: {look(root)}")
    for name, right, mistake, said in FAULTS:
        assert right in PROJECT[name], (name, right)
        write(root, {name: PROJECT[name].replace(right, mistake, 1)})
        code, text = look(root)
        if code != 1 or said not in text:
            wrong.append(f"{name}: {right!r} became {mistake!r}, and it said {text!r} instead of {said!r}")
    write(root, {"docs/guides/a.md": GUIDE.replace("  int b;", "old;")})
    if look(root, "--update") != (0, "") or (root / "docs/guides/a.md").read_text() != GUIDE:
        wrong.append("--update did not write what the program says")
code, text = look(source)
wrong += [text] * (code != 0)
if wrong:
    sys.exit("\n".join(wrong))
