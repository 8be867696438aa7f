"""Reads the results that the benchmark programs wrote."""

import json
import pathlib
import re

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
# BM_<what>_<who>, and the arguments from the first slash on.
NAME = re.compile(r"BM_(?P<what>[^_/]+)_(?P<who>[^/]+)(?P<arguments>/.*)?$")
# Found in the names of benchmarks that measure wall-clock time, because other threads or processes do part of
# the work.
WALL_CLOCK = re.compile(r"/(real|manual)_time")


class Bytes(float):
    """An amount of memory; other results are nanoseconds."""


def read_results(directory):
    """Maps each subject, such as "TString", to its measurements, and lists the faults.

    A measurement, such as "Tokens/60", has a value per library: the median of its repetitions.
    """
    subjects, faults = {}, []
    for path in sorted(pathlib.Path(directory).glob("*.json")):
        text = path.read_text()
        repetitions = {}
        for entry in sorted(json.loads(text)["benchmarks"], key=place_in_source) if text else []:
            if entry.get("error_occurred"):
                faults.append(f"{entry['name']}: {entry['error_message']}")
            elif entry["run_type"] == "iteration":
                add_repetition(repetitions, entry)
        subjects[path.stem.removesuffix("Benchmark")] = {
            what: {who: median_of(values) for who, values in libraries.items()}
            for what, libraries in repetitions.items()
        }
    return subjects, faults


def place_in_source(entry):
    """Returns a sort key that undoes the random order in which the benchmarks ran."""
    return entry["family_index"], entry["per_family_instance_index"]


def median_of(values):
    # There is an odd number of repetitions. Their median keeps the type, which a mean would lose.
    return sorted(values)[len(values) // 2]


def add_repetition(repetitions, entry):
    match = NAME.match(entry["run_name"])
    arguments = match["arguments"] or ""
    clock = "real_time" if WALL_CLOCK.search(arguments) else "cpu_time"
    what = match["what"] + re.sub(
        r"/(real_time|manual_time|process_time|min_time:[\d.]+)|/(repeats|iterations):\d+", "", arguments
    )
    # A benchmark with the counter "bytes" measures memory instead of time.
    value = Bytes(entry["bytes"]) if "bytes" in entry else entry[clock] * NANOSECONDS[entry["time_unit"]]
    repetitions.setdefault(what, {}).setdefault(match["who"], []).append(value)


def readable(nanoseconds):
    if isinstance(nanoseconds, Bytes):
        return f"{nanoseconds / 1e6:.2f} MB"
    for unit in ("s", "ms", "us"):
        if nanoseconds >= NANOSECONDS[unit]:
            return f"{nanoseconds / NANOSECONDS[unit]:.2f} {unit}"
    return f"{nanoseconds:.1f} ns"
