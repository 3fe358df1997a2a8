#!/usr/bin/env python3
"""The Debian package of a release build, as a machine gets it:

- `cpack -G DEB` writes zorgetinstalllog_<version>_<arch>.deb;
- lintian finds no error in it;
- its control fields (Depends computed from the binaries), its maintainer
  scripts (a postinst, nothing that removes) and its files (programs in
  /usr/bin, the library and its package files in the multiarch folders, the
  documentation, copyright and changelog.gz in /usr/share/doc/zorgetinstalllog,
  nothing below /var);
- unpacked with `dpkg-deb -x` into a scratch root, its postinst and programs
  run in a private mount namespace (`unshare -m`) with a scratch folder bound
  over /var/lib, so the machine's own store is never touched: the postinst
  makes the history folder (root, 0755), ZORRecordEvent records an event and
  ZORGetInstallLog -f collects it into a zip whose Summary.txt names it;
- the installer examples that it ships (docs/examples: a postinst, prerm and
  postrm and a shell installer, each sourcing the zor-event-id.sh shipped
  beside them) record their events there too, each with a log of its own
  named after its EventID, which the collection stages and Summary.txt and
  ZORHistoryReport name; a postinst whose configuration fails exits non-zero
  and records a failed event with its log.

Needs root for the namespace part (it exits with 77, skipped, otherwise)."""
import argparse
import os
import pathlib
import shutil
import stat
import subprocess
import sys
import zipfile

SKIPPED = 77


def run(*command, check=True, **kwargs):
    result = subprocess.run([str(c) for c in command], capture_output=True, text=True, **kwargs)
    if check and result.returncode != 0:
        raise SystemExit(f"FAIL: {' '.join(map(str, command))} exited with {result.returncode}\n"
                         f"{result.stdout}{result.stderr}")
    return result


def build_deb(build_dir, work):
    out = work / "deb"
    run("cpack", "-G", "DEB", "-B", out, "--config", build_dir / "CPackConfig.cmake", cwd=build_dir)
    debs = sorted(out.glob("zorgetinstalllog_*.deb"))
    if len(debs) != 1:
        raise SystemExit(f"FAIL: cpack wrote {debs}, not one zorgetinstalllog_*.deb")
    print(f"built {debs[0].name}")
    return debs[0]


def check_lintian(deb):
    result = run("lintian", "--fail-on", "error", "--tag-display-limit", "0", deb, check=False)
    print("lintian:\n" + (result.stdout + result.stderr).strip())
    errors = [line for line in result.stdout.splitlines() if line.startswith("E:")]
    if result.returncode != 0 or errors:
        raise SystemExit(f"FAIL: lintian found errors in {deb.name}")


def check_control(deb, work):
    fields = run("dpkg-deb", "-f", deb).stdout
    print(fields.strip())
    field = dict(line.split(": ", 1) for line in fields.splitlines() if ": " in line and not line.startswith(" "))
    if field.get("Package") != "zorgetinstalllog":
        raise SystemExit(f"FAIL: Package is {field.get('Package')}")
    depends = field.get("Depends", "")
    for library in ("libc6", "libminizip1", "zlib1g", "libstdc++6"):
        if library not in depends:
            raise SystemExit(f"FAIL: Depends lacks {library}: {depends!r}")
    control = work / "control"
    run("dpkg-deb", "-e", deb, control)
    scripts = sorted(p.name for p in control.iterdir() if p.name in ("preinst", "postinst", "prerm", "postrm"))
    if scripts != ["postinst"]:
        raise SystemExit(f"FAIL: maintainer scripts {scripts}, not just postinst (nothing may remove the history)")
    return control / "postinst"


