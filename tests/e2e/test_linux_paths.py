"""Installer logs named as a Linux installer names them, with "/": the Linux
build finds their file names behind the last "/" as behind the last "\\",
stages them into the event's folder, points the keys at the copies and packs
them. The Windows build takes only the backslash; it isn't tried here."""
import shutil
import tempfile
import zipfile

from e2e_support import main, check_archive, expect_equal, section_lines, skip


def record(env, *options):
    expect_equal(env.run("ZORRecordEvent", *options), (0, ""), f"recorder call {options[:2]}")


def test_linux_paths_make_the_whole_round_trip(env):
    if env.windows:
        skip("not on the Windows builds; only the backslash separates on Windows")
    folder = tempfile.mkdtemp(prefix="zor-linux-paths-")
    try:
        files = {"-l": ("setup.log", b"setup log\n"), "-t": ("trace.txt", b"trace\n"),
                 "-u": ("answers.rsp", b"answers\n")}
        options = []
        for option, (name, data) in files.items():
            with open(f"{folder}/{name}", "wb") as f:
                f.write(data)
            options += [option, f"{folder}/{name}"]
        record(env, "-start", "E1", *options)
        record(env, "-end", "E1", "-CopyName", "C1", "-Result", "Success")
        code, output = env.run("ZORGetInstallLog", "-f", "x.zip")
        expect_equal((code, output), (0, "The file 'x.zip' is created successfully\n"), "collection run")

        staged = env.store_as_program_sees_it + "\\C1\\E1\\"
        keys = [line for line in section_lines(env, "E1")
                if line.split("=")[0] in ("Log_File_Name", "Trace_File", "Response_File")]
        expect_equal(keys, ["Log_File_Name=" + staged + "setup.log", "Trace_File=" + staged + "trace.txt",
                            "Response_File=" + staged + "answers.rsp"], "keys of the staged files")
        with zipfile.ZipFile(env.work / "x.zip") as z:
            for name, data in files.values():
                expect_equal((env.store / "C1" / "E1" / name).read_bytes(), data, f"staged {name}")
                expect_equal(z.read(f"C1\\E1\\{name}"), data, f"archived {name}")
        check_archive(env.work / "x.zip")
        report = (env.store / "C1" / "Summary.txt").read_text(encoding="latin-1")
        assert f"Log File Name   :{staged}setup.log\n" in report, report
        expect_equal(sorted(p.name for p in (env.store / "C1" / "E1").iterdir()),
                     ["ZORInstallEvent.Log", "answers.rsp", "setup.log", "trace.txt"], "event folder")
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main(globals())
