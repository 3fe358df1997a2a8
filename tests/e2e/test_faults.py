"""The fault table: each test puts the real programs in front of one fault (a
full disk, a file or folder in the wrong state, hostile names and values, a
damaged History.ini, a logged file gone) and asserts the outcome that keeps the
history: what was in the store before is still there, byte for byte, and the
programs end with one of their own results, never a crash. docs/faults.md
tells each outcome."""
import os
import pathlib
import random
import shutil
import time

from e2e_support import check_archive, expect_equal, main, profile_bytes, skip

SUCCESS = "The file '{}' is created successfully"
FAILURE = " Failed to create file '{}'"


# -- the store before and after ---------------------------------------------------
def files_of(folder):
    """{relative path: bytes} of every file below a folder."""
    folder = pathlib.Path(folder)
    return {str(p.relative_to(folder)): p.read_bytes() for p in folder.rglob("*") if p.is_file()}


def expect_kept(before, after, what):
    """Every file of `before` is in `after` with the same bytes."""
    for name, data in before.items():
        assert name in after, f"{what}: {name} is gone"
        assert after[name] == data, f"{what}: {name} changed"


def finished_event(number, copy="C1"):
    name = f"EVT_{number}"
    return name, [("Event_ID", name), ("Start_Time", "20250101 10:00:00"),
                  ("End_Time", "20250101 10:05:00"), ("Copy_Name", copy), ("Complete_Flag", "TRUE"),
                  ("Result", "0")]


def lay_down(env, events=1, log_bytes=b"the event log\r\n"):
    """A store of finished events of copy C1, each with its event log."""
    sections = [("History", [("Count", str(events))])]
    for number in range(1, events + 1):
        name, keys = finished_event(number)
        sections.append((name, keys))
        folder = env.store / "C1" / name
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "ZORInstallEvent.Log").write_bytes(log_bytes)
    (env.store / "History.ini").write_bytes(profile_bytes(sections))
    return files_of(env.store)


def noise(size, seed=7):
    """Text that deflate can hardly shrink, so that an archive of it is as large."""
    generator = random.Random(seed)
    return bytes(generator.choice(b"abcdefghijklmnopqrstuvwxyz0123456789 \r\n") for _ in range(size))


def collect(env, name="x.zip", **options):
    code, out, _ = env.run_full("ZORGetInstallLog", "-f", name, **options)
    return code, out


def record(env, *args, **options):
    code, out, _ = env.run_full("ZORRecordEvent", *args, **options)
    return code, out


def ini_sections(env):
    """The section names of History.ini, in file order, as plain text lines."""
    text = (env.store / "History.ini").read_bytes().decode("latin-1")
    return [line[1:-1] for line in text.replace("\r", "\n").split("\n")
            if line.startswith("[") and line.endswith("]")]


def as_root():
    return hasattr(os, "geteuid") and os.geteuid() == 0


# -- a full disk ----------------------------------------------------------------
def test_disk_full_while_the_archive_is_written_keeps_the_store(env):
    before = lay_down(env, log_bytes=noise(200_000))
    code, out = collect(env, file_size_limit=64 * 1024)
    # An entry whose data can't be written fails below the root, and the close
    # isn't looked at: the run reports success with a cut archive.
    expect_equal((code, out), (0, env.lines(SUCCESS.format("x.zip"))), "result and console")
    expect_kept(before, files_of(env.store), "store")
    expect_equal((env.work / "x.zip").stat().st_size, 64 * 1024, "archive cut at the limit")


def test_disk_full_while_history_ini_is_written_keeps_the_old_file(env):
    if not env.native:
        skip("the Linux build only; Windows rewrites a profile file in place: a full disk cuts it there")
    before = lay_down(env, events=200)
    outside = env.work / "setup.log"
    outside.write_bytes(b"installer log\r\n")
    ini = env.store / "History.ini"
    ini.write_bytes(ini.read_bytes() + profile_bytes([("EVT_NEW", [("Copy_Name", "C1"), (
        "Log_File_Name", env.program_path(outside))])]))
    (env.store / "C1" / "EVT_NEW").mkdir()
    old = ini.read_bytes()
    code, out = collect(env, file_size_limit=len(old))
    expect_equal(code, 0, "exit code")
    expect_equal(ini.read_bytes(), old, "History.ini")
    del before["History.ini"]
    expect_kept(before, files_of(env.store), "store")
    # The store's lock file has a leading dot, like every name the archive passes over.
    strays = [p.name for p in env.store.iterdir()
              if p.name not in ("History.ini", "C1", "Summary.txt") and not p.name.startswith(".")]
    expect_equal(strays, [], "files left in the history folder")


