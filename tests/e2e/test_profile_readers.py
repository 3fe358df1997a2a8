"""Readers of History.ini see what the recorder's own profile calls read: on
Linux a writer that dies leaves its new content behind the old one as a
journal, and the report of a history folder and the archive of a collection
show the content that the journal stands for, never the bytes of the journal.
Under Wine the profile calls are the system's own, which keep no journal, and
these tests have nothing to try."""
import os
import pwd
import struct
import subprocess
import zipfile

from e2e_support import expect_equal, main, profile_bytes, skip
from test_report import read_json

SLOT = 64
NEW_END_TIME = "20260102 10:20:30"
# The same time as the report's JSON form gives it.
NEW_END_TIME_ISO = "2026-01-02T10:20:30"


def history(end_time, copy, flag, result):
    return profile_bytes([
        ("History", [("Count", "1")]),
        ("E1", [("Event_ID", "E1"), ("Start_Time", "20260102 10:00:00"), ("End_Time", end_time),
                ("Copy_Name", copy), ("Complete_Flag", flag), ("Result", result)]),
    ])


OLD = history("", "(Unknown)", "FALSE", "")
NEW = history(NEW_END_TIME, "C1", "TRUE", "0")


def checksum(data):
    """FNV-1a, 64 bits."""
    value = 14695981039346656037
    for byte in data:
        value = ((value ^ byte) * 1099511628211) & 0xFFFFFFFFFFFFFFFF
    return value


def left_by_a_dead_writer(old, new):
    """The bytes of a file whose writer died once its journal was whole, before
    it wrote the new content over the front: the old content, then at the slot
    behind both contents a header (magic, old size, new size, its own offset,
    the new content's checksum, its own checksum), then the new content."""
    at = (max(len(old), len(new)) + SLOT - 1) // SLOT * SLOT
    header = b"\0ZORJNL\x1a" + struct.pack("<4Q", len(old), len(new), at, checksum(new))
    header += struct.pack("<Q", checksum(header))
    return old + bytes(at - len(old)) + header + bytes(SLOT - len(header)) + new


def lay_down_interrupted_write(env):
    env.store.mkdir(parents=True, exist_ok=True)
    ini = env.store / "History.ini"
    ini.write_bytes(left_by_a_dead_writer(OLD, NEW))
    os.chmod(ini, 0o644)
    return ini


def as_nobody():
    return ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups"]


def test_report_of_a_history_folder_shows_the_content_of_a_whole_journal(env):
    if env.windows:
        skip("not on the Windows builds")
    lay_down_interrupted_write(env)
    code, out, err = env.run_full("ZORHistoryReport", env.program_path(env.store), "-json", "r.json")
    expect_equal(code, 0, f"exit code of the report; stdout:\n{out}\nstderr:\n{err}")
    document = read_json(env.work / "r.json")
    events = [(copy["copy"], event["eventId"], event["end"], event["result"])
              for copy in document["copies"] for event in copy["events"]]
    expect_equal(events, [("C1", "E1", NEW_END_TIME_ISO, "succeeded")], "the events of the report")


def test_collection_by_a_user_who_cannot_write_the_store_packs_the_content_without_the_journal(env):
    if env.windows:
        skip("not on the Windows builds")
    assert os.geteuid() == 0, "the test plays a second user, nobody, and must run as root"
    ini = lay_down_interrupted_write(env)
    left = ini.read_bytes()
    output = env.work / "nobody"
    output.mkdir()
    nobody = pwd.getpwnam("nobody")
    os.chown(output, nobody.pw_uid, nobody.pw_gid)
    program = str(env.bin_dir / ("ZORGetInstallLog" + env.suffix))
    result = subprocess.run(as_nobody() + [program, "-f", "x.zip"], cwd=output,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300)
    expect_equal((result.returncode, result.stdout.decode("latin-1")),
                 (0, "The file 'x.zip' is created successfully\n"), "result and console of -f")
    expect_equal(ini.read_bytes(), left, "History.ini after a collection that may not write it")
    with zipfile.ZipFile(output / "x.zip") as archive:
        assert archive.testzip() is None, "a bad entry in the archive"
        packed = archive.read("History.ini")
    assert b"ZORJNL" not in packed, f"the journal was packed: {packed!r}"
    expect_equal(packed, NEW, "History.ini in the archive")


if __name__ == "__main__":
    main(globals())
