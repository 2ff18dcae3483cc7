"""Plays transcripts, sessions of the command line and the local repository as a user sees them:
`transcript.py [--write] FOLDER... [FILE...]`, where the folders are those of the programs, and all transcripts are meant
if none is named. All that comes of each step is held against what the file says, and `--write` writes it anew, so that a
change that is meant is a reviewed difference.

A step is a line of these, with more below it after "+ ":
    $ COMMAND                   one of the shell; below it its standard input
    $80 COMMAND                 the same on a terminal of so many columns; below it what is typed. A bar is left out, since
                                on a busy machine there may be one anywhere
    slow $80 COMMAND            the same with its bar
    file NAME                   a file of the content below it
    repository NAME OPTIONS     starts one, whose base URL is in the variable NAME from then on; requests go to it
    to NAME                     requests go to that one
    fault JSON                  for the next command or request
    sent                        what the repository got since the last "sent"
    GET PATH                    any request: headers below it, and below an empty "+" the body. A path without "/" at its
                                begin is one within "/sv1.2/Repositories/Varnel.Forms--"
    late GET PATH               one whose answer does not come by itself: the faults are cleared once they were met
    raw EXPRESSION              bytes on a connection, as Python has them
Below it stands what came of it: standard output after two blanks, standard error after "! ", another exit code than 0 in
brackets. Nothing is left out, but control characters and what differs from run to run have names in angle brackets, each
for one text; a step may say <id 1>, too. "␄" is the end of a text without an end of line. "#" begins a comment."""

import datetime
import difflib
import json
import os
import pathlib
import re
import shlex
import socket
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/support"))
import programs
from programs import SCRATCH

PATIENCE = 30
WHILE = 0.4  # in which an answer would have come
BAR = re.compile(rb"(\r[^\r\n]+)+\r +\r")
PATHS = "/sv1.2/Repositories/Varnel.Forms--"
STEP = re.compile(r"((slow )?\$\d* |file |repository |to |fault |sent$|raw |late |[A-Z]+ )")
ID = re.compile(r"[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}")
DATE = re.compile(r"\d{4}-\d\d-\d\d(?:T\d\d:\d\d:\d\d\.\d{3}Z| \d\d:\d\d(?!:))")
VERSION = ".".join(re.findall(r"VERSION_(?:MAJOR|MINOR|PATCH) (\d+)\n", (ROOT / "include/VarnelAPI/Forms/Version.h").read_text()))


def visible(text):
    """Characters that an editor does not show, or a terminal obeys, by names."""
    def name(found):
        code = ord(found.group())
        return chr(0x2400 + code) if code < 0x20 else "␡" if code == 0x7f else \
            f"<\\x{code - 0xdc00:02x}>" if 0xdc80 <= code <= 0xdcff else f"<U+{code:04X}>"
    return re.sub(r"[\x00-\x09\x0b-\x1f\x7f-\x9f\u200e\u200f\u2028-\u202e\u2066-\u2069\ufeff\udc80-\udcff]", name, text)


