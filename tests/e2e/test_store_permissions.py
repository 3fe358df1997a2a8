"""The store on a machine shared with other users (POSIX build, run as root):
its folders and files are written only by their owner whatever the caller's
umask, and a user without privileges who holds every lock that it can take
doesn't stop the recorder, which records the event whole once the lock's
bound of 60 seconds is over."""
import os
import shutil
import stat
import subprocess
import sys
import time

from e2e_support import expect_equal, main, section_lines, skip

# The longest that a holder of the store's lock can hold up a call.
LOCK_BOUND_SECONDS = 60

START_BANNER = "---------- ZOR Installation History Logger ( Start )----------"
# The holder: takes an exclusive flock on every path it is given that it can
# open, says "held", and keeps them until its input closes.
HOLDER = """
import fcntl, os, sys
held = []
for path in sys.argv[1:]:
    try:
        descriptor = os.open(path, os.O_RDONLY | os.O_NONBLOCK)
        fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
        held.append(path)
    except OSError:
        pass
print("held " + " ".join(held), flush=True)
sys.stdin.read()
"""


def posix_root(env):
    return not env.windows and os.geteuid() == 0 and shutil.which("setpriv") is not None


def record(env, *options):
    code, out, err = env.run_full("ZORRecordEvent", *options, timeout=300)
    expect_equal((code, out, err), (0, "", ""), f"result, console and error stream of {options[:2]}")


def mode(path):
    return stat.S_IMODE(os.lstat(path).st_mode)


def test_under_an_open_umask_the_store_is_written_only_by_its_owner(env):
    if env.windows:
        skip("not on the Windows builds; Windows stores carry a DACL, tested under tests/windows")
    previous = os.umask(0)
    try:
        record(env, "-start", "E1", "-Product", "ZOR Server")
        record(env, "-end", "E1", "-CopyName", "C1", "-Result", "Success")
        code, _ = env.run("ZORGetInstallLog", "-f", env.program_path(env.work / "x.zip"))
    finally:
        os.umask(previous)
    expect_equal(code, 0, "exit code of the collection")
    expected = {env.store.parent: 0o755, env.store: 0o755, env.store / "History.ini": 0o644,
                env.store / "Summary.txt": 0o644, env.store / "C1": 0o755,
                env.store / "C1" / "Summary.txt": 0o644, env.store / "C1" / "E1": 0o755,
                env.store / "C1" / "E1" / "ZORInstallEvent.Log": 0o644,
                env.store / ".StoreLock": 0o600}
    expect_equal({str(path): oct(mode(path)) for path in expected},
                 {str(path): oct(value) for path, value in expected.items()}, "modes")


def test_a_store_that_another_user_made_first_is_used_read_only_on_windows(env):
    """Under Wine a folder's owner is its Unix owner: the history folder and its
    parent of another user (uid 65534), as ProgramData\\TAQ made first by a
    user would be, leave History.ini unwritten, as if it were read-only, while
    the event log is still written; the same folders of root's own, open to
    all, are written as usual."""
    if not env.windows:
        skip("the Windows builds only; Linux stores have the modes above and the hostile-file tests")
    env.store.mkdir(parents=True)
    for owner, event_id in ((65534, "E1"), (os.geteuid(), "E2")):
        for folder in (env.store.parent, env.store):
            os.chown(folder, owner, owner)
            os.chmod(folder, 0o777)
        record(env, "-start", event_id)
        assert (env.store / event_id / "ZORInstallEvent.Log").is_file(), f"{event_id}'s event log"
        if owner != os.geteuid():
            assert not (env.store / "History.ini").exists(), "History.ini written in another user's store"
    assert "Event_ID=E2" in section_lines(env, "E2"), section_lines(env, "E2")


def test_a_user_who_holds_every_lock_it_can_does_not_stop_the_recorder(env):
    if not posix_root(env):
        skip("needs root and a second, unprivileged user")
    record(env, "-start", "E1")
    record(env, "-end", "E1", "-CopyName", "C1", "-Result", "Success")
    # The user reaches the store through folders that it may search.
    paths = [env.store.parent, env.store, env.store / "History.ini", env.store / ".StoreLock",
             env.store / "C1", env.store / "C1" / "E1"]
    holder = subprocess.Popen(
        ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", sys.executable, "-c",
         HOLDER] + [str(path) for path in paths],
        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    try:
        held = holder.stdout.readline().split()
        expect_equal(held[0], "held", "the holder's report")
        expect_equal(sorted(held[1:]), sorted(str(path) for path in paths
                                              if path.name != ".StoreLock"),
                     "what the user holds: all but the lock file, which only root may open")
        began = time.monotonic()
        record(env, "-start", "E2", "-Product", "ZOR Server", "-l", "/tmp/setup.log")
        waited = time.monotonic() - began
        print(f"the held call took {waited:.1f} s")
        assert waited < LOCK_BOUND_SECONDS, f"the recorder waited {waited:.1f} s, past the lock's bound"
    finally:
        holder.stdin.close()
        holder.wait(timeout=60)
    record(env, "-logmessage", "E2", "-message", "after the holder")
    record(env, "-end", "E2", "-CopyName", "C1", "-Result", "Success")
    lines = section_lines(env, "E2")
    for line in ("Event_ID=E2", "Product=ZOR Server", "Complete_Flag=TRUE", "Result=Success",
                 "Copy_Name=C1"):
        assert line in lines, f"{line} in {lines}"
    log = (env.store / "C1" / "E2" / "ZORInstallEvent.Log").read_text(encoding="latin-1")
    assert log.startswith(START_BANNER), log[:200]
    assert "after the holder" in log
    expect_equal(section_lines(env, "History"), ["Count=2"], "the count")


main(globals())