def check_files(deb, lib):
    listing = run("dpkg-deb", "-c", deb).stdout.splitlines()
    paths = {line.split()[-1].lstrip(".") for line in listing}
    doc = "/usr/share/doc/zorgetinstalllog"
    for wanted in ("/usr/bin/ZORGetInstallLog", "/usr/bin/ZORRecordEvent", "/usr/bin/ZORHistoryReport",
                   f"{lib}/libZORHistoryRecorder.a",
                   f"{lib}/cmake/ZORHistoryRecorder/ZORHistoryRecorderConfig.cmake",
                   f"{lib}/cmake/ZORHistoryRecorder/ZORHistoryRecorderTargets.cmake",
                   f"{lib}/pkgconfig/zorhistoryrecorder.pc",
                   "/usr/include/zor/history/CHistoryStore.h",
                   f"{doc}/copyright", f"{doc}/changelog.gz", f"{doc}/README.md",
                   f"{doc}/docs/recording.md", f"{doc}/examples/zor-event-id.sh",
                   f"{doc}/examples/zorserver.postinst", f"{doc}/examples/zorserver.prerm",
                   f"{doc}/examples/zorserver.postrm", f"{doc}/examples/install-zorserver.sh"):
        if wanted not in paths:
            raise SystemExit(f"FAIL: {deb.name} lacks {wanted}")
    stray = sorted(p for p in paths if p.startswith("/var"))
    if stray:
        raise SystemExit(f"FAIL: {deb.name} ships files below /var, which a remove would take: {stray}")


def run_unpacked(deb, postinst, work):
    root = work / "root"
    run("dpkg-deb", "-x", deb, root)
    var_lib = work / "var-lib"
    var_lib.mkdir()
    out = work / "out"
    out.mkdir()
    installer_log = out / "setup.log"
    installer_log.write_text("the installer's own log\n")
    archive = out / "history.zip"
    bin_dir = root / "usr/bin"
    script = f"""
set -e
mount --make-rprivate /
mount --bind '{var_lib}' /var/lib
sh '{postinst}' configure
'{bin_dir}/ZORRecordEvent' -start DebEvent-1 -Product 'ZOR Server 9' -Action Install -l '{installer_log}'
'{bin_dir}/ZORRecordEvent' -logmessage DebEvent-1 -message 'Recorded from the unpacked package'
'{bin_dir}/ZORRecordEvent' -end DebEvent-1 -CopyName ZORCopy1 -Result Success -l '{installer_log}'
'{bin_dir}/ZORGetInstallLog' -f '{archive}'
"""
    run("unshare", "-m", "sh", "-c", script)
    store = var_lib / "TAQ" / "ZORHistory"
    for folder in (var_lib / "TAQ", store):
        status = folder.stat()
        if stat.S_IMODE(status.st_mode) != 0o755 or status.st_uid != 0 or status.st_gid != 0:
            raise SystemExit(f"FAIL: {folder} is {oct(stat.S_IMODE(status.st_mode))} "
                             f"{status.st_uid}:{status.st_gid}, not 0755 root:root")
    ini = (store / "History.ini").read_bytes().decode("latin-1")
    for wanted in ("[DebEvent-1]", "Complete_Flag=TRUE", "Copy_Name=ZORCopy1", "Result=Success"):
        if wanted not in ini:
            raise SystemExit(f"FAIL: History.ini lacks {wanted!r}:\n{ini}")
    with zipfile.ZipFile(archive) as z:
        summary = z.read("Summary.txt").decode("latin-1")
    if "DebEvent-1" not in summary:
        raise SystemExit(f"FAIL: Summary.txt of {archive.name} doesn't name DebEvent-1:\n{summary}")
    print("the unpacked package's postinst made the history folder; its programs recorded and collected an event")


