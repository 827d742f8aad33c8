"""Changes the library at one place at a time and tells whether a test fails: check.py ROOT [option...]"""

import argparse
import collections
import hashlib
import json
import os
import queue
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

from places import find_places

# The programs of tests in the order in which they rest on each other; the slowest one last. The tests of the
# tools rest on other libraries as well and are left out.
FOLDERS = ["types", "errors", "codec", "device", "items", "booking", "report", "datarecord", "render", "aliases",
           "faults"]
HEADER_SHARE = 0.25  # places in headers are rarer by this: all that includes them is compiled again
CPU_SECONDS = {"faults": 200}  # the others: 30
WALL_SECONDS = {"faults": 600}  # the others: 120
MEMORY = 4 << 30
# What rests on instructions of the processor is tested with each of its forms.
INSTRUCTIONS = {folder: [None, "", "ssse3", "ssse3,avx2"] for folder in ("codec", "platform")}
KILLED = ("killed", "timeout")


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutation.sh", add_help=False)
    parser.add_argument("root", type=Path)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--jobs", type=int, default=len(os.sched_getaffinity(0)))
    parser.add_argument("--only", default="")
    parser.add_argument("--least", type=float, default=95)
    return parser.parse_args()


def digest(folders):
    result = hashlib.sha256()
    for folder in folders:
        for path in sorted(folder.rglob("*")):
            if path.is_file():
                result.update(str(path.relative_to(folder)).encode() + b"\0" + path.read_bytes() + b"\0")
    return result.hexdigest()[:16]


class Mutant:
    """A place together with the lines that it changes."""

    def __init__(self, place, text):
        self.place, self.text = place, text
        end = place.start + len(place.old)
        first, last = text.rfind("\n", 0, place.start) + 1, text.find("\n", end)
        self.line = text.count("\n", 0, place.start) + 1
        before = text[first:last]
        after = text[first : place.start] + place.new + text[end:last]
        if place.kind == "return":
            after = text[first : place.start] + "!(" + place.old + ")" + text[end:last]
        self.before, self.after = (" ".join(part.split()) for part in (before, after))

    def key(self):
        return f"{self.place.path}:{self.place.start}:{self.place.new}"

    def listed(self):
        return (self.place.path, self.before, self.after)

    def changed(self):
        place = self.place
        return self.text[: place.start] + place.new + self.text[place.start + len(place.old) :]


