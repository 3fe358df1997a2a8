"""A hostile neighbour against root's recorder and root's ZORGetInstallLog -f:
the unprivileged user `nobody` prepares installer logs, links and special files,
and each attack must fail while the honest event is still recorded and
collected whole. The attacks that need a second user run on the Linux build
as root; under Wine the Windows counterparts run (attributes of a copy,
reparse points in the store)."""
import os
import pathlib
import pwd
import shutil
import stat
import subprocess
import tempfile
import threading
import zipfile

from e2e_support import main, check_archive, expect_equal, section_lines, skip
from test_report import read_json

EVENT = "E1"
COPY = "C1"
HONEST_LOG = b"the honest installer's log\n"


def second_user_available(env):
    return env.native and os.geteuid() == 0 and shutil.which("setpriv") is not None


def as_nobody(*command):
    """Runs a command as the unprivileged user, as a hostile neighbour would."""
    subprocess.run(["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", "--reset-env",
                    *command], check=True, timeout=60)


def attacker_folder():
    """A folder in /tmp that belongs to the unprivileged user."""
    folder = tempfile.mkdtemp(prefix="zor-attacker-")
    entry = pwd.getpwnam("nobody")
    os.chown(folder, entry.pw_uid, entry.pw_gid)
    os.chmod(folder, 0o755)
    return folder


def windows_form(env, host_path):
    """A host path in the system's own form, with backslashes."""
    return env.program_path(host_path).replace("/", "\\")


def record(env, *options):
    code, output = env.run("ZORRecordEvent", *options)
    expect_equal((code, output), (0, ""), f"recorder call {options[:2]}")


def collect(env, name="x.zip"):
    code, output = env.run("ZORGetInstallLog", "-f", name)
    expect_equal((code, output), (0, f"The file '{name}' is created successfully" + env.eol),
                 "collection run")
    return env.work / name


def record_event(env, event_id=EVENT, copy=COPY, **files):
    """One whole event; files maps -l, -t, -u to the paths the installer names."""
    options = []
    for option in ("l", "t", "u"):
        if option in files:
            options += [f"-{option}", files[option]]
    record(env, "-start", event_id, "-Product", "ZOR Server", *options)
    record(env, "-end", event_id, "-CopyName", copy, "-Result", "Success")


def archive_names(archive):
    return [info.filename for info in check_archive(archive)]


def expect_honest_event_collected(env, archive, event_id=EVENT, copy=COPY):
    """The event's log is in the store and in the archive, whole."""
    event_log = env.store / copy / event_id / "ZORInstallEvent.Log"
    assert event_log.is_file(), f"{event_log} missing"
    with zipfile.ZipFile(archive) as z:
        expect_equal(z.read(f"{copy}\\{event_id}\\ZORInstallEvent.Log"), event_log.read_bytes(),
                     "archived event log")
    assert f"Event_ID={event_id}" in section_lines(env, event_id), section_lines(env, event_id)


# -- item: a staged copy never runs as anyone ----------------------------------
def test_staged_copies_never_keep_setuid_setgid_sticky_or_execute_bits(env):
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user; a Windows copy takes over attributes only, there is no mode to keep")
    folder = attacker_folder()
    try:
        names = {"l": ("setuid.log", 0o7777), "t": ("private.log", 0o600), "u": ("readonly.log", 0o444)}
        for name, mode in names.values():
            as_nobody("sh", "-c", f"printf '#!/bin/sh\\nid\\n' > {folder}/{name} && "
                                  f"chmod {mode:o} {folder}/{name}")
        record_event(env, **{key: windows_form(env, f"{folder}/{name}") for key, (name, _) in names.items()})
        archive = collect(env)
        staged = env.store / COPY / EVENT
        expect_equal({name: stat.S_IMODE((staged / name).stat().st_mode) for name, _ in names.values()},
                     {"setuid.log": 0o644, "private.log": 0o600, "readonly.log": 0o444},
                     "modes of the staged copies")
        expect_equal((staged / "setuid.log").read_bytes(), b"#!/bin/sh\nid\n", "staged content")
        assert "C1\\E1\\setuid.log" in archive_names(archive)
        expect_honest_event_collected(env, archive)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def test_a_log_that_its_folders_keep_private_stays_private_when_staged(env):
    """A log readable by everyone, in a folder of root's that no one else may
    search: its copy in the store, which every user may read, is root's alone,
    as the log was. Beside it, a log in a folder that everyone may search keeps
    its mode."""
    if not (env.native and os.geteuid() == 0):
        skip("needs the Linux build run by root; a Windows copy takes over attributes only, there is no mode to keep")
    private_folder = tempfile.mkdtemp(prefix="zor-private-")
    open_folder = tempfile.mkdtemp(prefix="zor-open-")
    try:
        os.chmod(private_folder, 0o700)
        os.chmod(open_folder, 0o755)
        for folder, name in ((private_folder, "private.log"), (open_folder, "open.log")):
            with open(os.path.join(folder, name), "wb") as f:
                f.write(HONEST_LOG)
            os.chmod(os.path.join(folder, name), 0o644)
        record_event(env, l=windows_form(env, f"{private_folder}/private.log"),
                     t=windows_form(env, f"{open_folder}/open.log"))
        archive = collect(env)
        staged = env.store / COPY / EVENT
        expect_equal({name: stat.S_IMODE((staged / name).stat().st_mode) for name in ("private.log", "open.log")},
                     {"private.log": 0o600, "open.log": 0o644}, "modes of the staged copies")
        assert f"{COPY}\\{EVENT}\\private.log" in archive_names(archive)
        expect_honest_event_collected(env, archive)
    finally:
        shutil.rmtree(private_folder, ignore_errors=True)
        shutil.rmtree(open_folder, ignore_errors=True)


