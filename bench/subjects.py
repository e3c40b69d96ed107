"""What is measured: the command, made databases and their documents."""

import hashlib
import os
import subprocess
from dataclasses import dataclass
from pathlib import Path

from documents import read_through
from measuring import Runs, WrongResult, measure, measure_in_turns, measure_once

TREE = Path(__file__).resolve().parent.parent
BUILD = TREE / "build" / "bench"
TABLES = "site sitechan sensor instrument network affiliation snetsta schanloc calibration stage".split()
GENERATOR = ["database_maker.cpp", "flat_table.cpp", "make_database.cpp", "response_files.cpp", "response_files.h"]


@dataclass
class Database:
    prefix: str
    epochs: int  # of channels
    networks: int

    def table(self, name):
        return Path(f"{self.prefix}.{name}")

    def table_bytes(self):
        return sum(self.table(name).stat().st_size for name in TABLES)

    def stations(self):
        with open(self.table("snetsta"), "rb") as file:
            return sum(1 for _ in file)

    def middle_station(self):
        with open(self.table("snetsta"), encoding="ascii") as file:
            row = len(file.readline())
            file.seek(os.path.getsize(file.name) // row // 2 * row)
            return file.readline().split()[1]


def network_code(number):
    return f"N{1000 + number}"


class Subjects:
    def __init__(self, folder, runs):
        self.folder = Path(folder)
        self.runs = runs
        # The same date in all documents, so that they can be compared.
        fixed = {"LC_ALL": "C", "SOURCE_DATE_EPOCH": "1700000000", "TRIGLUB_PFPATH": str(TREE / "data")}
        self.environment = os.environ | fixed
        self.command = str(BUILD / "tool" / "triglub")
        self.documents = {}  # by database and level
        self.files = set()  # of documents

    # --- databases ---------------------------------------------------------------------------------------------------

    def database(self, epochs, networks, stages):
        """A made database; one that is there already from the same generator is taken as it is."""
        folder = self.folder / f"{epochs}-{networks}-{stages}"
        made = Database(str(folder / "made"), epochs, networks)
        note, state = folder / "made-by", self.generator_state()
        if not note.exists() or note.read_text(encoding="ascii") != state:
            folder.mkdir(parents=True, exist_ok=True)
            maker = BUILD / "bench" / "make_database"
            subprocess.run([maker, made.prefix, str(epochs), str(networks), str(stages)], check=True)
            note.write_text(state, encoding="ascii")
            os.sync()  # what is written behind would disturb the figures
        return made

    def generator_state(self):
        digest = hashlib.blake2b()
        for name in GENERATOR:
            digest.update((TREE / "bench" / name).read_bytes())
        return digest.hexdigest()

    # --- commands ----------------------------------------------------------------------------------------------------

    def convert(self, source, level, jobs=1, subset=None, parameters=None):
        """`jobs` None leaves their number to the command, `parameters` None the parameter file."""
        command = [self.command, "convert", "--level", level]
        if parameters is not None:
            command += ["--parameters", parameters]
        if jobs is not None:
            command += ["--jobs", str(jobs)]
        if subset is not None:
            command += ["--subset", subset]
        return command + [str(source)]

    def measure(self, command, count=None):
        return measure(command, self.environment, count or self.runs)

    def measure_in_turns(self, commands):
        return measure_in_turns(commands, self.environment, self.runs)

    def measure_once(self, command):
        return Runs([measure_once(command, self.environment)])

    # --- documents ---------------------------------------------------------------------------------------------------

    def document(self, database, level):
        """What the document of a database holds, once it has been found right."""
        key = (database.prefix, level)
        if key not in self.documents:
            self.documents[key] = self.checked_document(database, level)
        return self.documents[key]

    def checked_document(self, database, level):
        document = read_through(self.convert(database.prefix, level), self.environment)
        if document.channels != database.epochs:
            raise WrongResult(f"{database.prefix}: {document.channels} channels, expected {database.epochs}")
        other = read_through(self.convert(database.prefix, level, jobs=2), self.environment)
        if other != document:
            raise WrongResult(f"{database.prefix}: the document of two jobs differs from that of one")
        return document

    def file_of(self, database, level, subset=None):
        """The document as a file, of all networks or some of them; each level has one, of the call that came first."""
        path = self.folder / f"document-{level}.xml"
        if path not in self.files:
            with open(path, "wb") as file:
                measure_once(self.convert(database.prefix, level, subset=subset), self.environment, stdout=file)
                os.fsync(file.fileno())
            self.files.add(path)
        return path
