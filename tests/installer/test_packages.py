"""Real Windows Installer packages that record their install: each is built
from its WiX source with wixl, installed silently by Wine's msiexec in a
private prefix, checked in the store and the archive, and removed again.

- RecordWithProgram.wxs installs ZORRecordEvent.exe and runs it as deferred
  custom actions.
- RecordWithDll.wxs calls ZORRecordEventAction from ZORRecorder.dll in its
  Binary table, through CustomActionData, and installs nothing of ours.
- RecordWithBrokenData.wxs calls it also with no, a modeless and a broken
  CustomActionData before its event; the install still succeeds.

And the NSIS example, RecordEvent.nsi, built with makensis, calls
ZORRecordEvent from ZORRecorder.dll in its plug-in folder.

Every package and installer is built for the architecture of the build under
test: the x86 build's as 32-bit packages, installed below "Program Files (x86)"
as on 64-bit Windows, the x64 build's as 64-bit ones."""
import pathlib
import shutil
import subprocess
import sys
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))
from e2e_support import expect_equal, expect_lines_match, file_lines, main, section_lines  # noqa: E402

SOURCES = pathlib.Path(__file__).resolve().parent
EVENT = "Install-ZORServer"
COPY = "ZORCopy1"
def program_files(env):
    """The folder of 32-bit programs on 64-bit Windows, or of 64-bit ones."""
    return "Program Files (x86)" if env.arch == "x86" else "Program Files"


def install_dir(env):
    return f"C:\\{program_files(env)}\\ZOR Server\\"


def build_package(env, source, binary):
    """wixl, run in a folder that holds the files the source names."""
    stage = env.work / "stage"
    stage.mkdir()
    shutil.copy(env.bin_dir / binary, stage / binary)
    (stage / "readme.txt").write_text("ZOR Server\n")
    package = env.work / "product.msi"
    arch = env.arch
    result = subprocess.run(["wixl", "-a", arch, "-D", f"Arch={arch}", "-o", str(package),
                             str(SOURCES / source)],
                            cwd=stage, capture_output=True, text=True)
    expect_equal(result.returncode, 0, f"wixl on {source}: {result.stderr}")
    return package


def msiexec(env, *args):
    result = subprocess.run(env.runner + ["msiexec", *args], capture_output=True, timeout=600)
    return result.returncode


def install(env, package):
    """msiexec /i … /qn /l*v; returns the host path of its log."""
    log = env.work / "install.log"
    code = msiexec(env, "/i", env.program_path(package), "/qn", "/l*v", env.program_path(log),
                   "ZOR_INSTALLER_LOG=" + env.program_path(log))
    expect_equal(code, 0, "exit code of msiexec /i")
    return log


def uninstall(env, package):
    expect_equal(msiexec(env, "/x", env.program_path(package), "/qn"), 0, "exit code of msiexec /x")
    expect_equal(installed_files(env), [], "files left after removal")


def installed_files(env):
    folder = env.appdata.parent / program_files(env) / "ZOR Server"
    return sorted(p.name for p in folder.iterdir()) if folder.exists() else []


def expect_event(env, product, log):
    """The event's 17 keys, its log, and the installer's log staged in the archive."""
    expect_equal(section_lines(env, "History"), ["Count=1"], "section History")
    event_log = f"{env.store_as_program_sees_it}\\{COPY}\\{EVENT}\\ZORInstallEvent.Log"
    expect_lines_match(section_lines(env, EVENT), [
        f"Event_ID={EVENT}", "Command_Line=", "Start_Time=<time>", "End_Time=<time>",
        "Action=Install", "Type=Silent", f"Product={product}", "Version=9.2.0",
        "Service_Level=", f"Path={install_dir(env)}", f"Copy_Name={COPY}", "Complete_Flag=TRUE",
        "Log_File_Name=" + env.program_path(log), "Trace_File=", "Response_File=",
        f"Event_Log_File={event_log}", "Result=Success",
    ], "section of the event")
    lines = file_lines(env, env.store / COPY / EVENT / "ZORInstallEvent.Log")
    expect_lines_match([lines[0], lines[1], lines[2], lines[-1]], [
        "---------- ZOR Installation History Logger ( Start )----------<time>",
        f"EventID       :{EVENT}",
        f"Product       :{product}",
        "---------- ZOR Installation History Logger ( End ) ----------<time>",
    ], "banners of the event log")
    expect_staged_log(env, log)


