"""Documents as streams, however long they are: what they hold, and whether two are the same."""

import hashlib
import itertools
import subprocess
from dataclasses import dataclass

from measuring import WrongResult

CHUNK = 1 << 20
CHANNEL = b"<Channel "


@dataclass
class Document:
    digest: str
    size: int  # bytes
    channels: int


def read_through(command, environment):
    """What a command writes to standard output."""
    document, digest = Document("", 0, 0), hashlib.blake2b()
    tail = b""
    with subprocess.Popen(command, env=environment, stdout=subprocess.PIPE) as process:
        while chunk := process.stdout.read(CHUNK):
            digest.update(chunk)
            document.size += len(chunk)
            document.channels += (tail + chunk).count(CHANNEL)
            tail = chunk[-(len(CHANNEL) - 1) :]
    if process.returncode != 0:
        raise WrongResult(f"{' '.join(command)}: ended with status {process.returncode}")
    document.digest = digest.hexdigest()
    return document


def lines_of(command, environment):
    with subprocess.Popen(command, env=environment, stdout=subprocess.PIPE) as process:
        yield from process.stdout
    if process.returncode != 0:
        raise WrongResult(f"{' '.join(command)}: ended with status {process.returncode}")


def without_other_networks(lines, code):
    kept = True
    for line in lines:
        if b"<Network " in line:
            kept = b'code="' + code.encode() + b'"' in line
        if kept:
            yield line
        if b"</Network>" in line:
            kept = True


def check_network(whole, subset, environment, code):
    """Whether the document of one network is that network's part of the document of all."""
    expected = without_other_networks(lines_of(whole, environment), code)
    found = lines_of(subset, environment)
    inside = 0
    for number, (line, other) in enumerate(itertools.zip_longest(expected, found), 1):
        inside += line is not None and CHANNEL in line
        if line != other:
            raise WrongResult(f"the document of network {code} differs in line {number}: {other}, expected {line}")
    if inside == 0:
        raise WrongResult(f"the document of network {code} has no channels")
