"""The bars: each function takes the figures of some of them, and tells whether they are met."""

import json
import os
import subprocess

from documents import check_network
from measuring import MIB, WrongResult, peak_of_family
from subjects import BUILD, TREE, network_code

STAGES = 3
CHAIN_STAGES = 5  # a seismometer, a digitizer and three FIR filters
MB = 1e6
MEMORY_SHARE = 2.5
MEMORY_BASE = 64 * MIB
SMALL_TABLE = 10 * MB  # what is loaded within a few milliseconds says little of bytes a second


class Bars:
    def __init__(self, subjects, report, scale):
        self.subjects = subjects
        self.report = report
        self.sizes = [size // scale for size in (10_000, 100_000, 1_000_000)]
        self.response_size = 100_000 // scale
        self.networks = 200 if scale == 1 else 20
        # What is measured once serves several bars.
        self.measured = {}  # by database, level and jobs
        self.loaded = {}  # by database

    def all(self):
        """What takes them, in their order."""
        return [
            self.right_documents,
            self.cost_in_step,
            self.against_xmllint,
            self.two_jobs,
            self.memory,
            self.loading,
            self.one_station,
            self.against_cat,
            self.both_editions,
        ]

    # --- subjects ----------------------------------------------------------------------------------------------------

    def many_networks(self, epochs):
        return self.subjects.database(epochs, self.networks, STAGES)

    def one_network(self, epochs):
        return self.subjects.database(epochs, 1, STAGES)

    def with_chains(self):
        return self.subjects.database(self.response_size, self.networks, CHAIN_STAGES)

    def conversion(self, database, level, jobs=1):
        """Runs of a conversion whose document was found right; that also brought the tables into the page cache."""
        key = (database.prefix, level, jobs)
        if key not in self.measured:
            self.subjects.document(database, level)
            self.measured[key] = self.subjects.measure(self.subjects.convert(database.prefix, level, jobs))
        return self.measured[key]

    # --- right documents ---------------------------------------------------------------------------------------------

    def right_documents(self):
        self.report.text("\n== documents")
        small = self.subjects.database(1000, 20, CHAIN_STAGES)
        for database, level in ((self.many_networks(self.sizes[0]), "channel"), (small, "response")):
            document = self.subjects.document(database, level)
            last = min(database.networks, database.stations()) - 1
            for number in {0, last // 2, last}:
                self.check_network(database, level, network_code(number))
            size = f"{document.size:,} bytes"
            self.report.text(f"{database.epochs:,} channel epochs, level {level}: {size}, as it must be")

    def check_network(self, database, level, code):
        whole = self.subjects.convert(database.prefix, level)
        subset = self.subjects.convert(database.prefix, level, subset=f"snetsta.snet={code}")
        check_network(whole, subset, self.subjects.environment, code)

    # --- a. ----------------------------------------------------------------------------------------------------------

    def cost_in_step(self):
        self.report.heading("a. cost in step: level channel, one process")
        for make, words in ((self.many_networks, f"{self.networks} networks"), (self.one_network, "one network")):
            before = None
            for size in self.sizes:
                runs = self.conversion(make(size), "channel")
                name = f"{words}, {size:,} channel epochs"
                if before is None:
                    self.report.row(name, runs)
                else:
                    self.report.at_most(name, runs, runs.best.wall / before, 11)
                before = runs.best.wall

    # --- b. ----------------------------------------------------------------------------------------------------------

    def against_xmllint(self):
        self.report.heading("b. against a parser: xmllint --noout --huge")
        self.against_xmllint_on_channels()
        self.against_xmllint_on_responses()

    def xmllint(self, path):
        return self.subjects.measure_once(["xmllint", "--noout", "--huge", str(path)])

    def against_xmllint_on_channels(self):
        database = self.many_networks(self.sizes[-1])
        runs = self.conversion(database, "channel")
        parser = self.xmllint(self.subjects.file_of(database, "channel"))
        self.report.row("xmllint, level channel", parser)
        self.report.at_most("triglub, level channel", runs, runs.best.wall / parser.best.wall, 1)

    def against_xmllint_on_responses(self):
        database = self.with_chains()
        runs = self.conversion(database, "response")
        whole = self.subjects.document(database, "response").size
        path = self.share_of_responses(database)
        share = path.stat().st_size / whole
        parser = self.xmllint(path)
        self.report.row(f"xmllint, level response, {share:.1%} of the bytes", parser)
        self.report.row("xmllint, scaled to all bytes", None, f"{parser.best.wall / share:.1f} s")
        self.report.at_most("triglub, level response, all", runs, runs.best.wall / (parser.best.wall / share), 0.1)

    def share_of_responses(self, database):
        """The document of a tenth of the networks: the parser holds all of it in memory, several times its size."""
        codes = "|".join(network_code(number) for number in range(max(1, self.networks // 10)))
        return self.subjects.file_of(database, "response", subset=f"snetsta.snet=({codes})")

    def two_jobs(self):
        self.report.heading("b. two jobs")
        for database, level in ((self.many_networks(self.sizes[-1]), "channel"), (self.with_chains(), "response")):
            self.subjects.document(database, level)
            commands = [self.subjects.convert(database.prefix, level, jobs) for jobs in (1, 2)]
            one, two = self.subjects.measure_in_turns(commands)
            self.measured[(database.prefix, level, 2)] = two
            self.report.row(f"level {level}, one job", one)
            self.report.at_least(f"level {level}, two jobs", two, one.best.wall / two.best.wall, 1.7)

    # --- c. ----------------------------------------------------------------------------------------------------------

    def memory(self):
        self.report.heading("c. peak memory, in MiB")
        size = self.sizes[-1]
        for database, level, words in (
            (self.many_networks(size), "channel", f"{self.networks} networks, level channel"),
            (self.one_network(size), "channel", "one network, level channel"),
            (self.with_chains(), "response", "FIR chains, level response"),
        ):
            bar = (MEMORY_SHARE * database.table_bytes() + MEMORY_BASE) / MIB
            runs = self.conversion(database, level)
            self.report.at_most(words, runs, runs.peak / MIB, bar, " MiB", 0)
            self.memory_of_two_jobs(database, level, bar)

    def memory_of_two_jobs(self, database, level, bar):
        runs = self.conversion(database, level, jobs=2)
        self.report.at_most("  two jobs, the largest process", runs, runs.peak / MIB, bar, " MiB", 0)
        command = self.subjects.convert(database.prefix, level, jobs=2)
        together = peak_of_family(command, self.subjects.environment)
        self.report.row("  two jobs, together as far as seen", None, f"{together / MIB:.0f} MiB")

    # --- d. ----------------------------------------------------------------------------------------------------------

    def loads(self, database):
        """By name: the load benchmark's results on a database."""
        if database.prefix not in self.loaded:
            self.loaded[database.prefix] = self.measured_loads(database)
        return self.loaded[database.prefix]

    def measured_loads(self, database):
        core = {min(os.sched_getaffinity(0))}
        output = subprocess.run(
            [BUILD / "bench" / "load_bench", "--benchmark_format=json"],
            check=True,
            stdout=subprocess.PIPE,
            env=self.subjects.environment | {"TRIGLUB_BENCH_DATABASE": database.prefix},
            preexec_fn=lambda: os.sched_setaffinity(0, core),
        ).stdout
        results = {result["run_name"].removesuffix("/real_time"): result for result in json.loads(output)["benchmarks"]}
        for result in results.values():
            if result.get("error_occurred"):
                raise WrongResult(f"load_bench: {result['name']}: {result['error_message']}")
        return results

    def loading(self):
        self.report.heading("d. loading from the page cache, one core")
        database = self.many_networks(self.sizes[-1])
        for name, result in self.loads(database).items():
            rate = result["bytes_per_second"] / MB
            table_bytes = result["bytes_per_second"] * result["real_time"] / 1e3
            if name.startswith("load/") and table_bytes >= SMALL_TABLE:
                self.report.at_least(name, None, rate, 400, " MB/s", 0)
            else:
                self.report.row(name, None, f"{rate:.0f} MB/s")

    # --- e. ----------------------------------------------------------------------------------------------------------

    def one_station(self):
        self.report.heading("e. one station of many")
        database = self.many_networks(self.sizes[-1])
        loading = self.loads(database)["load/all"]["real_time"] / 1e3
        self.report.row("loading the tables", None, f"{loading:.3f} s")
        for level in ("channel", "response"):
            subset = f"snetsta.fsta={database.middle_station()}"
            runs = self.subjects.measure(self.subjects.convert(database.prefix, level, subset=subset))
            name = f"one station of {database.epochs:,} epochs, level {level}"
            self.report.at_most(name, runs, runs.best.wall / loading, 2)
        self.one_station_of_the_example()

    def one_station_of_the_example(self):
        example = TREE / "examples" / "observatory" / "observatory"
        runs = self.subjects.measure(self.subjects.convert(example, "response", subset="snetsta.fsta=FJORD"), 20)
        self.report.at_most("one station of the example, level response", runs, runs.best.wall * 1e3, 20, " ms", 1)

    # --- f. ----------------------------------------------------------------------------------------------------------

    def against_cat(self):
        self.report.heading("f. against a pipe: cat DOCUMENT | cat > /dev/null")
        database = self.with_chains()
        size = self.subjects.document(database, "response").size
        path = self.share_of_responses(database)
        pipe = self.subjects.measure(["sh", "-c", 'cat "$1" | cat > /dev/null', "sh", str(path)])
        pipe_rate = path.stat().st_size / pipe.best.wall / MB
        self.report.row("cat | cat", pipe, f"{pipe_rate:.0f} MB/s")
        for jobs, words in ((1, "one job"), (None, "as many jobs as cores")):
            runs = self.conversion(database, "response", jobs)
            rate = size / runs.best.wall / MB
            self.report.row(f"triglub, level response, {words}", runs, f"{rate:.0f} MB/s")
            self.report.at_least(f"  as a share of the pipe, {words}", None, rate / pipe_rate, 0.5)

    # --- g. ----------------------------------------------------------------------------------------------------------

    def both_editions(self):
        self.report.heading("g. edition 2 beside edition 1, in turns")
        many, chains = self.many_networks(self.sizes[-1]), self.with_chains()
        station = f"snetsta.fsta={many.middle_station()}"
        for database, level, jobs, subset, words in (
            (many, "station", 1, None, "level station, one job"),
            (many, "channel", 1, None, "level channel, one job"),
            (many, "channel", 2, None, "level channel, two jobs"),
            (self.one_network(self.sizes[-1]), "channel", 1, None, "level channel, one network"),
            (many, "channel", 1, station, "level channel, one station"),
            (chains, "response", 1, None, "level response, one job"),
            (chains, "response", 2, None, "level response, two jobs"),
        ):
            self.compare_editions(database, level, jobs, subset, words)

    def compare_editions(self, database, level, jobs, subset, words):
        commands = [
            self.subjects.convert(database.prefix, level, jobs, subset, parameters)
            for parameters in ("stationxml-edition1", "stationxml")
        ]
        first, second = self.subjects.measure_in_turns(commands)
        self.report.row(f"{words}, edition 1", first)
        self.report.at_most(f"{words}, edition 2", second, second.best.wall / first.best.wall, 1)