def expect_staged_log(env, log):
    archive = env.work / "history.zip"
    code, output = env.run("ZORGetInstallLog", "-f", env.program_path(archive))
    expect_equal(code, 0, f"exit code of ZORGetInstallLog, output {output!r}")
    with zipfile.ZipFile(archive) as z:
        staged = z.read(f"{COPY}\\{EVENT}\\{log.name}")
    expect_equal(staged, log.read_bytes(), "the msiexec log in the archive")


def record_through_package(env, source, binary, installed, product):
    """Builds the package with one of our binaries, installs it, checks what
    it installed and recorded, and removes it; returns the msiexec log."""
    package = build_package(env, source, binary)
    log = install(env, package)
    try:
        text = log.read_text(errors="replace")
        expect_equal(installed_files(env), installed, "installed files")
        expect_event(env, product, log)
        expect_installed_software(env, product)
    finally:
        # Removed whatever failed, so that no product stays in the prefix for
        # the tests that follow.
        uninstall(env, package)
    return text


def expect_installed_software(env, product):
    """The installed package in the software section of a snapshot taken after
    the install. Windows Installer keeps its per-machine product data in the
    native (64-bit) view of the registry, for 32-bit packages too, as Wine's
    msiexec does: the x86 build reads it there, the x64 build in its own view."""
    code, output = env.run("ZORRecordEvent", "-start", "Software-Check")
    expect_equal((code, output), (0, ""), "result and console output of -start Software-Check")
    lines = file_lines(env, env.store / "Software-Check" / "ZORInstallEvent.Log")
    rows = [line for line in lines if line.startswith(f"{'TAQ':<30}{product}")]
    expect_equal(len(rows), 1, f"software rows of {product!r} in the snapshot after the install")
    assert rows[0][95:].startswith("9.2.0"), rows[0]


def test_package_running_the_program_records_its_install(env):
    record_through_package(env, "RecordWithProgram.wxs", "ZORRecordEvent.exe",
                           ["ZORRecordEvent.exe"], "ZOR Server (recorded by ZORRecordEvent.exe)")


def test_package_calling_the_dll_records_its_install_without_installing_it(env):
    record_through_package(env, "RecordWithDll.wxs", "ZORRecorder.dll",
                           ["readme.txt"], "ZOR Server (recorded by ZORRecorder.dll)")


def test_broken_custom_action_data_records_nothing_and_the_install_succeeds(env):
    text = record_through_package(env, "RecordWithBrokenData.wxs", "ZORRecorder.dll",
                                  ["readme.txt"], "ZOR Server (recorded through broken data)")
    for action in ("RecordNoData", "RecordNoMode", "RecordOpenQuote"):
        assert f": {action}. Return value 1." in text, f"{action} didn't end in success"


def test_nsis_installer_records_its_install(env):
    amd64 = ["-DAMD64"] if env.arch == "x64" else []
    result = subprocess.run(["makensis", "-NOCD", "-V2", *amd64,
                             "-DRECORDER_DLL=" + str(env.bin_dir / "ZORRecorder.dll"),
                             str(SOURCES / "RecordEvent.nsi")],
                            cwd=env.work, capture_output=True, text=True)
    expect_equal(result.returncode, 0, f"makensis: {result.stdout}{result.stderr}")
    setup = subprocess.run(env.runner + [env.program_path(env.work / "ZORServerSetup.exe"), "/S"],
                           capture_output=True, timeout=600)
    expect_equal(setup.returncode, 0, "exit code of the installer")
    expect_equal(section_lines(env, "History"), ["Count=1"], "section History")
    expect_lines_match(section_lines(env, EVENT), [
        f"Event_ID={EVENT}", "Command_Line=", "Start_Time=<time>", "End_Time=<time>",
        "Action=", "Type=", "Product=ZOR Server 9", "Version=", "Service_Level=", "Path=",
        "Copy_Name=", "Complete_Flag=TRUE", "Log_File_Name=", "Trace_File=", "Response_File=",
        f"Event_Log_File={env.store_as_program_sees_it}\\{EVENT}\\ZORInstallEvent.Log",
        "Result=Success",
    ], "section of the event")
    # The example installs no files of its own; its folder goes again.
    expect_equal(installed_files(env), [], "installed files")
    shutil.rmtree(env.appdata.parent / program_files(env) / "ZOR Server", ignore_errors=True)


if __name__ == "__main__":
    main(globals())
