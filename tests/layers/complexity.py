"""Checks by clang-tidy that no function of the library is more complex than .clang-tidy allows: `complexity.py SOURCE
SCRATCH`. The sources of a layer are read as one, which takes a fifth of the time. A planted function comes first."""

import pathlib
import subprocess
import sys

CHECK = "readability-function-cognitive-complexity"
FLAGS = ["-std=c++17", "-D_TURN_OFF_PLATFORM_STRING", "-DVARNEL_FORMS_BUILDING", "-DVARNEL_FORMS_CURL_BUILDING",
         "-DVARNEL_FORMS_SIMDJSON"]


def planted(depth=12):
    """A function of nested loops, each of which costs one more than the one around it: far beyond any bound."""
    return "void planted(int n) {\n" + "while (n-- > 0) {\n" * depth + "}" * depth + "\n}\n"


def tidy(source, file):
    command = ["clang-tidy", "--quiet", f"--config-file={source / '.clang-tidy'}", f"--checks=-*,{CHECK}", str(file), "--", *FLAGS,
               f"-I{source / 'include'}", f"-I{source / 'src'}"]
    result = subprocess.run(command, capture_output=True, text=True, timeout=280)
    return result.returncode, result.stdout


def main():
    source, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    scratch.mkdir(parents=True, exist_ok=True)
    file = scratch / "planted.cpp"
    file.write_text(planted())
    code, text = tidy(source, file)
    if code == 0 or CHECK not in text:
        sys.exit(f"planted and not found:\n{text}")
    wrong = []
    for layer in sorted({path.parent for path in (source / "src").rglob("*.cpp")}):
        file = scratch / f"{layer.name}.cpp"
        file.write_text("".join(f'#include "{path}"\n' for path in sorted(layer.glob("*.cpp"))))
        code, text = tidy(source, file)
        if code != 0:
            wrong.append(text + "\nSplit it: CONTRIBUTING.md, \"Style\".")
    sys.exit("\n".join(wrong) or 0)


main()