# -- item: links and special files ----------------------------------------------
def root_only_secret():
    """A folder of root's, mode 0700, with a file that nobody else may read."""
    folder = tempfile.mkdtemp(prefix="zor-root-only-")
    os.chmod(folder, 0o700)
    secret = os.path.join(folder, "shadow")
    with open(secret, "wb") as f:
        f.write(b"ROOT-ONLY-SECRET\n")
    os.chmod(secret, 0o600)
    return folder, secret


def expect_secret_nowhere(env, archive):
    for path in env.store.rglob("*"):
        if path.is_file() and not path.is_symlink():
            assert b"ROOT-ONLY-SECRET" not in path.read_bytes(), f"{path} holds the secret"
    with zipfile.ZipFile(archive) as z:
        for name in z.namelist():
            assert b"ROOT-ONLY-SECRET" not in z.read(name), f"archive entry {name} holds the secret"


def writable_event_folder(env):
    """The honest event, recorded and handed over, in a folder that anyone may
    write, as a store made under umask 000 left it."""
    honest = env.work / "honest.log"
    honest.write_bytes(HONEST_LOG)
    record_event(env, l=windows_form(env, honest))
    folder = env.store / COPY / EVENT
    os.chmod(folder, 0o777)
    return folder


def expect_honest_log_collected(env, archive):
    with zipfile.ZipFile(archive) as z:
        expect_equal(z.read(f"{COPY}\\{EVENT}\\honest.log"), HONEST_LOG, "archived honest log")
    expect_honest_event_collected(env, archive)


def test_a_link_named_as_an_installer_log_is_not_followed(env):
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    folder = attacker_folder()
    secret_folder, secret = root_only_secret()
    try:
        as_nobody("ln", "-s", secret, f"{folder}/install.log")
        honest = env.work / "honest.log"
        honest.write_bytes(HONEST_LOG)
        record_event(env, l=windows_form(env, f"{folder}/install.log"), t=windows_form(env, honest))
        archive = collect(env)
        expect_secret_nowhere(env, archive)
        assert not (env.store / COPY / EVENT / "install.log").exists(), "the link was staged"
        expect_honest_log_collected(env, archive)
    finally:
        shutil.rmtree(folder, ignore_errors=True)
        shutil.rmtree(secret_folder, ignore_errors=True)


def collect_within_a_bound(env, name="x.zip"):
    """A collection that hangs fails the test when the bound passes, instead of
    holding up the run for ever."""
    try:
        code, output = env.run("ZORGetInstallLog", "-f", name, timeout=120)
    except subprocess.TimeoutExpired:
        raise AssertionError("the collection hangs")
    expect_equal((code, output), (0, f"The file '{name}' is created successfully" + env.eol),
                 "collection run")
    return env.work / name