class Player:
    def __init__(self, folders, path):
        self.folders, self.path = folders, path
        self.environment = {**programs.environment(folders), "HERE": str(path.parent)}
        self.there, self.current, self.base, self.ids = {}, None, "", []
        self.hasFault = False
        self.begin = datetime.datetime.now(datetime.timezone.utc) - datetime.timedelta(minutes=2)

    def named(self, text):
        """The text with names for what differs from run to run."""
        for name, one in self.there.items():
            text = re.sub(rf"(?:(?<=:)|(?<=port )){one.port}\b", f"<port of {name}>" if len(self.there) > 1 else "<port>", text)
        text = text.replace(str(SCRATCH), "<folder>")
        text = re.sub(rf"(?<=forms[/ ]){re.escape(VERSION)}", "<version>", text)
        text = re.sub(r"(?<=^< )(.*\()\d+(?= ms\)$)", r"\1<time>", text, flags=re.M)
        text = re.sub(r'(?<="time":)\d{13}\b|(?<=<span class=whole>)\d\d:\d\d:\d\d\.\d{3}(?=</span>)', "<time>", text)

        def date(found):
            isLocal = found.group()[10] == " "
            then = datetime.datetime.strptime(found.group(), "%Y-%m-%d %H:%M" if isLocal else "%Y-%m-%dT%H:%M:%S.%fZ")
            then = then.replace(tzinfo=datetime.timezone(datetime.timedelta(hours=2 if isLocal else 0)))
            isNow = self.begin < then < datetime.datetime.now(datetime.timezone.utc) + datetime.timedelta(minutes=1)
            return "<now>" if isNow else found.group()

        def identity(found):
            if found.group() not in self.ids:
                self.ids.append(found.group())
            return f"<id {self.ids.index(found.group()) + 1}>"
        return ID.sub(identity, DATE.sub(date, text))

    def lines(self, mark, content):
        text = content.decode("utf-8", "surrogateescape")
        if not text:
            return []
        text = visible(self.named(text)) + ("" if text.endswith("\n") else "␄\n")
        return [(mark + re.sub(r" (?=$)", "␠", line)).rstrip() for line in text.split("\n")[:-1]]

    def shell(self, step, below):
        if step.startswith("$ "):
            code, out, err = programs.run(step[2:], self.environment, PATIENCE, "".join(line + "\n" for line in below))
        else:
            columns, command = step.removeprefix("slow ")[1:].split(" ", 1)
            code, out, _ = programs.on_terminal(command, self.environment, PATIENCE, int(columns),
                                                "".join(line + "\n" for line in below))
            out, err = out.replace(b"\r\n", b"\n"), b""
            if not step.startswith("slow "):
                out = BAR.sub(b"", out)
        return self.lines("  ", out) + self.lines("! ", err) + ([] if code == 0 else [f"[{code}]"])

    def start(self, words):
        name, *options = [os.path.expandvars(word) if "$" not in word else re.sub(
            r"\$(\w+)", lambda found: self.environment[found.group(1)], word) for word in shlex.split(words)]
        program = next(path for path in (folder / "varnel-forms-repository" for folder in self.folders) if path.exists())
        one = programs.Process(program, *options)
        if not one.url:
            return ["  (it does not start)"]
        one.port = int(re.search(r":(\d+)(/|$)", one.url).group(1))
        self.environment[name], self.there[name] = one.url, one
        self.play("to " + name, [])
        return self.lines("  ", one.url.encode() + b"\n")

    def exchange(self, content, isLate=False):
        """All that comes until the repository closes; it gets to know that nothing more will come from here."""
        with socket.create_connection(("127.0.0.1", self.current.port), PATIENCE) as there:
            got, note, last = b"", [], []
            try:
                there.sendall(content)
                there.shutdown(socket.SHUT_WR)
            except OSError:
                pass # it has answered already, or reset the connection
            if isLate:
                end = time.monotonic() + PATIENCE
                while '"met":1' not in self.control("GET", "faults")[1]:
                    if time.monotonic() > end:
                        raise socket.timeout
                    time.sleep(0.05)
                there.settimeout(WHILE)
                try:
                    got = there.recv(65536)
                except socket.timeout:
                    note = ["  (nothing yet)"]
            try:
                while part := self.more(there, isLate):
                    got += part
            except ConnectionResetError:
                last = ["  (reset)"]
        return note, got, last if got or last else ["  (closed)"]

    def more(self, there, isLate):
        """The next bytes. What is held back is let go until they come: it may have been met, but not held yet."""
        for _ in range(PATIENCE if isLate else 1):
            if isLate:
                self.control("DELETE", "faults")
            there.settimeout(1 if isLate else PATIENCE)
            try:
                return there.recv(65536)
            except socket.timeout:
                pass
        raise socket.timeout

    def request(self, step, below):
        isLate = step.startswith("late ")
        method, path = step.removeprefix("late ").split(" ", 1)
        blank = below.index("") if "" in below else len(below)
        headers, body = below[:blank], "\n".join(below[blank + 1:]).encode()
        if not any(header.lower().startswith("host:") for header in headers):
            headers.insert(0, f"Host: 127.0.0.1:{self.current.port}")
        if "" in below:
            headers.append(f"Content-Length: {len(body)}")
        path = path if path.startswith(("/", "*")) else PATHS + path
        return self.exchange("\r\n".join([f"{method} {path} HTTP/1.1", *headers, "", ""]).encode() + body, isLate)

    def control(self, method, what, body=None):
        """The status of the answer, and its text."""
        _, got, _ = self.request(f"{method} {self.base}/_control/{what}", [] if body is None else ["", body])
        head, text = got.split(b"\r\n\r\n", 1)
        return int(head.split()[1]), text.decode()

    def play(self, step, below):
        step, *below = (re.sub(r"<id (\d+)>", lambda found: self.ids[int(found.group(1)) - 1], line) for line in [step, *below])
        if step.startswith("repository "):
            return self.start(step.split(" ", 1)[1])
        if step.startswith("to "):
            self.current = self.there[step[3:]]
            self.base = self.current.url.partition(str(self.current.port))[2]
            return []
        if step.startswith("file "):
            (SCRATCH / step[5:]).write_text("".join(line + "\n" for line in below))
            return []
        if step.startswith("fault "):
            code, answer = self.control("POST", "faults", step[6:])
            self.hasFault = True
            return [] if code == 201 else ["  " + answer]
        if step == "sent":
            sent = json.loads(self.control("GET", "requests")[1])["requests"]
            self.control("DELETE", "requests")
            return self.lines("  ", "".join(f"{one['method']} {one['path']}{one['query'] and '?'}{one['query']}\n" for one in sent).encode())
        if step.startswith(("$", "slow ")):
            result = self.shell(step, below)
        else:
            note, got, end = self.exchange(eval(step[4:], {"__builtins__": {}})) if step.startswith("raw ") else self.request(step, below)
            result = note + self.lines("  ", got.replace(b"\r\n", b"\n")) + end
        if self.hasFault:
            self.control("DELETE", "faults")
            self.hasFault = False
        return result

    def whole(self):
        out, comment, step, below = [], [], None, []

        def finish():
            """Whether to go on."""
            if step is not None:
                try:
                    out.extend(self.play(step, below))
                except (subprocess.TimeoutExpired, socket.timeout):
                    out.append(f"  (no end within {PATIENCE} s)")
                    return False
                except (OSError, ValueError, LookupError, AttributeError) as error:
                    out.append(f"  (failed: {error})")
            return True
        for line in [*self.path.read_text().split("\n"), "$ :"]:
            if line.startswith("#"):
                if not finish():
                    return "\n".join([*out[1:], ""])
                step = None
                comment.append(line)
            elif STEP.match(line):
                if not finish():
                    return "\n".join([*out[1:], ""])
                step, below = line, []
                out += ["", *comment, line]
                comment = []
            elif line.startswith("+") and step is not None:
                below.append(line[2:])
                out.append(line)
        return "\n".join([*out[1:-2], *comment, ""])


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--write"]
    folders = [pathlib.Path(one).resolve() for one in arguments if os.path.isdir(one)]
    paths = [pathlib.Path(one).resolve() for one in arguments if not os.path.isdir(one)]
    paths = paths or sorted(pathlib.Path(__file__).parent.glob("*/*.txt"))
    if len(paths) > 1: # a process for each, since each has files and repositories of its own
        write = ["--write"] if "--write" in sys.argv else []
        return max(subprocess.run([sys.executable, __file__, *write, *folders, path], check=False).returncode for path in paths)
    path = paths[0]
    try:
        before, after = path.read_text(), Player(folders, path).whole()
    finally:
        isEndGood = programs.end_all()
    if "--write" in sys.argv:
        path.write_text(after)
    elif before != after:
        print(*difflib.unified_diff(before.split("\n"), after.split("\n"), path.name, "what came", lineterm=""), sep="\n")
        return 1
    if not isEndGood:
        print("a repository did not end with exit code 0")
    return 0 if isEndGood else 1


sys.exit(main())