# -- files and folders in the wrong state ------------------------------------------
def test_read_only_history_ini_is_left_as_it_is(env):
    if not env.native and as_root():
        skip("not under Wine run by root; Wine run by the superuser writes a file whose mode is 0444")
    before = lay_down(env)
    ini = env.store / "History.ini"
    ini.chmod(0o444)
    try:
        code, out = record(env, "-start", "EVT_2", "-Action", "Install")
        expect_equal((code, out), (0, ""), "result and console of -start")
        code, out = record(env, "-end", "EVT_2", "-CopyName", "C1")
        expect_equal(code, 0, "exit code of -end")
        expect_equal(ini.read_bytes(), before["History.ini"], "History.ini")
    finally:
        ini.chmod(0o644)
    expect_kept(before, files_of(env.store), "store")


def test_a_folder_in_place_of_history_ini_is_left_and_the_store_still_packed(env):
    lay_down(env)
    (env.store / "History.ini").unlink()
    (env.store / "History.ini").mkdir()
    code, out = record(env, "-start", "EVT_2")
    expect_equal((code, out), (0, ""), "result and console of -start")
    assert (env.store / "EVT_2" / "ZORInstallEvent.Log").is_file(), "no event log"
    expect_equal(list((env.store / "History.ini").iterdir()), [], "the folder History.ini")
    code, out = collect(env)
    expect_equal((code, out), (0, env.lines(SUCCESS.format("x.zip"))), "result and console")
    names = [info.filename for info in check_archive(env.work / "x.zip")]
    assert "EVT_2\\ZORInstallEvent.Log" in names, names


def test_an_archive_name_that_is_a_folder_fails_and_leaves_the_folder(env):
    before = lay_down(env)
    (env.work / "x.zip").mkdir()
    (env.work / "x.zip" / "inside.txt").write_bytes(b"kept")
    code, out = collect(env)
    expect_equal((code, out), (1, env.lines(FAILURE.format("x.zip"))), "result and console")
    expect_equal(files_of(env.work / "x.zip"), {"inside.txt": b"kept"}, "the folder x.zip")
    expect_kept(before, files_of(env.store), "store")


def test_a_read_only_archive_folder_fails_for_an_ordinary_user(env):
    if as_root():
        skip("not when run by root: the superuser writes into any folder, whatever its mode")
    before = lay_down(env)
    folder = env.work / "locked"
    folder.mkdir()
    folder.chmod(0o555)
    try:
        code, out = collect(env, "locked\\x.zip")
    finally:
        folder.chmod(0o755)
    expect_equal((code, out), (1, env.lines(FAILURE.format("locked\\x.zip"))), "result and console")
    expect_kept(before, files_of(env.store), "store")


# -- hostile names and values ------------------------------------------------------
def check_event_ids(env, ids):
    """Each EventID through -start and -end: no crash, and every earlier event kept."""
    before = lay_down(env)
    for event_id in ids:
        for options in (["-start", event_id], ["-end", event_id, "-Result", "0"]):
            code, _ = record(env, *options)
            assert code in (0, 1), f"{options}: exit code {code}"
    after = files_of(env.store)
    del before["History.ini"]
    expect_kept(before, after, "store")
    sections = ini_sections(env)
    assert "EVT_1" in sections, sections
    code, out = collect(env)
    expect_equal(code, 0, "exit code of the collection")
    check_archive(env.work / "x.zip")


def test_event_ids_at_and_past_the_path_limits(env):
    check_event_ids(env, ["L" * 200, "M" * 255, "N" * 256, "O" * 300])


def test_event_ids_with_separators_and_control_characters(env):
    # An EventID is a path below the history folder, as it stands; one that
    # would lead out of it (a ".." component) is refused.
    try:
        check_event_ids(env, ["a\\b", "c/d", "..", "..\\..\\up", "e:f", "tab\tid", "bell\x07id", "line\nend"])
        assert not (env.store.parent / "ZORInstallEvent.Log").exists(), "a log for the EventID .."
        assert not (env.appdata / "up").exists(), "a folder for the EventID ..\\..\\up"
    finally:
        shutil.rmtree(env.appdata / "up", ignore_errors=True)


# A Windows command line holds at most 32 767 characters: under Wine the long
# value and the long list are as long as a command line can be.
def command_line_room(env, length):
    return length if env.native else min(length, 32_000)


def test_an_option_value_of_100000_characters_is_stored_whole(env):
    lay_down(env)
    value = "p" * command_line_room(env, 100_000)
    code, out = record(env, "-start", "EVT_2", "-Product", value)
    expect_equal((code, out), (0, ""), "result and console")
    text = (env.store / "History.ini").read_bytes().decode("latin-1")
    assert ("Product=" + value + "\r\n") in text, "the long value is not whole in History.ini"
    code, _ = collect(env)
    expect_equal(code, 0, "exit code of the collection")


