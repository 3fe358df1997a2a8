"""A whole installation event through ZORRecordEvent, as an installer runs it:
-start with every option, two messages, -end naming the copy; then what the
store holds, and the archive that ZORGetInstallLog -f makes of it."""
from e2e_support import check_archive, expect_equal, expect_lines_match, file_lines, main, section_lines

EVENT = "Install-42"
COPY = "ZORCopy1"


def stored_form(env, host_path):
    """A host path in the system's own form, with backslashes, as an installer
    on the system names its files (the POSIX layer turns them into "/")."""
    return env.program_path(host_path).replace("/", "\\")


def record(env, *options):
    code, output = env.run("ZORRecordEvent", *options)
    expect_equal(output, "", f"console output of {options[0]}")
    expect_equal(code, 0, f"exit code of {options[0]}")


def record_whole_event(env):
    installer_log = env.work / "setup.log"
    installer_log.write_text("the installer's own log\n")
    record(env, "-start", EVENT, "-Command", "setup.exe /silent", "-Type", "Silent",
           "-Version", "9.2", "-ServiceLevel", "SL4", "-Product", "ZOR Server 9 Build 1207",
           "-Path", "C:\\Program Files\\ZOR", "-Action", "Install", "-l", "C:\\Temp\\first.log",
           "-t", "C:\\Temp\\trace.txt", "-u", "C:\\Temp\\answers.rsp",
           "-CopyName", "ignored at start", "-Result", "ignored at start")
    record(env, "-logmessage", EVENT, "-message", "Copying the server files")
    record(env, "-LOGMESSAGE", EVENT, "-message", "Registering the services")
    record(env, "-end", EVENT, "-CopyName", COPY, "-Result", "Success",
           "-l", stored_form(env, installer_log))
    return installer_log


def test_whole_event_is_recorded_in_history_ini(env):
    installer_log = record_whole_event(env)
    moved_log = env.store_as_program_sees_it + f"\\{COPY}\\{EVENT}\\ZORInstallEvent.Log"
    expect_equal(section_lines(env, "History"), ["Count=1"], "section History")
    expect_lines_match(section_lines(env, EVENT), [
        f"Event_ID={EVENT}",
        "Command_Line=setup.exe /silent",
        "Start_Time=<time>",
        "End_Time=<time>",
        "Action=Install",
        "Type=Silent",
        "Product=ZOR Server 9 Build 1207",
        "Version=9.2",
        "Service_Level=SL4",
        "Path=C:\\Program Files\\ZOR",
        f"Copy_Name={COPY}",
        "Complete_Flag=TRUE",
        "Log_File_Name=" + stored_form(env, installer_log),
        "Trace_File=C:\\Temp\\trace.txt",
        "Response_File=C:\\Temp\\answers.rsp",
        "Event_Log_File=" + moved_log,
        "Result=Success",
    ], "section of the event")


def test_event_folder_moves_below_the_copy(env):
    record_whole_event(env)
    assert not (env.store / EVENT).exists(), "the event folder is still in the history folder"
    expect_equal(sorted(p.name for p in (env.store / COPY / EVENT).iterdir()),
                 ["ZORInstallEvent.Log"], "files of the moved event folder")


def test_event_log_holds_banners_messages_and_result_block(env):
    installer_log = record_whole_event(env)
    lines = file_lines(env, env.store / COPY / EVENT / "ZORInstallEvent.Log")
    expect_lines_match(lines[:5], [
        "---------- ZOR Installation History Logger ( Start )----------<time>",
        f"EventID       :{EVENT}",
        "Product       :ZOR Server 9 Build 1207",
        "Service Level :SL4",
        "CommandLine   :setup.exe /silent",
    ], "start banner")
    messages = [line for line in lines if line.startswith(("Copying", "Registering"))]
    expect_equal(messages, ["Copying the server files", "Registering the services"], "messages")
    rule = "=" * 69
    expect_lines_match(lines[-19:], [
        "", "", "", "",
        "Result of Install:",
        rule,
        "Start Time                   :<time>",
        "End   Time                   :<time>",
        "ZOR Products & Build Level   :ZOR Server 9 Build 1207",
        "Service Level                :SL4",
        "Install Type ( GUI | Silent ):Silent",
        "Installation Action          :Install",
        "Result                       :Success",
        "Log File Name                :" + stored_form(env, installer_log),
        "Trace File Name              :C:\\Temp\\trace.txt",
        rule,
        "",
        "",
        "---------- ZOR Installation History Logger ( End ) ----------<time>",
    ], "result block and end banner")


def test_collected_archive_holds_the_handed_over_event(env):
    record_whole_event(env)
    zip_path = env.work / "history.zip"
    code, output = env.run("ZORGetInstallLog", "-f", env.program_path(zip_path))
    expect_equal(code, 0, f"exit code of ZORGetInstallLog, output {output!r}")
    names = {info.filename for info in check_archive(zip_path)}
    for entry in ("History.ini", "Summary.txt", f"{COPY}\\Summary.txt",
                  f"{COPY}\\{EVENT}\\ZORInstallEvent.Log", f"{COPY}\\{EVENT}\\setup.log"):
        assert entry in names, f"{entry} is missing from the archive: {sorted(names)}"


def test_invalid_calls_return_two_and_write_no_event(env):
    for options in ([], ["-Product", "p"], ["-start", ""]):
        code, output = env.run("ZORRecordEvent", *options)
        expect_equal((code, output), (2, ""), f"result of {options}")
    expect_equal(section_lines(env, "History"), ["Count=0"], "section History")
    # The store's lock file has a leading dot, like every name the archive passes over.
    expect_equal(sorted(p.name for p in env.store.iterdir() if not p.name.startswith(".")),
                 ["History.ini"], "history folder")


if __name__ == "__main__":
    main(globals())
