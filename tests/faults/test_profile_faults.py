"""One write of a profile file, killed at each of its steps: before every
call of the system that changes a file (SIGKILL injected by strace), and in
the middle of every write at each page boundary, where the system may stop a
write whose process is killed. After each fault, the file is either the old
or the new content: as a reader that may not change it sees it, and, once a
reader that may has finished the dead writer's work, byte for byte. No other
file is ever left beside it, a symbolic link stays a link, a hard link stays
a link, and a folder that its writer may not change is no hindrance. Each
step reaches the disk before the next begins (the order of the calls, as
strace sees them), and a disk that fills refuses the write before the file
has changed (on a small tmpfs, mounted here, as root).

Usage: test_profile_faults.py --strace STRACE --setpriv SETPRIV --tool PROFILE_TOOL --work-dir DIR"""
import argparse
import os
import pathlib
import re
import shutil
import stat
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))
from e2e_support import run_tests, skip  # noqa: E402

PAGE = 4096
# The calls that change a file, and those that reserve its space or bring it
# to the disk, between which the order of its steps is kept.
CHANGING_CALLS = ("pwrite64", "ftruncate", "linkat", "fallocate", "fdatasync", "fsync")
KEYS = ["Count", "Event_ID", "Copy_Name", "Complete_Flag", "Result"]
# strace injects only into the calls that it traces: every run traces these.
TRACED = "trace=openat," + ",".join(CHANGING_CALLS)
# Under ptrace the leak checker can't run; the runs here are about the file.
ENVIRONMENT = dict(os.environ, ASAN_OPTIONS="detect_leaks=0")


def profile(sections):
    """A profile file as the engine writes it: [name] and key=value lines, CR LF."""
    lines = []
    for name, keys in sections:
        lines.append(f"[{name}]")
        lines.extend(f"{key}={value}" for key, value in keys)
    return "".join(line + "\r\n" for line in lines).encode("latin-1")


def store_of(events):
    """[History] and `events` sections of 4 keys: about 90 bytes each."""
    sections = [("History", [("Count", str(events))])]
    for number in range(events):
        name = f"EVT_{number:03}"
        sections.append((name, [("Event_ID", name), ("Copy_Name", f"Copy_{number % 3}"),
                                ("Complete_Flag", "FALSE"), ("Result", "")]))
    return profile(sections)