def test_fifos_in_the_store_and_named_as_logs_dont_hang_the_collection(env):
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    folder = attacker_folder()
    try:
        as_nobody("mkfifo", f"{folder}/setup.log")
        honest = env.work / "honest.log"
        honest.write_bytes(HONEST_LOG)
        record_event(env, l=windows_form(env, f"{folder}/setup.log"), t=windows_form(env, honest))
        event_folder = env.store / COPY / EVENT
        os.chmod(event_folder, 0o777)
        as_nobody("mkfifo", f"{event_folder}/trap.log")
        as_nobody("ln", "-s", "/dev/zero", f"{event_folder}/zero.log")
        archive = collect_within_a_bound(env)
        names = archive_names(archive)
        for name in ("trap.log", "zero.log", "setup.log"):
            assert f"{COPY}\\{EVENT}\\{name}" not in names, f"{name} is in the archive: {names}"
        assert not (event_folder / "setup.log").exists(), "the FIFO was staged"
        expect_honest_log_collected(env, archive)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def test_links_in_the_store_are_not_followed_out_of_it(env):
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    secret_folder, secret = root_only_secret()
    try:
        folder = writable_event_folder(env)
        as_nobody("ln", "-s", secret_folder, f"{folder}/secrets")
        as_nobody("ln", "-s", secret, f"{folder}/shadow.log")
        archive = collect(env)
        names = archive_names(archive)
        leaked = [n for n in names if "secrets" in n or "shadow" in n]
        expect_equal(leaked, [], "entries of the links")
        expect_secret_nowhere(env, archive)
        expect_honest_log_collected(env, archive)
    finally:
        shutil.rmtree(secret_folder, ignore_errors=True)


def test_the_archive_replaces_a_link_planted_at_its_name(env):
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    folder = attacker_folder()
    secret_folder, secret = root_only_secret()
    try:
        honest = env.work / "honest.log"
        honest.write_bytes(HONEST_LOG)
        record_event(env, l=windows_form(env, honest))
        as_nobody("ln", "-s", secret, f"{folder}/x.zip")
        as_nobody("sh", "-c", f"printf 'mine' > {folder}/y.zip && chmod 666 {folder}/y.zip")
        planted = os.stat(f"{folder}/y.zip")
        for name in ("x.zip", "y.zip"):
            archive = collect(env, f"{folder}/{name}")
            status = os.lstat(archive)
            assert stat.S_ISREG(status.st_mode), f"{name} is no regular file"
            expect_equal((status.st_uid, stat.S_IMODE(status.st_mode)), (0, 0o600),
                         f"owner and mode of {name}")
            expect_honest_log_collected(env, archive)
        with open(secret, "rb") as f:
            expect_equal(f.read(), b"ROOT-ONLY-SECRET\n", "the file that the link named")
        assert os.stat(f"{folder}/y.zip").st_ino != planted.st_ino, "the planted file was written in place"
        expect_equal(sorted(os.listdir(folder)), ["x.zip", "y.zip"], "files beside the archives")
    finally:
        shutil.rmtree(folder, ignore_errors=True)
        shutil.rmtree(secret_folder, ignore_errors=True)


def test_folder_links_in_the_store_are_passed_over_on_every_build(env):
    """A link to a folder outside the store, made in an event's folder. Under
    Wine a Unix link to a folder is a reparse point, as a junction is on
    Windows (Wine 8 makes no junctions: its mklink /J creates nothing)."""
    outside = env.work / "outside"
    outside.mkdir()
    (outside / "private.txt").write_bytes(b"outside the store\n")
    folder = writable_event_folder(env)
    os.symlink(outside, folder / "junction")
    archive = collect(env)
    names = archive_names(archive)
    expect_equal([n for n in names if "junction" in n], [], "entries below the link")
    expect_honest_log_collected(env, archive)


