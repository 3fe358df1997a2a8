"""The Windows Installer packages of this build, read back without running
them, so that they are proven on every machine: each WiX example built with
wixl for the build's architecture, its tables exported with msiinfo.

- The summary's Template is "Intel;1033" for the x86 build, "x64;1033" for x64.
- Files go below ProgramFilesFolder (x86) or ProgramFiles64Folder (x64), and
  only the x64 package marks its components 64-bit (attribute 256).
- The DLL's custom actions: Binary ZORRecorder holding this build's
  ZORRecorder.dll byte for byte, entry ZORRecordEventAction, type 3073
  (a DLL in the Binary table, deferred, not impersonated).
  Its rollback action: type 3329, the same run only when the install rolls back.
- The program's custom actions run the installed ZORRecordEvent.exe: type 3154
  (an installed file, its exit code ignored, deferred, not impersonated); its
  rollback action is the DLL's, as in the package that calls the DLL.
- Both make the EventID with ZORMakeEventIdAction from the Binary table, an
  immediate action: type 2113.
- ZORRecord.nsh adds to an address only with IntPtrOp, never with IntOp,
  which cuts it to 32 bits in a 64-bit installer.
- ZORRecorder.dll exports ZORRecordEventAction and ZORMakeEventIdAction by
  those undecorated names, which are the names an installer looks up (a 32-bit
  __stdcall export would otherwise be _ZORRecordEventAction@4).

Usage: check_package_tables.py BIN_DIR WORK_DIR
Prints "N passed, N failed"."""
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))
from e2e_support import pe_arch, run_tests  # noqa: E402
import package_build  # noqa: E402

SOURCES = pathlib.Path(__file__).resolve().parent
DLL_ACTION_TYPE = "3073"
DLL_ROLLBACK_TYPE = "3329"
PROGRAM_ACTION_TYPE = "3154"
# A DLL in the Binary table, run at once where it stands in the sequence
# (no in-script bit), its result ignored (64); wixl adds the no-impersonation
# bit (2048), which only deferred actions heed.
ID_ACTION_TYPE = "2113"


class Build:
    def __init__(self, bin_dir, work):
        self.bin_dir = bin_dir
        self.work = work
        self.arch = pe_arch(bin_dir / "ZORRecorder.dll")

    def package(self, source, *binaries):
        return package_build.build(SOURCES / source, self.work / source,
                                   [self.bin_dir / b for b in binaries], self.arch)


def table(package, name):
    """The rows of one table, each a list of its columns (the three header lines left out)."""
    text = subprocess.run(["msiinfo", "export", str(package), name], check=True,
                          capture_output=True, text=True).stdout
    return [line.split("\t") for line in text.splitlines()[3:]]


def summary(package):
    text = subprocess.run(["msiinfo", "suminfo", str(package)], check=True,
                          capture_output=True, text=True).stdout
    return dict(line.split(": ", 1) for line in text.splitlines() if ": " in line)


def expect(condition, what):
    if not condition:
        raise AssertionError(what)


def expect_arch(build, package):
    template = "Intel;1033" if build.arch == "x86" else "x64;1033"
    expect(summary(package).get("Template") == template, f"Template {summary(package)}")
    folder = "ProgramFilesFolder" if build.arch == "x86" else "ProgramFiles64Folder"
    parents = {row[0]: row[1] for row in table(package, "Directory")}
    expect(parents.get("INSTALLDIR") == folder, f"INSTALLDIR below {parents.get('INSTALLDIR')}")
    bit64 = 256
    for row in table(package, "Component"):
        attributes = int(row[3])
        expect(bool(attributes & bit64) == (build.arch == "x64"), f"component {row[0]}: {attributes}")


def actions(package):
    return {row[0]: row[1:] for row in table(package, "CustomAction")}


def expect_action(package, name, columns):
    expect(actions(package)[name][:len(columns)] == columns, f"{name}: {actions(package)[name]}")


def expect_event_id_action(package):
    expect_action(package, "MakeEventId", [ID_ACTION_TYPE, "ZORRecorder", "ZORMakeEventIdAction"])