def test_an_argument_list_of_10000_elements(env):
    lay_down(env)
    # Elements that are no option are passed over.
    arguments = ["-start", "EVT_2"] + ["x"] * 9998
    code, out = record(env, *arguments)
    expect_equal((code, out), (0, ""), "result and console")
    assert "EVT_2" in ini_sections(env), ini_sections(env)


# -- a damaged History.ini ---------------------------------------------------------
def damaged_files():
    text = profile_bytes([("History", [("Count", "1")]), finished_event(1)])
    return {
        "empty": b"",
        "binary": bytes(random.Random(3).randrange(256) for _ in range(4096)),
        "duplicate sections": text + text,
        "keys without =": text + b"a key without a value\r\n=\r\n",
        "a line of 100000 characters": text + b"Long=" + b"x" * 100_000 + b"\r\n",
        "NUL bytes": text.replace(b"Count=1", b"Count=1\0hidden"),
        "no final line end": text[:-2],
        "CR-only line ends": text.replace(b"\r\n", b"\r"),
        "100000 sections": text + b"".join(b"[S%d]\r\nK=V\r\n" % n for n in range(100_000)),
    }


def test_damaged_history_ini_gives_a_whole_event_and_keeps_the_rest(env):
    for kind, data in damaged_files().items():
        began = time.monotonic()
        env.reset()
        env.store.mkdir(parents=True)
        (env.store / "History.ini").write_bytes(data)
        for options in (["-start", "EVT_NEW"], ["-end", "EVT_NEW", "-CopyName", "C9", "-Result", "0"]):
            code, out = record(env, *options)
            expect_equal((code, out), (0, ""), f"{kind}: result and console of {options[0]}")
        after = (env.store / "History.ini").read_bytes()
        assert b"Complete_Flag=TRUE" in after, f"{kind}: the event is not whole"
        if kind not in ("binary", "NUL bytes"):
            kept = set(after.replace(b"\r", b"\n").split(b"\n"))
            for line in data.replace(b"\r", b"\n").split(b"\n"):
                if not line.startswith(b"Count="):  # the count goes up by one
                    assert line in kept, f"{kind}: line {line[:40]!r} is lost"
        code, _ = collect(env)
        assert code in (0, 1) or ini_sections(env)[-1:] == ["History"], f"{kind}: exit code {code}"
        print(f"  {kind}: {time.monotonic() - began:.1f} s")


def test_a_history_ini_of_50_mb_is_collected(env):
    if not env.native:
        skip("the Linux build only; a minute of Wine's profile calls for one run; the logic is the same")
    env.store.mkdir(parents=True)
    padding = [("Pad%05d" % n, "v" * 100) for n in range(480_000)]
    data = profile_bytes([("History", [("Count", "1")] + padding), finished_event(1)])
    (env.store / "History.ini").write_bytes(data)
    code, out = collect(env)
    expect_equal((code, out), (0, env.lines(SUCCESS.format("x.zip"))), "result and console")
    expect_equal((env.store / "History.ini").read_bytes(), data, "History.ini")


# -- a logged file gone -------------------------------------------------------------
def test_a_logged_file_deleted_before_the_collection_keeps_its_key(env):
    lay_down(env)
    log = env.work / "setup.log"
    log.write_bytes(b"installer log\r\n")
    record(env, "-start", "EVT_2", "-l", env.program_path(log))
    record(env, "-end", "EVT_2", "-CopyName", "C1")
    log.unlink()
    code, out = collect(env)
    expect_equal((code, out), (0, env.lines(SUCCESS.format("x.zip"))), "result and console")
    text = (env.store / "History.ini").read_bytes().decode("latin-1")
    assert "Log_File_Name=" + env.program_path(log) + "\r\n" in text, "the key changed"


def test_an_unreadable_logged_file_is_passed_over(env):
    if as_root():
        skip("not when run by root: the superuser reads any file, whatever its mode")
    lay_down(env)
    log = env.work / "setup.log"
    log.write_bytes(b"installer log\r\n")
    record(env, "-start", "EVT_2", "-l", env.program_path(log))
    record(env, "-end", "EVT_2", "-CopyName", "C1")
    log.chmod(0)
    try:
        code, out = collect(env)
    finally:
        log.chmod(0o644)
    expect_equal((code, out), (0, env.lines(SUCCESS.format("x.zip"))), "result and console")
    check_archive(env.work / "x.zip")


if __name__ == "__main__":
    main(globals())