def test_folder_links_in_place_of_event_and_copy_folders_are_never_written_through(env):
    """Links to a folder outside the store, planted where an event's folder and
    a copy's folder will be: on Linux by a user in a store that older code left
    writable by everyone; under Wine, where a Unix link to a folder is a
    reparse point as a junction is on Windows, by anyone. The recorder's log,
    the hand-over, the staged copies and the copy's summary pass them by, and
    the events are still recorded in History.ini."""
    if env.native and not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    outside = pathlib.Path(attacker_folder())
    os.chmod(outside, 0o777)
    installer_log = env.work / "setup.log"
    installer_log.write_bytes(HONEST_LOG)
    record_event(env)
    if env.native:
        os.chmod(env.store, 0o777)
        as_nobody("ln", "-s", str(outside), str(env.store / "E2"))
        as_nobody("ln", "-s", str(outside), str(env.store / "C3"))
    else:
        os.symlink(outside, env.store / "E2")
        os.symlink(outside, env.store / "C3")
    record_event(env, "E2", "C2", l=windows_form(env, installer_log))
    record_event(env, "E3", "C3", l=windows_form(env, installer_log))
    archive = collect(env)
    expect_equal(sorted(os.listdir(outside)), [], "files written through the links")
    for event_id in ("E2", "E3"):
        assert f"Event_ID={event_id}" in section_lines(env, event_id), section_lines(env, event_id)
    names = archive_names(archive)
    if env.native:
        # Root sets another user's links aside and records as if they weren't there.
        set_aside_entry(env.store, "E2")
        set_aside_entry(env.store, "C3")
        expect_honest_event_collected(env, archive, "E2", "C2")
        expect_honest_event_collected(env, archive, "E3", "C3")
    else:
        assert (env.store / "E3" / "ZORInstallEvent.Log").is_file(), "E3's log stayed in the store's root"
        expect_equal([n for n in names if n.startswith(("E2", "C3"))], [], "entries below the links")
        assert "E3\\ZORInstallEvent.Log" in names, names
    expect_honest_event_collected(env, archive)
    shutil.rmtree(outside, ignore_errors=True)


# -- a store that older code left writable by everyone -------------------------
def give_to_nobody(path):
    entry = pwd.getpwnam("nobody")
    os.chown(path, entry.pw_uid, entry.pw_gid)


def test_root_writes_nothing_through_what_a_user_planted_in_an_old_store(env):
    """A store made under umask 000 by older code: a user made a copy folder of
    their own in it, with a link for its Summary.txt and a hard link or link
    in place of files that root writes. Root's calls write none of them."""
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    record_event(env)
    for folder in (env.appdata / "TAQ", env.store, env.store / COPY, env.store / COPY / EVENT):
        os.chmod(folder, 0o777)
    secret = pathlib.Path(attacker_folder()) / "root-only"
    secret.write_bytes(b"root only\n")
    os.chmod(secret, 0o600)
    planted = env.store / "C2"
    planted.mkdir()
    give_to_nobody(planted)
    as_nobody("ln", "-s", str(secret), str(planted / "Summary.txt"))
    event_log = env.store / COPY / EVENT / "ZORInstallEvent.Log"
    event_log.unlink()
    as_nobody("ln", "-s", str(secret), str(event_log))
    record(env, "-start", "E2")
    record(env, "-end", "E2", "-CopyName", "C2")
    record(env, "-logmessage", EVENT, "-Message", "after the upgrade")
    archive = collect(env)
    expect_equal(secret.read_bytes(), b"root only\n", "the file that the links name")
    aside = set_aside_entry(env.store, "C2")
    assert (aside / "Summary.txt").is_symlink(), "the planted link was replaced"
    expect_equal(os.listdir(aside), ["Summary.txt"], "what root put in the user's folder")
    assert "Event_ID=E2" in section_lines(env, "E2"), section_lines(env, "E2")
    expect_equal((env.store / "C2").stat().st_uid, 0, "the copy folder made anew")
    expect_honest_event_collected(env, archive, "E2", "C2")


def old_store(env):
    """A store that older code left writable by everyone, with one event."""
    record_event(env)
    for folder in (env.appdata / "TAQ", env.store, env.store / COPY, env.store / COPY / EVENT):
        os.chmod(folder, 0o777)


def root_only_profile():
    """A root-only file in the profile format, outside the store."""
    secret = pathlib.Path(attacker_folder()) / "root-only"
    secret.write_bytes(b"[History]\r\nCount=7\r\n[E9]\r\nProduct=ROOT-ONLY-SECRET\r\nCopy_Name=C1\r\n")
    os.chmod(secret, 0o600)
    return secret


def report_of_the_store(env):
    """What root's report of the store folder says, if it writes one."""
    report = env.work / "report.json"
    report.unlink(missing_ok=True)
    code, _, _ = env.run_full("ZORHistoryReport", str(env.store), "-json", str(report))
    assert code in (0, 1), f"the report's exit code {code}"
    if not report.exists():
        return b""
    read_json(report)
    return report.read_bytes()


