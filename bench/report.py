"""The results as a table on standard output."""

from measuring import MIB

FORMAT = "{:<46} {:>9} {:>9} {:>9} {:>9}  {:>14}  {:<14} {}"


class Report:
    def __init__(self):
        self.wrong = 0
        self.missed = 0

    def text(self, text=""):
        print(text, flush=True)

    def heading(self, text):
        self.text(f"\n== {text}")
        self.text(FORMAT.format("", "best s", "median s", "CPU s", "peak MiB", "figure", "bar", "met").rstrip())

    def row(self, name, runs=None, figure="", bar="", met=None):
        """One line; `met` tells whether the bar is met, None where there is none."""
        times = [""] * 4
        if runs is not None:
            times = [f"{seconds:.3f}" for seconds in (runs.best.wall, runs.median_wall, runs.best.cpu)]
            times.append(f"{runs.peak / MIB:.1f}")
        self.missed += met is False
        answer = {True: "yes", False: "NO", None: ""}[met]
        self.text(FORMAT.format(name, *times, figure, bar, answer).rstrip())

    def at_most(self, name, runs, figure, bar, unit="x", digits=2):
        self.row(name, runs, f"{figure:.{digits}f}{unit}", f"<= {bar:.{digits}f}{unit}", figure <= bar)

    def at_least(self, name, runs, figure, bar, unit="x", digits=2):
        self.row(name, runs, f"{figure:.{digits}f}{unit}", f">= {bar:.{digits}f}{unit}", figure >= bar)

    def is_wrong(self, error):
        self.wrong += 1
        self.text(f"WRONG: {error}")

    def summary(self):
        self.text(f"\n{self.missed} bars missed, {self.wrong} wrong results")
