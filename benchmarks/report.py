"""Runs the benchmarks, and sets each beside its reference and its goal. Called by scripts/bench."""

import argparse
import json
import pathlib
import re
import statistics
import subprocess
import sys

# The rows: what each one is, and the most that ours may be of the reference, by measure. "time" is said of CPU time
# and of instructions alike. CPU time and instructions are printed without a goal too.
ROWS = {
    "get": ("get of 1 KB, one after the other / by hand", {"wall": 1.05, "cpu": 1.05, "instructions": 1.15}),
    "get-kept": ("the same / by hand on a kept connection", {"wall": None}),
    "get-64": ("64 gets of 1 KB at once / by hand", {"wall": 1.05, "cpu": 1.05, "instructions": 1.15}),
    "select": ("select of 1,000 issues, call to model / parse", {"instructions": 0.5}),
    "select-2": ("the same, in a pool of two threads / parse", {"cpu": 0.7}),
    "select-attachments": ("select of 1,000 attachments / parse", {"instructions": 0.45}),
    "select-custom": ("select of 286 issues with 35 own / parse", {"instructions": 0.85}),
    "select-memory": ("select of 50 MB / text, tree, models by hand", {"resident": 1.2}), # as much as without simdjson
    "insert-body": ("insert of 340 KB, unsent / toJson, serialize", {"time": 0.6}),
    "insert-body-memory": ("the same / its text", {"peak": 3.0}),
    "fill": ("text of 1,000 issues to model / parse", {}),
    "from-json": ("fromJson of a ready tree / parse", {"instructions": 0.36}),
    "to-json": ("toJson of 1,000 issues / vectors by hand", {"time": 1.15}),
    "to-json-custom": ("toJson per custom property, at 10,010 / at 35", {"time": 2.0}),
    "json-body": ("JsonBody::writeTo / serialize", {"time": 1.05}),
    "json-body-memory": ("the same, to nowhere / serialize", {"peak": 1.05}),
    "base64-encode": ("toBase64 of a 16 MB stream / to_base64", {"cpu": 1 / 4}),
    "base64-decode": ("fromBase64 to a 16 MB stream / from_base64", {"cpu": 1 / 3.5}),
    "multipart-set": ("64 MB multipart written and set / one copy", {"wall": 1.3, "cpu": 1.3, "peak": 1.05}),
    "multipart-send": ("the same, sent / one copy sent by hand", {"wall": None}),
    "multipart-send-memory": ("the same / one copy", {"peak": 1.10}),
    "download": ("fILEGET of 64 MB / extract_vector, string stream", {"wall": 0.5, "cpu": 0.5}),
    "download-memory": ("the same / one copy", {"peak": 2.1}),
    "get-https-kept": ("https get of 1 KB, kept (curl) / by hand, fresh", {"wall": 0.05, "cpu": 0.05}),
    "get-https-kept-64": ("64 of them at once / by hand, fresh", {"wall": 0.05, "cpu": 0.05}),
    "get-kept-curl": ("http get of 1 KB, kept (curl) / by hand, fresh", {"wall": 0.5, "cpu": 0.5}),
    "https-start": ("starting an https call (curl) / 0.2 ms", {"wall": 1.0}),
    "get-no-wish": ("get with empty call options / without", {"instructions": 1.005}),
    "get-unobserved": ("get with an observer without function / without", {"instructions": 1.01}),
    "get-observed": ("get with an observer that does nothing / without", {}),
    "get-retry": ("get that may be repeated / without", {}),
    "download-file": ("256 MB to a file / HTTP library's file stream", {"wall": None, "cpu": 1.0, "growth": 20}),
    "download-file-curl": ("the same over curl / HTTP library's", {"wall": None, "cpu": 1.0, "growth": 20}),
    "upload-file": ("256 MB from a file / HTTP library's file stream", {"wall": None, "cpu": 1.0, "growth": 20}),
    "upload-file-curl": ("the same over curl / HTTP library's", {"wall": None, "cpu": 1.0, "growth": 20}),
    "get-1000": ("1,000 gets at once / by hand", {"wall": 1.1, "peak": 1.2}),
    "repository-page": ("repository: page of 100,000 / of 1,000", {"cpu": 3.0}),
    "repository-last-page": ("the last page of 100,000 / of 1,000", {"cpu": 3.0}),
    "repository-filter": ("filtered page of 100,000 / parsing each", {"cpu": 0.2}),
    "repository-filter-memory": ("the same / a page", {"peak": 1.5}),
    "repository-order-memory": ("ordered page of 100,000 / a page", {"peak": 1.5}),
    "repository-readers": ("512 pages by 8 threads / by one", {"wall": 1 / 1.6}),
    "late-200": ("64 late bodies / their delay", {"wall": 1.2}),
    "late-500": ("64 late bodies of errors / their delay", {"wall": 1.2}),
    "late-type": ("64 late bodies of another type / their delay", {"wall": 1.2}),
    "growth": ("50,000 calls, from the 5,001st on", {"resident": 2**20, "descriptors": 0}),
}
LONG = ["growth"]
POOLS = {"select-2": 2} # of so many threads
# Repetitions and the least seconds of one. The sides are interleaved, so that other load meets both.
TIMING = {"get-https-kept": (5, 0.1), "get-https-kept-64": (3, 0.1), "download-file": (3, 0.01),
          "download-file-curl": (3, 0.01), "upload-file": (1, 0.01), "upload-file-curl": (1, 0.01),
          "multipart-send": (1, 0.01), "multipart-set": (11, 0.05), "download": (7, 0.05),
          "select-memory": (3, 0.01), "insert-body-memory": (3, 0.01), "json-body-memory": (3, 0.01), "multipart-send-memory": (1, 0.01),
          "download-memory": (1, 0.01), "repository-filter": (3, 0.01), "repository-filter-memory": (1, 0.01),
          "repository-order-memory": (1, 0.01)}