def run_examples(root, var_lib, work, out):
    """The installer examples as the package ships them, with its programs on
    the PATH: the maintainer scripts of a package (install, then remove, then
    an install whose configuration fails), given the zor-event-id.sh shipped
    beside them as the package's own copy and a scratch folder for their
    configuration, and the plain shell installer. Each records an event with
    a log of its own; the collection stages the logs and the report names the
    events."""
    examples = root / "usr/share/doc/zorgetinstalllog/examples"
    var_log = work / "var-log"
    var_log.mkdir()
    target = out / "zorserver"
    shell_logs = out / "shell-logs"
    archive = out / "examples.zip"
    bin_dir = root / "usr/bin"
    script = f"""
set -e
mount --make-rprivate /
mount --bind '{var_lib}' /var/lib
mount --bind '{var_log}' /var/log
export PATH='{bin_dir}':$PATH
export ZOR_EVENT_ID_SH='{examples}/zor-event-id.sh'
export ZORSERVER_CONF_DIR='{out}/etc'
sh '{examples}/zorserver.postinst' configure ''
sh '{examples}/zorserver.prerm' remove
sh '{examples}/zorserver.postrm' remove
echo 'a file, not a folder' > '{out}/blocker'
if ZORSERVER_CONF_DIR='{out}/blocker/etc' sh '{examples}/zorserver.postinst' configure ''; then
    echo 'the postinst whose configuration failed exited with 0' >&2
    exit 1
fi
ZOR_RECORD_EVENT='{bin_dir}/ZORRecordEvent' ZOR_LOG_DIR='{shell_logs}' sh '{examples}/install-zorserver.sh' '{target}'
ZORGetInstallLog -f '{archive}'
ZORHistoryReport '{archive}' > '{out}/report.txt'
"""
    run("unshare", "-m", "sh", "-c", script)
    if not (target / "bin/zorserver").is_file():
        raise SystemExit("FAIL: the shell installer didn't install its files")
    ini = (var_lib / "TAQ/ZORHistory/History.ini").read_bytes().decode("latin-1")
    sections, current = {}, None
    for line in ini.splitlines():
        if line.startswith("[ZORServer-"):
            current = sections.setdefault(line[1:-1], [])
        elif line.startswith("["):
            current = None
        elif current is not None and line:
            current.append(line)
    outcomes = sorted((next(l for l in lines if l.startswith("Action=")),
                       next(l for l in lines if l.startswith("Result="))) for lines in sections.values())
    if outcomes != [("Action=Install", "Result=Failed"), ("Action=Install", "Result=Success"),
                    ("Action=Install", "Result=Success"), ("Action=Uninstall", "Result=Success")]:
        raise SystemExit(f"FAIL: the examples' events are {sections}")
    for event, lines in sections.items():
        for wanted in ("Complete_Flag=TRUE", "Copy_Name=ZORCopy1"):
            if wanted not in lines:
                raise SystemExit(f"FAIL: section [{event}] lacks {wanted!r}: {lines}")
    with zipfile.ZipFile(archive) as z:
        names = z.namelist()
        summary = z.read("Summary.txt").decode("latin-1")
    report = (out / "report.txt").read_text(errors="replace")
    for event in sections:
        if event not in summary:
            raise SystemExit(f"FAIL: Summary.txt doesn't name {event}:\n{summary}")
        if event not in report:
            raise SystemExit(f"FAIL: ZORHistoryReport doesn't name {event}:\n{report}")
    for event in sections:
        if f"ZORCopy1\\{event}\\{event}.log" not in names:
            raise SystemExit(f"FAIL: the archive stages no log of {event}: {names}")
    print("the examples' events (postinst, prerm and postrm, a failed postinst, shell installer) "
          "are in Summary.txt and the report, each with its log")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build-dir", required=True)
    parser.add_argument("--libdir", required=True, help="the library folder in the package, e.g. /usr/lib/x86_64-linux-gnu")
    parser.add_argument("--work-dir", required=True)
    args = parser.parse_args()
    work = pathlib.Path(args.work_dir)
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)

    deb = build_deb(pathlib.Path(args.build_dir).resolve(), work)
    check_lintian(deb)
    postinst = check_control(deb, work)
    check_files(deb, args.libdir)
    if os.geteuid() != 0:
        print("not root: the unpacked package's programs can't run in a private mount namespace; skipped")
        return SKIPPED
    run_unpacked(deb, postinst, work)
    run_examples(work / "root", work / "var-lib", work, work / "out")
    return 0


if __name__ == "__main__":
    sys.exit(main())
