"""The command line and the local repository as processes, for the tests that drive them."""

import fcntl
import os
import pathlib
import pty
import select
import struct
import subprocess
import tempfile
import termios
import time

SCRATCH = pathlib.Path(tempfile.mkdtemp(prefix="varnel-forms-"))
repositories = []


def environment(programs):
    """What commands get, so that they do not depend on the machine. The programs are found in these folders."""
    return {"PATH": ":".join([*map(os.path.abspath, programs), os.environ["PATH"]]), "HOME": str(SCRATCH),
            "XDG_CONFIG_HOME": str(SCRATCH / "config"), "TERM": "xterm", "TZ": "Etc/GMT-2",
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}}


PATIENCE = 30  # with the start and the end of a repository


class Process:
    """A repository that runs until the end of the test. Without a URL it did not start, and is gone."""

    def __init__(self, program, *options):
        self.process = subprocess.Popen([os.path.abspath(program), *options], stdout=subprocess.PIPE, text=True, cwd=SCRATCH)
        repositories.append(self)
        hasSpoken = select.select([self.process.stdout], [], [], PATIENCE)[0]
        self.url = self.process.stdout.readline().strip() if hasSpoken else ""
        if not self.url:
            self.end()

    def end(self):
        """How it ended; one that does not by itself leaves nothing behind, either."""
        self.process.terminate()
        try:
            return self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.process.kill()
            return self.process.wait()


def end_all():
    """Ends all repositories, and takes their files away. Whether they end as they should."""
    codes = [each.end() for each in repositories if each.url]
    subprocess.run(["rm", "-rf", str(SCRATCH)], check=False)
    return not any(codes)


def run(command, environment, patience, stdin="", cwd=None):
    """A command of the shell, with no terminal anywhere: how it ended, and the bytes of both outputs."""
    process = subprocess.Popen(["bash", "-c", "set -o pipefail; " + command], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, env=environment, cwd=cwd or SCRATCH, start_new_session=True)
    try:
        out, err = process.communicate(stdin.encode(), patience)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.communicate()
        raise
    return process.returncode, out, err


def on_terminal(command, environment, patience, columns=80, keys="", interrupt=None, cwd=None):
    """A command with a terminal for input, output and errors; `interrupt` is how many seconds after the first output,
    or after the start, Ctrl-C is pressed. What it showed, how it ended, and how long it took from then. It has ended
    badly, too, if the terminal does not show any more what is typed."""
    master, slave = pty.openpty()
    fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

    def own_terminal():
        os.setsid()
        fcntl.ioctl(0, termios.TIOCSCTTY, 0)

    process = subprocess.Popen(["bash", "-c", command], stdin=slave, stdout=slave, stderr=slave,
                               env=environment, cwd=cwd or SCRATCH, preexec_fn=own_terminal)
    os.close(slave)
    shown, start, pressed = b"", time.monotonic(), None
    while time.monotonic() < start + patience:
        if interrupt is not None and pressed is None and time.monotonic() > start + interrupt:
            os.write(master, b"\x03")
            pressed = time.monotonic()
        if select.select([master], [], [], 0.05)[0]:
            try:
                part = os.read(master, 65536)
            except OSError:
                break
            if not part:
                break
            shown += part
            os.write(master, keys.encode()) # to the question
            keys = ""
        elif process.poll() is not None and not select.select([master], [], [], 0)[0]:
            break # with nothing left of what it wrote before it ended
    isLate = process.poll() is None and time.monotonic() >= start + patience
    if isLate:
        process.kill()
    process.wait(patience)
    isSilent = not termios.tcgetattr(master)[3] & termios.ECHO
    os.close(master)
    if isLate:
        raise subprocess.TimeoutExpired(command, patience)
    return ("no echo" if isSilent else process.returncode), shown, time.monotonic() - (pressed or start)