def processor_has(path):
    """Whether this processor can run a file: the forms for x86 need instructions that not all have."""
    if not path.endswith("_x86.cpp"):
        return True
    flags = re.search(r"^flags\s*:(.*)", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    return flags is not None and {"ssse3", "avx2", "sha_ni"} <= set(flags[1].split())


def mutants(root, options):
    """All mutants in the order in which they are drawn."""
    generator = random.Random(options.seed)
    drawn = []
    for path in sorted(path for ending in ("*.cpp", "*.h") for path in (root / "VnZEL10cmn").rglob(ending)):
        name = path.relative_to(root).as_posix()
        text = path.read_text(encoding="utf-8")
        weight = HEADER_SHARE if name.endswith(".h") else 1
        for place in find_places(name, text, generator):
            position = generator.random() ** (1 / weight)
            if not re.search(r"_win\.(cpp|h)$", name) and re.search(options.only, name) and processor_has(name):
                drawn.append((position, Mutant(place, text)))
    return [mutant for _, mutant in sorted(drawn, key=lambda entry: -entry[0])]


def read_equivalent(path):
    """Mutants that do what the library does, as (file, line, changed line): see the head of the list."""
    if not path.exists():
        return {}
    listed = {}
    for block in path.read_text(encoding="utf-8").split("\n\n"):
        lines = [line for line in block.splitlines() if not line.startswith("#")]
        if lines:
            if len(lines) < 4 or lines[1][:2] != "- " or lines[2][:2] != "+ ":
                sys.exit(f"mutation: an entry of {path.name} isn't file, - line, + line, reason:\n{block}")
            listed[(lines[0], lines[1][2:], lines[2][2:])] = " ".join(lines[3:])
    return listed


def limit(cpu_seconds):
    resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")


class Tree:
    """A copy of the sources that one thread changes, builds and tests."""

    def __init__(self, root, work, name):
        self.source, self.binary = work / name / "source", work / name / "build"
        self.library = self.binary / "libVnZEL10cmn.so"
        self.source.mkdir(parents=True, exist_ok=True)
        # Only what differs is copied, so that a later run compiles no more than it must.
        for folder in ("VnZEL10cmn", "tests"):
            self.copy(root / folder, self.source / folder)
        self.copy_file(root / "scripts/lib/mutation/CMakeLists.txt", self.source / "CMakeLists.txt")
        command = ["cmake", "-G", "Ninja", "-S", self.source, "-B", self.binary, "-DCMAKE_CXX_COMPILER=clang++",
                   f"-DTEST_FOLDERS={';'.join(FOLDERS)}"]
        self.check(run(command))

    def copy(self, source, target):
        wanted = {path.relative_to(source) for path in source.rglob("*") if path.is_file()}
        for path in list(target.rglob("*")):
            if path.is_file() and path.relative_to(target) not in wanted:
                path.unlink()
        for path in wanted:
            self.copy_file(source / path, target / path)

    @staticmethod
    def copy_file(source, target):
        target.parent.mkdir(parents=True, exist_ok=True)
        if not target.exists() or source.read_bytes() != target.read_bytes():
            shutil.copyfile(source, target)

    @staticmethod
    def check(result):
        if result.returncode != 0:
            sys.exit("mutation: the unchanged sources can't be built:\n" + result.stdout[-4000:])

    def ninja(self, *targets, jobs=1):
        return run(["ninja", "-C", self.binary, "-j", str(jobs), *targets])

    def program_fails(self, folder, program, instructions=None):
        """None if all tests pass, else "killed" or "timeout"."""
        environment = {**os.environ, "LD_LIBRARY_PATH": str(self.binary), "RC_PARAMS": "seed=1"}
        command = [program, "--gtest_brief=1", "--gtest_fail_fast"]
        if instructions is not None:
            command.append(f"--instructions={instructions}")
        cpu_seconds = CPU_SECONDS.get(folder, 30)
        with tempfile.TemporaryDirectory(dir=self.binary) as place:
            process = subprocess.Popen(
                command, cwd=place, env=environment, preexec_fn=lambda: limit(cpu_seconds),
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                start_new_session=True)
            try:
                status = process.wait(WALL_SECONDS.get(folder, 120))
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
                return "timeout"
        if status == 0:
            return None
        return "timeout" if status in (-signal.SIGXCPU, -signal.SIGKILL) else "killed"

    def outcome(self, mutant, programs):
        """What becomes of a mutant: (killed | timeout | survived | uncompilable | same, by which program)."""
        source = self.source / mutant.place.path
        object_file = self.binary / "CMakeFiles/VnZEL10cmn.dir" / (mutant.place.path + ".o")
        is_header = source.suffix == ".h"
        stamp = source.stat()
        kept = None if is_header else self.binary / "kept.o"
        if kept:
            shutil.copy2(object_file, kept)
        source.write_text(mutant.changed(), encoding="utf-8")
        try:
            if self.ninja("VnZEL10cmn").returncode != 0:
                return "uncompilable", ""
            if kept and kept.read_bytes() == object_file.read_bytes():
                return "same", ""
            return self.tested(mutant.place.path.split("/")[1], programs, is_header)
        finally:
            source.write_text(mutant.text, encoding="utf-8")
            if kept:
                # As if the file had never been changed: it isn't compiled again, only linked.
                shutil.copy2(kept, object_file)
                os.utime(source, ns=(stamp.st_atime_ns, stamp.st_mtime_ns))
                self.library.unlink(missing_ok=True)

    def tested(self, own, programs, is_header):
        # The folder's own tests, those of what rests on it, and the others.
        first = FOLDERS.index(own) if own in FOLDERS else 0
        for folder in FOLDERS[first:-1] + FOLDERS[:first] + FOLDERS[-1:]:
            program = programs / f"{folder}_tests"
            if is_header:
                if self.ninja(f"{folder}_tests").returncode != 0:
                    return "uncompilable", ""
                program = self.binary / f"{folder}_tests"
            for instructions in INSTRUCTIONS.get(own, [None]) if folder != "faults" else [None]:
                failure = self.program_fails(folder, program, instructions)
                if failure:
                    return failure, folder
        return "survived", ""


class Results:
    """What is known of mutants, kept in a file by which a run is continued."""

    def __init__(self, path, library, tests):
        self.path, self.library, self.tests = path, library, tests
        self.known, self.lock = {}, threading.Lock()
        if path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                try:
                    entry = json.loads(line)
                except ValueError:
                    continue  # the run was interrupted while it wrote this
                if entry["library"] == library:
                    self.known[entry["key"]] = entry

    def find(self, mutant, listed):
        """The outcome found before; a survivor is tried again when the tests have changed since."""
        entry = self.known.get(mutant.key())
        if entry is None or (entry["outcome"] == "survived" and entry["tests"] != self.tests and not listed):
            return None
        return entry["outcome"], entry["by"]

    def add(self, mutant, outcome, by):
        with self.lock, self.path.open("a", encoding="utf-8") as file:
            entry = {"library": self.library, "tests": self.tests, "key": mutant.key(), "line": mutant.line,
                     "before": mutant.before, "after": mutant.after, "outcome": outcome, "by": by}
            file.write(json.dumps(entry, ensure_ascii=False) + "\n")


def prepare(options, work):
    """The trees, and the programs of the unchanged tests, which pass."""
    print("Building the library and the tests", flush=True)
    trees = [Tree(options.root, work, f"tree{number}") for number in range(options.jobs)]
    for tree in trees:
        tree.check(tree.ninja("VnZEL10cmn", jobs=options.jobs))
    trees[0].check(trees[0].ninja(*[f"{folder}_tests" for folder in FOLDERS], jobs=options.jobs))
    programs = work / "programs"
    programs.mkdir(exist_ok=True)
    for folder in FOLDERS:
        shutil.copy2(trees[0].binary / f"{folder}_tests", programs)
        failure = trees[0].program_fails(folder, programs / f"{folder}_tests")
        if failure:
            sys.exit(f"mutation: {folder}_tests of the unchanged library: {failure}")
    return trees, programs


def examine(options, work, equivalent):
    """[(mutant, outcome, by)] of the first so many mutants that count."""
    tests = digest([options.root / "tests", options.root / "scripts/lib/mutation"])
    results = Results(work / "results.jsonl", digest([options.root / "VnZEL10cmn"]), tests)
    drawn = iter(enumerate(mutants(options.root, options)))
    trees, programs = prepare(options, work)
    lock, done, failures = threading.Lock(), {}, queue.Queue()
    counted = underway = 0

    def work_on(tree):
        nonlocal counted, underway
        while True:
            with lock:
                # One under way is taken to count; if it doesn't, the thread that has it draws another.
                entry = next(drawn, None) if counted + underway < options.count else None
                if entry is None:
                    return
                underway += 1
            index, mutant = entry
            listed = mutant.listed() in equivalent
            found = results.find(mutant, listed)
            if not found:
                found = tree.outcome(mutant, programs)
                results.add(mutant, *found)
            outcome, by = found
            if outcome == "survived" and listed:
                outcome = "equivalent"
            with lock:
                underway -= 1
                if outcome in ("uncompilable", "same"):
                    continue
                counted += 1
                done[index] = (mutant, outcome, by)
                place = mutant.place
                print(f"{counted:4}/{options.count} {outcome:10} {by:10} {place.path}:{mutant.line}  "
                      f"{place.kind}: {' '.join(place.old.split())[:30]} -> "
                      f"{'negated' if place.kind == 'return' else place.new or 'nothing'}", flush=True)

    def guarded(tree):
        try:
            work_on(tree)
        except BaseException as problem:  # noqa: BLE001: handed to the main thread
            failures.put(problem)

    threads = [threading.Thread(target=guarded, args=(tree,), daemon=True) for tree in trees]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if not failures.empty():
        raise failures.get()
    return [done[index] for index in sorted(done)]


def table(title, rows):
    outcomes = ["killed", "timeout", "survived", "equivalent"]
    print(f"\n{title:24}" + "".join(f"{outcome:>12}" for outcome in outcomes) + f"{'killed of':>16}")
    total = collections.Counter()
    for name, counts in [*sorted(rows.items()), ("Total", total)]:
        if counts is not total:
            total.update(counts)
        killed = sum(counts[outcome] for outcome in KILLED)
        judged = killed + counts["survived"]
        percent = f"{100 * killed / judged:6.1f} %" if judged else "      - "
        print(f"{name:24}" + "".join(f"{counts[outcome]:12}" for outcome in outcomes) + f"{judged:7} {percent}")
    return total


def report(results, equivalent, least):
    def folder(mutant):
        return mutant.place.path.split("/")[1]

    def kind(mutant):
        return mutant.place.kind

    for title, of in (("Folder", folder), ("Change", kind)):
        rows = collections.defaultdict(collections.Counter)
        for mutant, outcome, _ in results:
            rows[of(mutant)][outcome] += 1
        total = table(title, rows)
    for wanted in ("equivalent", "survived"):
        chosen = [mutant for mutant, outcome, _ in results if outcome == wanted]
        if chosen:
            print(f"\n{wanted.capitalize()}:")
        for mutant in chosen:
            print(f"\n{mutant.place.path}:{mutant.line}\n- {mutant.before}\n+ {mutant.after}")
            if wanted == "equivalent":
                print(f"  {equivalent[mutant.listed()]}")
    for mutant, outcome, by in results:
        if outcome in KILLED and mutant.listed() in equivalent:
            print(f"\nListed as equivalent, yet {outcome} by {by}: {mutant.place.path}:{mutant.line}")
    killed = sum(total[outcome] for outcome in KILLED)
    judged = killed + total["survived"]
    percent = 100 * killed / judged if judged else 0
    print(f"\n{killed} of {judged} mutants were killed: {percent:.1f} %")
    if percent < least:
        sys.exit(f"mutation: less than {least:g} %")


def main():
    options = arguments()
    work = options.root / "build/mutation"
    work.mkdir(parents=True, exist_ok=True)
    equivalent = read_equivalent(options.root / "scripts/mutation_equivalent.txt")
    report(examine(options, work, equivalent), equivalent, options.least)


main()