LATE_TIMEOUT = 30
DEFAULT_TIMING = (15, 0.15)
# How often an operation runs in the two counts whose difference is taken.
COUNTING = {"get": (20, 120), "get-no-wish": (20, 220), "get-unobserved": (20, 220), "get-64": (2, 6), "select": (3, 9), "select-attachments": (3, 9),
            "select-custom": (3, 9), "base64-encode": (1, 2), "base64-decode": (1, 2)}
DEFAULT_COUNTING = (2, 6)
# How much dearer a row may be than in an earlier commit.
DEARER = 1.1
# Copies are not counted: the C library copies by single instructions, which valgrind counts once for each byte, or by
# blocks, as it sees fit.
UNCOUNTED = ["select-2", "insert-body-memory", "get-https-kept", "get-https-kept-64", "get-kept-curl", "https-start", "download-file", "download-file-curl",
             "upload-file", "upload-file-curl", "select-memory", "json-body-memory", "multipart-set", "multipart-send", "multipart-send-memory", "download",
             "download-memory", "repository-page", "repository-last-page", "repository-filter",
             "repository-filter-memory", "repository-order-memory", "repository-readers", "get-1000", "late-200", "late-500", "late-type", "growth"]


def run(command, timeout=600):
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=timeout)
    if result.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))} failed:\n{result.stderr}")
    return result.stdout


def benchmark(program, row, timing=None, threads=None, timeout=600):
    """The repetitions of a row, by side."""
    command = [program] + (["--threads", threads] if threads else [])
    command += [f"--benchmark_filter=^{row}/", "--benchmark_format=json"]
    if timing:
        command += [f"--benchmark_repetitions={timing[0]}", f"--benchmark_min_time={timing[1]}",
                    "--benchmark_enable_random_interleaving=true"]
    sides = {}
    for repetition in json.loads(run(command, timeout))["benchmarks"]:
        if repetition["run_type"] == "iteration":
            sides.setdefault(repetition["name"].split("/")[1], []).append(repetition)
    return sides


def compared(row, measure, ours, reference, name=None):
    what, goals = ROWS[row]
    goal = goals.get(measure, goals.get("time") if measure in ("cpu", "instructions") else None)
    ratio = ours / reference if reference else ours
    return {"row": name or row, "what": what, "measure": measure, "ours": ours, "reference": reference,
            "ratio": ratio, "goal": goal, "met": None if goal is None else ratio <= goal}


def times(program, row):
    sides = benchmark(program, row, TIMING.get(row, DEFAULT_TIMING), POOLS.get(row))
    for measure, field in (("wall", "real_time"), ("cpu", "cpu_time"), ("peak", "peak"), ("resident", "resident")):
        if field in sides["ours"][0]:
            ours, reference = (statistics.median(one[field] for one in sides[side]) for side in ("ours", "reference"))
            if measure in ROWS[row][1] or (measure == "cpu" and ROWS[row][1].keys() not in ({"peak"}, {"resident"})):
                yield compared(row, measure, ours, reference)
    if "growth" in sides["ours"][0]:  # of the process, in MB: the first operation shows it
        yield compared(row, "growth", max(one["growth"] for one in sides["ours"]) / 2**20, None)