def set_aside_entry(folder, name):
    """The one entry that root set aside under a dot-name of `name`'s, beside it."""
    entries = [entry for entry in folder.iterdir()
               if entry.name.startswith(f".{name}.set-aside-") and entry.name[-1] != "-" and
               len(entry.name) == len(f".{name}.set-aside-") + 16]
    expect_equal(len(entries), 1, f"{name} set aside under an unguessable name: {sorted(os.listdir(folder))}")
    return entries[0]


def expect_recorded_anew(env, event_id, set_aside):
    """The event is in a History.ini of root's own, and the planted entry is
    set aside under its dot-name, where the archive passes it over."""
    ini = env.store / "History.ini"
    assert not ini.is_symlink() and ini.stat().st_uid == 0 and ini.stat().st_nlink == 1, "History.ini"
    assert f"Event_ID={event_id}" in section_lines(env, event_id), section_lines(env, event_id)
    assert set_aside.name not in "".join(archive_names(collect(env))), "a set-aside entry was packed"


def test_a_history_ini_that_a_user_linked_is_neither_written_nor_read_by_root(env):
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    old_store(env)
    secret = root_only_profile()
    content = secret.read_bytes()
    (env.store / "History.ini").unlink()
    as_nobody("ln", "-s", str(secret), str(env.store / "History.ini"))
    # Names that a set-aside of a guessable form would take.
    as_nobody("sh", "-c", f"cd {env.store} && for n in $(seq 0 100); do : > .History.ini.set-aside-$n; done")
    assert b"ROOT-ONLY" not in report_of_the_store(env), "the report read through the link"
    record(env, "-start", "E2")
    record(env, "-end", "E2", "-CopyName", COPY, "-Result", "Success")
    expect_equal(secret.read_bytes(), content, "the file that History.ini's link names")
    expect_recorded_anew(env, "E2", set_aside_entry(env.store, "History.ini"))
    for summary in (env.store / "Summary.txt", env.store / COPY / "Summary.txt"):
        assert "ROOT-ONLY" not in summary.read_text(errors="replace"), f"{summary} shows the linked file"


def hard_links_protected():
    """Whether the system lets a user link only files of their own (or that
    they may read and write): fs.protected_hardlinks."""
    try:
        return pathlib.Path("/proc/sys/fs/protected_hardlinks").read_text().strip() == "1"
    except OSError:
        return False


def test_a_history_ini_with_a_second_name_is_used_only_where_no_user_could_have_made_it(env):
    """Where the system lets a user link any file (fs.protected_hardlinks=0),
    a user can give a root-only file a second name as History.ini in a store
    left writable by everyone; root makes the same link here. Root then
    neither reads nor writes a History.ini of two names, and doesn't set it
    aside either (a user could hide an honest one so). Where users may link
    only their own files, the second name is
    root's own (a backup made with hard links, say), and the history goes on
    in it."""
    if not (env.native and os.geteuid() == 0):
        skip("needs the Linux build run by root")
    old_store(env)
    other = pathlib.Path(attacker_folder()) / "second-name"
    if hard_links_protected():
        os.link(env.store / "History.ini", other)
        record(env, "-start", "E2")
        record(env, "-end", "E2", "-CopyName", COPY, "-Result", "Success")
        assert f"Event_ID={EVENT}" in section_lines(env, EVENT), "the history before the second name"
        assert f"Event_ID=E2" in section_lines(env, "E2"), "the event recorded into it"
        expect_equal(sorted(p.name for p in env.store.glob(".History.ini.set-aside-*")), [], "set aside")
        assert "Event_ID=E2" in other.read_text(errors="replace"), "the second name shows the history"
        return
    secret = root_only_profile()
    content = secret.read_bytes()
    (env.store / "History.ini").unlink()
    os.link(secret, env.store / "History.ini")
    assert b"ROOT-ONLY" not in report_of_the_store(env), "the report read the file"
    record(env, "-start", "E2")
    record(env, "-end", "E2", "-CopyName", COPY, "-Result", "Success")
    expect_equal(secret.read_bytes(), content, "the file of two names")
    expect_equal(sorted(p.name for p in env.store.glob(".History.ini.set-aside-*")), [],
                 "set aside: a user could hide an honest History.ini so")
    assert (env.store / "E2" / "ZORInstallEvent.Log").is_file(), "E2's event log"
    assert "ROOT-ONLY" not in (env.store / "Summary.txt").read_text(errors="replace"), "the summary"