def test_package_calling_the_dll(build):
    package = build.package("RecordWithDll.wxs", "ZORRecorder.dll")
    expect_arch(build, package)
    for name in ("RecordStart", "RecordEnd"):
        expect_action(package, name, [DLL_ACTION_TYPE, "ZORRecorder", "ZORRecordEventAction"])
    expect_action(package, "RecordFailure", [DLL_ROLLBACK_TYPE, "ZORRecorder", "ZORRecordEventAction"])
    expect_event_id_action(package)
    extracted = subprocess.run(["msiinfo", "extract", str(package), "Binary.ZORRecorder"],
                               check=True, capture_output=True).stdout
    expect(extracted == (build.bin_dir / "ZORRecorder.dll").read_bytes(),
           "the Binary table doesn't hold this build's ZORRecorder.dll")


def test_package_with_broken_data_calls_the_dll(build):
    package = build.package("RecordWithBrokenData.wxs", "ZORRecorder.dll")
    expect_arch(build, package)
    for name in ("RecordNoData", "RecordNoMode", "RecordOpenQuote", "RecordStart", "RecordEnd"):
        expect_action(package, name, [DLL_ACTION_TYPE, "ZORRecorder", "ZORRecordEventAction"])


def test_package_running_the_program(build):
    package = build.package("RecordWithProgram.wxs", "ZORRecordEvent.exe", "ZORRecorder.dll")
    expect_arch(build, package)
    for name in ("RecordStart", "RecordEnd", "RecordRemovalStart"):
        expect_action(package, name, [PROGRAM_ACTION_TYPE, "ZORRecordEvent.exe"])
    # The uninstall ends after RemoveFiles has taken the program away.
    expect_action(package, "RecordRemovalEnd", [DLL_ACTION_TYPE, "ZORRecorder", "ZORRecordEventAction"])
    for name in ("RecordFailure", "RecordRemovalFailure"):
        expect_action(package, name, [DLL_ROLLBACK_TYPE, "ZORRecorder", "ZORRecordEventAction"])
    expect_event_id_action(package)


def pointer_variables(script):
    """The variables that take an address: popped right after System::Alloc
    or after a System::Call that returns a pointer ("p .s")."""
    lines = [line.strip() for line in script.splitlines()]
    found = set()
    for before, line in zip(lines, lines[1:]):
        makes_address = before.startswith("System::Alloc") or (
            before.startswith("System::Call") and "p .s" in before)
        if makes_address and line.startswith("Pop $"):
            found.add(line.split()[1])
    return found


def test_nsis_functions_add_to_addresses_with_pointer_arithmetic(build):
    for source in sorted(SOURCES.glob("*.ns[hi]")):
        script = source.read_text()
        pointers = pointer_variables(script)
        narrowed = [line.strip() for line in script.splitlines()
                    if line.strip().startswith("IntOp ")
                    and any(operand in pointers for operand in line.split()[2:])]
        expect(not narrowed, f"{source.name}: 32-bit IntOp on an address: {narrowed}")
    expect("$ZORRecordArgv" in pointer_variables((SOURCES / "ZORRecord.nsh").read_text()),
           "no address found in ZORRecord.nsh")


def test_dll_exports_the_actions_by_their_undecorated_names(build):
    text = subprocess.run(["llvm-readobj", "--coff-exports", str(build.bin_dir / "ZORRecorder.dll")],
                          check=True, capture_output=True, text=True).stdout
    names = [line.split(":", 1)[1].strip() for line in text.splitlines()
             if line.strip().startswith("Name:")]
    for name in ("ZORRecordEventAction", "ZORMakeEventIdAction"):
        expect(name in names, f"exports {names}")
    expect(not [n for n in names if "@" in n or n.startswith("_ZOR")], f"decorated exports {names}")


def main():
    build = Build(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))
    print(f"packages for {build.arch}")
    run_tests([(name, lambda test=test: test(build))
               for name, test in list(globals().items()) if name.startswith("test_")], lambda: None)


if __name__ == "__main__":
    main()