def start(program, row):
    sides = benchmark(program, row, (5, 0.1))
    ours, reference = (statistics.median(one["real_time"] for one in sides[side]) for side in ("ours", "reference"))
    yield compared(row, "wall", ours, 0.2)
    yield {**compared(row, "wall", ours, reference, "https-start / by hand"), "goal": None, "met": None}


def late(program, row):
    for threads in (40, 2, 1):
        name = f"{row}, pool of {threads}"
        try:
            ours = benchmark(program, row, threads=threads, timeout=LATE_TIMEOUT)["ours"][0]
            if ours["finished"] != 64:
                sys.exit(f"{name}: {ours['finished']:.0f} of 64 calls ended as they should")
        except subprocess.TimeoutExpired:
            sys.exit(f"{name}: not all calls have ended after {LATE_TIMEOUT} s")
        yield compared(row, "wall", ours["real_time"], ours["delay"], name)


def growth(program, row):
    ours = benchmark(program, row)["ours"][0]
    for measure in ("resident", "live", "descriptors"):
        yield compared(row, measure, ours[measure], None)


def count(program, row, side, directory):
    """The instructions of one operation: what a longer run has more of than a shorter one."""
    directory.mkdir(parents=True, exist_ok=True)
    counts = []
    repeats = COUNTING.get(row, DEFAULT_COUNTING)
    for repeat in repeats:
        profile = directory / f"{row}.{side}.{repeat}"
        run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={profile}", program, "--one", row, side, repeat])
        counts.append(int(re.search(r"^(?:summary|totals): (\d+)", profile.read_text(), re.M).group(1)))
    return (counts[1] - counts[0]) / (repeats[1] - repeats[0])


def instructions(program, row, directory):
    ours, reference = (count(program, row, side, directory) for side in ("ours", "reference"))
    yield compared(row, "instructions", ours, reference)


def against(program, before, row, directory):
    if f"\n{row}/ours/" not in "\n" + run([before, "--benchmark_list_tests"]):
        return # it is new
    ours, earlier = (count(one, row, "ours", directory / name) for one, name in ((program, "now"), (before, "before")))
    result = compared(row, "instructions", ours, earlier)
    yield {**result, "what": "ours now / ours in the earlier commit", "goal": DEARER, "met": result["ratio"] <= DEARER}


def show(result):
    def text(number):
        return "" if number is None else f"{number:,.0f}" if result["reference"] is None else f"{number:.2f}"
    met = {None: "", True: "yes", False: "NO"}[result["met"]]
    print(f"{result['row']:<24} {result['what']:<51} {result['measure']:<13} {text(result['ratio']):>9} "
          f"{text(result['goal']):>9} {met:>4}", flush=True)


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench", description="Ours beside the reference, row by row.")
    parser.add_argument("row", nargs="*", help="only these: " + ", ".join(ROWS))
    parser.add_argument("--instructions", action="store_true", help="count instructions: slow, but repeatable")
    parser.add_argument("--long", action="store_true", help="also the rows that take minutes: " + ", ".join(LONG))
    parser.add_argument("--against", type=pathlib.Path, metavar="COMMIT",
                        help="with --instructions: ours beside ours in that commit, or the one before; exits with 1 if a row "
                             "is more than a tenth dearer")
    parser.add_argument("--program", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--output", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    options = parser.parse_args()
    if unknown := set(options.row) - set(ROWS):
        parser.error("unknown: " + ", ".join(sorted(unknown)))
    if options.against and not options.instructions:
        parser.error("only instructions can be held against another commit")

    print(f"{'row':<24} {'ours / reference':<51} {'measure':<13} {'ratio':>9} {'goal':>9} {'met':>4}")
    results = []
    for row in options.row or [row for row in ROWS if options.long or row not in LONG]:
        if not options.instructions:
            source = (late if row.startswith("late-") else start if row == "https-start" else growth if row == "growth" else times)(options.program, row)
        elif row in UNCOUNTED:
            continue
        elif options.against:
            source = against(options.program, options.against, row, options.output / "callgrind")
        else:
            source = instructions(options.program, row, options.output / "callgrind")
        for result in source:
            show(result)
            results.append(result)
    file = options.output / ("against.json" if options.against else "instructions.json" if options.instructions else "results.json")
    file.write_text(json.dumps(results, indent=2) + "\n")
    missed = sum(result["met"] is False for result in results)
    print(f"{missed} goals missed. Figures: {file}" if missed else f"All goals met. Figures: {file}")
    if options.against and missed:
        sys.exit("What is marked NO has become more than a tenth dearer: mend it, or say in the commit what it is worth.")


main()