def test_a_history_folder_that_a_user_replaced_is_set_aside_and_made_anew(env):
    """A user moved the history folder away in an old store and put a folder
    of their own, or a link to one, in its place: root writes nothing into
    theirs, sets it aside, and records into a store of its own again."""
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    for kind in ("folder", "link"):
        env.reset()
        old_store(env)
        outside = pathlib.Path(attacker_folder())
        as_nobody("mv", str(env.store), str(env.store.parent / "moved"))
        if kind == "folder":
            as_nobody("mkdir", "-m", "0777", str(env.store))
        else:
            as_nobody("ln", "-s", str(outside), str(env.store))
        record(env, "-start", "E2")
        record(env, "-end", "E2", "-CopyName", COPY, "-Result", "Success")
        expect_equal(os.listdir(outside), [], f"{kind}: what root wrote where the link points")
        set_aside = set_aside_entry(env.store.parent, "ZORHistory")
        assert set_aside.is_symlink() or os.listdir(set_aside) == [], f"{kind}: what root wrote in theirs"
        expect_equal(stat.S_IMODE(env.store.parent.stat().st_mode), 0o755, f"{kind}: the maker's folder")
        expect_equal(env.store.stat().st_uid, 0, f"{kind}: the new history folder's owner")
        expect_recorded_anew(env, "E2", set_aside)


def test_root_packs_nothing_of_a_folder_that_another_user_owns_in_the_store(env):
    """In a folder of their own, a user could swap a folder for a link to a
    root-only one between root's look and root's read: root's archive passes
    over the whole folder, as it passes over a link."""
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    old_store(env)
    planted = env.store / "C9"
    as_nobody("mkdir", "-p", str(planted / "D"))
    as_nobody("sh", "-c", f"echo mine > {planted}/D/secret.log")
    archive = collect(env)
    names = archive_names(archive)
    assert not [name for name in names if name.startswith("C9")], names
    expect_honest_event_collected(env, archive)


def test_roots_report_reads_nothing_that_others_may_change_until_the_store_is_locked_down(env):
    """A store that older code left writable by everyone, not yet locked down
    by a recorder call or -f (the report changes nothing): any of its files
    could be swapped for a link between root's look and root's read, so root's
    report reads none of them; after -f it reads the history."""
    if not second_user_available(env):
        skip("needs root and a second, unprivileged user")
    old_store(env)
    report = env.work / "report.json"
    code, _, _ = env.run_full("ZORHistoryReport", str(env.store), "-json", str(report))
    expect_equal(code, 1, "the report of a store that others may change")
    collect(env)
    code, _, _ = env.run_full("ZORHistoryReport", str(env.store), "-json", str(report))
    expect_equal(code, 0, "the report of the locked-down store")
    read_json(report)
    assert EVENT in report.read_text(), "the event in the report"


def test_the_reports_outputs_are_readable_by_their_owner_alone(env):
    """The page embeds the archive's installer logs, among them copies that only
    their owner may read (a key that a user planted in History.ini while the
    store was open to all names any file): the report's outputs are 0600, as
    the archive is."""
    if not env.native:
        skip("the Linux build only; Windows files carry no mode")
    secret_log = env.work / "setup.log"
    secret_log.write_bytes(b"private installer log\n")
    os.chmod(secret_log, 0o600)
    record_event(env, l=windows_form(env, secret_log))
    archive = collect(env)
    page, form = env.work / "report.html", env.work / "report.json"
    code, _, _ = env.run_full("ZORHistoryReport", str(archive), "-o", str(page), "-json", str(form))
    expect_equal(code, 0, "the report's exit code")
    read_json(form)
    assert b"private installer log" in page.read_bytes(), "the page embeds the log"
    for output in (page, form):
        expect_equal(oct(stat.S_IMODE(output.stat().st_mode)), oct(0o600), f"{output.name}'s mode")


def test_a_fifo_in_place_of_history_ini_doesnt_hang_the_report(env):
    if not env.native:
        skip("the Linux build only")
    env.store.mkdir(parents=True)
    os.mkfifo(env.store / "History.ini")
    code, _, _ = env.run_full("ZORHistoryReport", str(env.store), "-o",
                              str(env.work / "report.html"), timeout=120)
    assert code in (0, 1), f"exit code {code}"


if __name__ == "__main__":
    main(globals())
