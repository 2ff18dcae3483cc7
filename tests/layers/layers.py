"""Checks what the sources include: arrows run one way, from the first of the layers to the last, and only the two
headers of detail that say so include the HTTP library's headers. What it would not find in a planted tree is no check,
so it looks at one first."""

import pathlib
import re
import sys
import tempfile

LAYERS = ["kit", "api", "transport", "model", "Version", "detail"]
HTTP_LIBRARY = {"HttpLibrary.h", "HttpClientLibrary.h"}
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)


def faults(root):
    found = []
    for base in (root / "include/VarnelAPI/Forms", root / "src"):
        for path in sorted(base.rglob("*.*")):
            text = path.read_text(encoding="utf-8")
            where = path.relative_to(root)
            layer = path.relative_to(base).parts[0].removesuffix(".h") # or its umbrella
            if layer not in LAYERS:
                found.append(f"{where} is in no layer")
                continue
            for name in INCLUDE.findall(text):
                parts = pathlib.PurePosixPath(name.removeprefix("VarnelAPI/Forms/")).parts
                if name == "VarnelAPI/Forms.h" or parts[0] == "..":
                    found.append(f"{where} includes {name}: name the header, from the root of its tree")
                elif len(parts) > 1 and parts[0] in LAYERS and LAYERS.index(parts[0]) < LAYERS.index(layer):
                    found.append(f"{where} includes {name}, against the arrows")
                elif parts[0] in ("cpprest", "pplx") and path.suffix == ".h" and path.name not in HTTP_LIBRARY:
                    found.append(f"{where} includes {name}: include one of detail's {' and '.join(HTTP_LIBRARY)}")
            if layer == "api" and base.name == "Forms" and "detail::" in text:
                found.append(f"{where} sends its reader to detail")
    return found


PLANTED = {
    "include/VarnelAPI/Forms/detail/A.h": "#include <VarnelAPI/Forms/model/ModelBase.h>\n",
    "include/VarnelAPI/Forms/model/B.h": "#pragma once\n\n#  include <VarnelAPI/Forms/api/ApiClient.h>\n",
    "include/VarnelAPI/Forms/model/C.h": "#include <cpprest/json.h>\n",
    "include/VarnelAPI/Forms/api/D.h": "detail::Task call();\n",
    "include/VarnelAPI/Forms/other/E.h": "\n",
    "src/transport/F.cpp": '#include "api/Operation.h"\n',
    "src/model/G.cpp": '#include "../api/Operation.h"\n',
    "src/api/H.h": "#include <VarnelAPI/Forms.h>\n",
}


def main():
    with tempfile.TemporaryDirectory() as folder:
        for name, text in PLANTED.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        caught = faults(pathlib.Path(folder))
        missed = [name for name in PLANTED if not any(fault.startswith(name) for fault in caught)]
    found = [f"planted and not found: {name}" for name in missed] + faults(pathlib.Path(sys.argv[1]))
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main())
