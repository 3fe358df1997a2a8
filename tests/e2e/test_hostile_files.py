"""A hostile neighbour against root's recorder and root's ZORGetInstallLog -f:
the unprivileged user `nobody` prepares installer logs, links and special files,
and each attack must fail while the honest event is still recorded and
collected whole. The attacks that need a second user run on the Linux build
as root; under Wine the Windows counterparts run (attributes of a copy,
reparse points in the store)."""
import os
import pwd
import shutil
import stat
import subprocess
import tempfile
import threading
import zipfile

from e2e_support import main, check_archive, expect_equal, section_lines

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
        return  # a Windows copy takes over attributes only; there is no mode to keep
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


if __name__ == "__main__":
    main(globals())