class Faults:
    def __init__(self, args):
        self.strace = args.strace
        self.setpriv = args.setpriv
        self.tool = args.tool
        self.work = pathlib.Path(args.work_dir)

    # -- running the tool ------------------------------------------------
    def command(self, scenario, *arguments):
        prefix = []
        if scenario.unprivileged:
            prefix = [self.setpriv, "--reuid=nobody", "--regid=nogroup", "--clear-groups"]
        return prefix + [self.tool, *arguments]

    def run(self, command, strace_options=()):
        """Runs a command, under strace with these options if any are given;
        its trace goes nowhere unless they name a file."""
        if strace_options:
            output = [] if "-o" in strace_options else ["-o", os.devnull]
            command = [self.strace, "-qq", "-e", TRACED, *output, *strace_options, *command]
        return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=ENVIRONMENT, timeout=120)

    def write(self, scenario, strace_options=()):
        return self.run(self.command(scenario, "write", str(scenario.path), *scenario.change),
                        [*scenario.refusals, *strace_options])

    def read(self, scenario):
        result = self.run(self.command(scenario, "read", str(scenario.path), *KEYS))
        assert result.returncode == 0, result.stderr
        return result.stdout

    # -- what a write does -----------------------------------------------
    def traced_write(self, scenario):
        """Runs the write whole, tracing the calls that change files; returns
        the new content and the calls, each as (name, fd, offset or size, data)."""
        scenario.prepare()
        trace = self.work / "trace.txt"
        result = self.write(scenario, ["-xx", "-s", "100000000", "-o", str(trace)])
        assert result.returncode == 0, result.stderr
        calls = parse_trace(trace.read_text(), scenario.path)
        return scenario.path.read_bytes(), calls

    def kill_before(self, scenario, name, number):
        scenario.prepare()
        result = self.write(scenario, ["-e", f"inject={name}:signal=KILL:when={number}"])
        assert result.returncode in (-9, 137), f"not killed: {result.returncode} {result.stderr}"

    # -- checks ----------------------------------------------------------
    def dumps(self, scenario, new):
        """What a reader prints for each content that the file may stand for."""
        seen = {}
        for content in scenario.old_contents + [new]:
            scenario.prepare()
            scenario.lay_down(content)
            seen[content] = self.read(scenario)
        return seen

    def check(self, scenario, dumps, what):
        """What the file stands for after a fault: old or new, first as a reader
        that may not change it sees it, then byte for byte once repaired."""
        expect(scenario.names() == scenario.names_beside(scenario.content()),
               f"{what}: names {scenario.names()}")
        seen = self.view_without_repair(scenario)
        expect(seen in dumps.values(), f"{what}: a reader sees neither content:\n{seen.decode()}")
        expect(self.read(scenario) == seen, f"{what}: the repairing reader sees another content")
        content = scenario.content()
        expect(content in dumps and dumps[content] == seen,
               f"{what}: after the repair the file holds {shown(content)}")
        expect(scenario.names() == scenario.names_beside(content), f"{what}: names after the repair")
        scenario.check_links(what)

    def view_without_repair(self, scenario):
        """Read as a reader that may not write the file: nothing is repaired."""
        target = scenario.path.resolve()
        if not target.exists():
            return self.read(scenario)
        mode = target.stat().st_mode
        before = target.read_bytes()
        os.chmod(target, 0o444)
        try:
            seen = self.read(scenario)
        finally:
            os.chmod(target, stat.S_IMODE(mode))
        expect(target.read_bytes() == before, "a reader that may not write changed the file")
        return seen

    # -- the faults ------------------------------------------------------
    def run_scenario(self, scenario):
        scenario.find_refusals(self)
        new, calls = self.traced_write(scenario)
        dumps = self.dumps(scenario, new)
        expect(len(set(dumps.values())) == 2, "the write changes nothing that a reader sees")
        counts = {}
        for name, *_ in calls:
            counts[name] = counts.get(name, 0) + 1
        kills = repairs = 0
        for name, count in counts.items():
            for number in range(1, count + 1):
                self.kill_before(scenario, name, number)
                left = scenario.content()
                self.check(scenario, dumps, f"killed before {name} #{number}")
                kills += 1
                repairs += self.check_repair_faults(scenario, dumps, left, f"{name} #{number}")
        partial = self.check_partial_writes(scenario, dumps, calls)
        print(f"  {scenario.name}: writer killed at {kills} steps, repairing reader at {repairs}, "
              f"{partial} writes stopped at a page boundary")

    def check_partial_writes(self, scenario, dumps, calls):
        """Each write that spans pages, stopped at each page boundary inside it."""
        checked = 0
        state = bytearray(scenario.old or b"")
        for name, on_file, argument, data in calls:
            if name == "pwrite64" and on_file:
                for boundary in range((argument // PAGE + 1) * PAGE, argument + len(data), PAGE):
                    scenario.prepare()
                    scenario.lay_down(bytes(apply_write(state, argument, data[:boundary - argument])))
                    self.check(scenario, dumps, f"stopped at {boundary} in a write at {argument}")
                    checked += 1
                state = apply_write(state, argument, data)
            elif name == "ftruncate" and on_file:
                state = state[:argument] + bytes(max(0, argument - len(state)))
        return checked

    def check_repair_faults(self, scenario, dumps, left, what):
        """A reader that finishes a dead writer's work may die too: killed before
        each step of its own, the file still stands for the same content."""
        killed = 0
        if left in dumps:
            return 0
        for call in ("pwrite64", "fdatasync", "ftruncate"):
            scenario.lay_down(left)
            result = self.run(self.command(scenario, "read", str(scenario.path), *KEYS),
                              ["-e", f"inject={call}:signal=KILL:when=1"])
            if result.returncode in (-9, 137):
                self.check(scenario, dumps, f"killed before {what}, then the repair before {call}")
                killed += 1
        return killed


def shown(content):
    """The start of a content, for a message."""
    return "no file" if content is None else repr(content[:200])


def expect(condition, message):
    if not condition:
        raise AssertionError(message)


def apply_write(state, offset, data):
    state = bytearray(state)
    if len(state) < offset + len(data):
        state.extend(bytes(offset + len(data) - len(state)))
    state[offset:offset + len(data)] = data
    return state


def parse_trace(text, path):
    """The changing calls of a trace: (name, on the file itself, offset or size, data)."""
    names = {str(path), str(path.resolve())}
    file_fds, calls = set(), []
    for line in text.splitlines():
        opened = re.match(r'openat\(AT_FDCWD, "((?:\\x[0-9a-f]{2})*)", ([^)]*)\)\s+= (\d+)', line)
        if opened:
            name = bytes.fromhex(opened.group(1).replace("\\x", "")).decode("latin-1")
            if name in names and "O_TMPFILE" not in opened.group(2):
                file_fds.add(int(opened.group(3)))
            continue
        written = re.match(r'pwrite64\((\d+), "((?:\\x[0-9a-f]{2})*)", \d+, (\d+)\)\s+= \d+', line)
        if written:
            data = bytes.fromhex(written.group(2).replace("\\x", ""))
            calls.append(("pwrite64", int(written.group(1)) in file_fds, int(written.group(3)), data))
            continue
        cut = re.match(r'ftruncate\((\d+), (\d+)\)\s+= 0', line)
        if cut:
            calls.append(("ftruncate", int(cut.group(1)) in file_fds, int(cut.group(2)), b""))
            continue
        other = re.match(r'(linkat|fallocate|fdatasync|fsync)\((\d+|AT_FDCWD)', line)
        if other:
            calls.append((other.group(1), other.group(2).isdigit() and int(other.group(2)) in file_fds,
                          0, b""))
    return calls


class Scenario:
    """A History.ini in a folder of its own, the old content (None: no file),
    and one write."""
    unprivileged = False

    def __init__(self, work, name, old, change):
        self.name = name
        self.folder = work / name
        self.path = self.folder / "History.ini"
        self.old = old
        self.change = change
        # What the file may hold where the write hasn't taken place.
        self.old_contents = [old]
        # strace options that refuse calls to the writer in every run.
        self.refusals = []

    def find_refusals(self, faults):
        pass

    def prepare(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        if self.old is not None:
            self.lay_down(self.old)

    def lay_down(self, content):
        target = self.path.resolve()
        if content is None:
            target.unlink(missing_ok=True)
            return
        with open(target, "r+b" if target.exists() else "wb") as file:
            file.truncate(0)
            file.write(content)

    def content(self):
        return self.path.read_bytes() if self.path.exists() else None

    def names(self):
        return sorted(os.listdir(self.folder))

    def names_beside(self, content):
        """The names that the folder holds when the file holds `content`."""
        return [] if content is None else ["History.ini"]

    def check_links(self, what):
        pass


class MadeAnewWithoutUnnamedFiles(Scenario):
    """A new file where the file system offers no unnamed files: the writer
    makes it empty and writes it in place, so a kill between the two leaves an
    empty file, which reads as no file at all."""

    def __init__(self, work, name, change):
        super().__init__(work, name, None, change)
        self.old_contents = [None, b""]

    def find_refusals(self, faults):
        self.prepare()
        trace = faults.work / "openat.txt"
        result = faults.write(self, ["-o", str(trace)])
        assert result.returncode == 0, result.stderr
        calls = [line for line in trace.read_text().splitlines() if line.startswith("openat(")]
        number = next(i for i, line in enumerate(calls, 1) if "O_TMPFILE" in line)
        self.refusals = ["-e", f"inject=openat:error=EOPNOTSUPP:when={number}"]


class SymbolicLink(Scenario):
    """History.ini is a link to a file in another folder."""

    def __init__(self, work, name, old, change):
        super().__init__(work, name, old, change)
        self.target = work / (name + "-target") / "real.ini"

    def prepare(self):
        shutil.rmtree(self.target.parent, ignore_errors=True)
        self.target.parent.mkdir(parents=True)
        self.target.write_bytes(self.old)
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.path.symlink_to(self.target)

    def check_links(self, what):
        expect(self.path.is_symlink() and self.path.resolve() == self.target, f"{what}: link lost")
        expect(os.listdir(self.target.parent) == ["real.ini"], f"{what}: names beside the target")


class HardLink(Scenario):
    """History.ini has a second name in the same folder, and an unprivileged
    writer: root writes no file of two names, whose other name may lie
    anywhere (a test of the hostile users' store shows that refusal)."""
    unprivileged = True

    def names_beside(self, content):
        return ["History.ini", "second-name.ini"]

    def prepare(self):
        super().prepare()
        os.link(self.path, self.folder / "second-name.ini")
        for path in (self.folder, self.path):
            os.chown(path, *nobody())

    def check_links(self, what):
        expect(os.path.samefile(self.path, self.folder / "second-name.ini"), f"{what}: link lost")


class FolderNotToBeChanged(Scenario):
    """A writable History.ini of an unprivileged writer, in a folder that the
    writer may not change."""
    unprivileged = True

    def prepare(self):
        super().prepare()
        os.chmod(self.folder, 0o755)
        os.chown(self.path, *nobody())

    def check_links(self, what):
        expect(self.folder.stat().st_uid == 0, f"{what}: the folder changed hands")


def nobody():
    import pwd
    entry = pwd.getpwnam("nobody")
    return entry.pw_uid, entry.pw_gid


def check_flush_order(faults):
    """Each step of a write is on the disk before the next begins: the blocks
    are reserved before the first byte is written, the journal is flushed
    before the front is written over, and the front before the journal is
    cut off. A new file is flushed before it gets its name, and its folder
    after."""
    steps = {"grows": ["fallocate", "journal", "journal", "fdatasync", "front", "fdatasync",
                       "ftruncate"],
             "made_anew": ["front", "fdatasync", "linkat", "fsync"]}
    for scenario in scenarios(faults.work):
        if scenario.name not in steps:
            continue
        _, calls = faults.traced_write(scenario)
        seen = [("front" if argument == 0 else "journal") if name == "pwrite64" else name
                for name, on_file, argument, _ in calls if on_file or scenario.old is None]
        expect(seen == steps[scenario.name], f"{scenario.name}: the steps are {seen}")


def check_disk_that_fills(faults):
    """A disk with room for the journal but not for the new front, which grows
    into pages that the old content never had: the write is refused before
    anything has changed, and History.ini keeps its old content, byte for byte."""
    disk = faults.work / "small-disk"
    disk.mkdir()
    mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k,mode=0755", "tmpfs", str(disk)],
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if mounted.returncode != 0:
        skip("no small tmpfs can be mounted here, so the full disk is not tried: "
             f"{mounted.stdout.decode(errors='replace').strip()}")
    try:
        path = disk / "History.ini"
        old = profile([("History", [("Count", "1")])])
        path.write_bytes(old)
        value = "v" * 20000
        new_size = len(profile([("History", [("Count", "1"), ("Result", value)])]))
        journal_at = (new_size + 63) // 64 * 64
        journal_pages = (journal_at + 64 + new_size - 1) // PAGE - journal_at // PAGE + 1
        (disk / "filler").write_bytes(bytes((os.statvfs(disk).f_bavail - journal_pages) * PAGE))
        expect(os.statvfs(disk).f_bavail == journal_pages, "the disk doesn't hold just the journal")
        result = faults.run([faults.tool, "write", str(path), "History", "Result", value])
        expect(result.returncode == 1, f"the write was not refused: {result.returncode}")
        expect(path.read_bytes() == old, f"History.ini holds {shown(path.read_bytes())}")
        seen = faults.run([faults.tool, "read", str(path), "Count", "Result"]).stdout
        expect(seen == b"[History]\nCount=1\nResult\n", f"a reader sees {seen!r}")
    finally:
        subprocess.run(["umount", str(disk)], check=True)


def scenarios(work):
    store = store_of(150)  # over three pages
    return [
        Scenario(work, "grows", store, ["History", "Count", "151"]),
        Scenario(work, "shrinks", store, ["EVT_075", "Complete_Flag", "TRUE"]),
        Scenario(work, "new_key_at_the_front", store, ["History", "Result", "a new key"]),
        Scenario(work, "new_section", store, ["EVT_150", "Event_ID", "EVT_150"]),
        Scenario(work, "made_anew", None, ["History", "Count", "0"]),
        MadeAnewWithoutUnnamedFiles(work, "made_anew_without_unnamed_files", ["History", "Count", "0"]),
        SymbolicLink(work, "symbolic_link", store, ["History", "Count", "151"]),
        HardLink(work, "hard_link", store, ["EVT_001", "Result", "Success"]),
        FolderNotToBeChanged(work, "folder_not_to_be_changed", store, ["History", "Count", "151"]),
    ]


def main():
    parser = argparse.ArgumentParser()
    for option in ("--strace", "--setpriv", "--tool", "--work-dir"):
        parser.add_argument(option, required=True)
    faults = Faults(parser.parse_args())
    shutil.rmtree(faults.work, ignore_errors=True)
    faults.work.mkdir(parents=True)
    os.chmod(faults.work, 0o755)
    run_tests([(scenario.name, lambda scenario=scenario: faults.run_scenario(scenario))
               for scenario in scenarios(faults.work)] +
              [("flush_order", lambda: check_flush_order(faults)),
               ("disk_that_fills", lambda: check_disk_that_fills(faults))], lambda: None)


if __name__ == "__main__":
    main()
