"""Whole processes: how long they take, what they cost and how much memory they hold."""

import os
import statistics
import subprocess
import tempfile
import threading
import time
from dataclasses import dataclass

MIB = 1 << 20
SAMPLING_SECONDS = 0.05


class WrongResult(Exception):
    """A command failed or its result is not what it must be."""


@dataclass
class Run:
    wall: float  # seconds
    cpu: float  # seconds, user and system, of the process and the children it waited for
    peak: int  # bytes, of the largest of these


class Runs:
    """Several runs of one command."""

    def __init__(self, runs):
        self.best = min(runs, key=lambda run: run.wall)
        self.median_wall = statistics.median(run.wall for run in runs)
        self.peak = max(run.peak for run in runs)


def fail(command, status, errors):
    errors.seek(0)
    text = errors.read().decode(errors="replace").strip()[-2000:]
    raise WrongResult(f"{' '.join(command)}: ended with status {status}\n{text}")


def measure_once(command, environment, stdout=subprocess.DEVNULL):
    with tempfile.TemporaryFile() as errors:
        begin = time.perf_counter()
        process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL, stdout=stdout, stderr=errors)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - begin
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            fail(command, process.returncode, errors)
    return Run(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024)


def measure(command, environment, count):
    return measure_in_turns([command], environment, count)[0]


def measure_in_turns(commands, environment, count):
    """The runs of each command. One after the other runs, and again, so that what disturbs the machine for a while
    disturbs all of them."""
    rounds = [[measure_once(command, environment) for command in commands] for _ in range(count)]
    return [Runs(runs) for runs in zip(*rounds)]


def children_of(pid):
    try:
        with open(f"/proc/{pid}/task/{pid}/children", encoding="ascii") as file:
            return [int(word) for word in file.read().split()]
    except OSError:  # it has ended
        return []


def family_of(pid):
    family = [pid]
    for member in family:
        family += children_of(member)
    return family


def memory_of(pid):
    """The bytes that a process holds; pages that it shares count by its share of them."""
    try:
        with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
            return sum(int(line.split()[1]) * 1024 for line in file if line.startswith("Pss:"))
    except OSError:
        return 0


def peak_of_family(command, environment):
    """The most that a command and its children were seen to hold together. Looking slows them: nothing is timed."""
    peak = 0
    ended = threading.Event()
    with tempfile.TemporaryFile() as errors, subprocess.Popen(
        command, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=errors
    ) as process:
        threading.Thread(target=lambda: (process.wait(), ended.set()), daemon=True).start()
        while not ended.wait(SAMPLING_SECONDS):
            peak = max(peak, sum(memory_of(pid) for pid in family_of(process.pid)))
        if process.returncode != 0:
            fail(command, process.returncode, errors)
    return peak
