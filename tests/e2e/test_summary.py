"""ZORGetInstallLog -f over stores laid down by hand: the overall and per-copy
Summary.txt reports, the staging of each event's files, what goes into the
archive, and the stop when History is the last section of History.ini."""
import zipfile

from e2e_support import main, check_archive, expect_equal, profile_bytes

SHORT_RULE = "--------------------------------------------------------------"
LONG_RULE = ("-------------------------------------------------------------------------------"
             "------------------------------------------------")
OVERALL_TITLE = "*         Overall Summary of ZOR Installation History        *"
OVERALL_END = "----------------------  end of overall summary ----------------------------------------"
COPY_END = " -------------------- end of sumamry -------------------- "

ROW_LABELS = [
    ("Event ID        :", "Event_ID"),
    ("Start Time      :", "Start_Time"),
    ("End Time        :", "End_Time"),
    ("Install Type    :", "Type"),
    ("Product         :", "Product"),
    ("Version         :", "Version"),
    ("Service Level   :", "Service_Level"),
    ("Install Path    :", "Path"),
    ("Copy Name       :", "Copy_Name"),
    ("Log File Name   :", "Log_File_Name"),
    ("Trace File Name :", "Trace_File"),
    ("Response File   :", "Response_File"),
    ("Event Log File  :", "Event_Log_File"),
    ("Result          :", "Result"),
]

assert len(SHORT_RULE) == 62 and len(LONG_RULE) == 127


# -- laying down a store ------------------------------------------------------
def write_history_ini(env, sections):
    """History.ini in the private-profile format: [name] lines and key=value lines, CR LF."""
    env.store.mkdir(parents=True, exist_ok=True)
    (env.store / "History.ini").write_bytes(profile_bytes(sections))


def make_event_folder(env, *parts):
    folder = env.store.joinpath(*parts)
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "ZORInstallEvent.Log").write_bytes(b"event log of " + parts[-1].encode() + b"\r\n")


def outside_file(env, name, content):
    """A file of the installer outside the store; returns its path as History.ini holds it."""
    folder = env.work / "outside"
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(content)
    return env.program_path(env.work) + "\\outside\\" + name


def event(event_id, copy_name, start, end, kind, product, version, level, path, result,
          log="", trace="", response=""):
    return {
        "Event_ID": event_id, "Command_Line": "setup.exe -s", "Start_Time": start, "End_Time": end,
        "Action": "Install", "Type": kind, "Product": product, "Version": version,
        "Service_Level": level, "Path": path, "Copy_Name": copy_name,
        "Complete_Flag": "TRUE" if end else "FALSE", "Log_File_Name": log, "Trace_File": trace,
        "Response_File": response, "Event_Log_File": f"C:\\ZORHistory\\{event_id}\\ZORInstallEvent.Log",
        "Result": result,
    }


# -- expected reports, from the report's literals --------------------------------
def event_rows(keys):
    return [label + keys.get(key, "") for label, key in ROW_LABELS] + [LONG_RULE]


def overall_report(env, groups):
    """groups: list of (name, [keys of each event])."""
    lines = [SHORT_RULE, OVERALL_TITLE, SHORT_RULE, "", f"Total ZOR Copies:{len(groups)}", LONG_RULE]
    for name, events in groups:
        lines += [f"ZOR Installation Copy:{name}", f"Count of Events      :{len(events)}", LONG_RULE]
        for keys in events:
            lines += event_rows(keys) + [""]
    lines.append(OVERALL_END)
    return env.lines(*lines)


def copy_report(env, name, events):
    lines = [f"ZOR Installation Copy:{name}", f"Count of Events:{len(events)}", LONG_RULE]
    for keys in events:
        lines += event_rows(keys)
    lines.append("")
    return env.lines(*lines) + COPY_END


def read_text(path):
    return path.read_bytes().decode("latin-1")


def collect(env, zip_name="history.zip"):
    code, out = env.run("ZORGetInstallLog", "-f", zip_name)
    return code, out, env.work / zip_name


def lay_down_two_copies(env):
    """Two COPY_A events around one COPY_B event; the first event's log lies outside the store."""
    log = outside_file(env, "setup.log", b"the installer's log\r\n")
    a1 = event("EVT_A1", "COPY_A", "20040517 13:05:09", "20040517 13:20:41", "Silent",
               "ZOR Server Enterprise", "9.1", "FP2", "C:\\Program Files\\ZOR\\A", "0",
               log=log, trace="C:\\missing\\trace.txt")
    b1 = event("EVT_B1", "COPY_B", "20040518 09:00:00", "20040518 09:45:12", "GUI",
               "ZOR Client", "9.1", "FP2", "C:\\Program Files\\ZOR\\B", "1603")
    a2 = event("EVT_A2", "COPY_A", "20040601 17:30:00", "20040601 17:31:05", "Silent",
               "ZOR Server Enterprise", "9.1.2", "FP3", "C:\\Program Files\\ZOR\\A", "0")
    write_history_ini(env, [("History", {"Count": "3"}), ("EVT_A1", a1), ("EVT_B1", b1), ("EVT_A2", a2)])
    make_event_folder(env, "COPY_A", "EVT_A1")
    make_event_folder(env, "COPY_B", "EVT_B1")
    make_event_folder(env, "COPY_A", "EVT_A2")
    staged = env.store_as_program_sees_it + "\\COPY_A\\EVT_A1\\setup.log"
    return a1, b1, a2, staged


# -- tests -----------------------------------------------------------------------
def test_reports_of_several_copies_letter_for_letter(env):
    a1, b1, a2, staged = lay_down_two_copies(env)
    code, out, _ = collect(env)
    expect_equal(code, 0, "exit code")
    expect_equal(out, env.lines("The file 'history.zip' is created successfully"), "console")
    a1_staged = dict(a1, Log_File_Name=staged)
    expect_equal(read_text(env.store / "Summary.txt"),
                 overall_report(env, [("COPY_A", [a1_staged, a2]), ("COPY_B", [b1])]), "overall report")
    expect_equal(read_text(env.store / "COPY_A" / "Summary.txt"),
                 copy_report(env, "COPY_A", [a1_staged, a2]), "COPY_A report")
    expect_equal(read_text(env.store / "COPY_B" / "Summary.txt"),
                 copy_report(env, "COPY_B", [b1]), "COPY_B report")


def test_log_outside_the_store_is_staged_and_its_key_names_the_copy(env):
    _, _, _, staged = lay_down_two_copies(env)
    code, _, _ = collect(env)
    expect_equal(code, 0, "exit code")
    expect_equal((env.store / "COPY_A" / "EVT_A1" / "setup.log").read_bytes(), b"the installer's log\r\n",
                 "staged copy")
    expect_equal((env.work / "outside" / "setup.log").read_bytes(), b"the installer's log\r\n", "source")
    ini = read_text(env.store / "History.ini")
    assert f"Log_File_Name={staged}\r\n" in ini, ini
    assert "Trace_File=C:\\missing\\trace.txt\r\n" in ini, ini


def test_archive_holds_the_reports_and_the_staged_copies(env):
    lay_down_two_copies(env)
    code, _, archive = collect(env)
    expect_equal(code, 0, "exit code")
    infos = check_archive(archive)
    names = [info.filename for info in infos]
    for name in ["History.ini", "Summary.txt", "COPY_A\\Summary.txt", "COPY_B\\Summary.txt",
                 "COPY_A\\EVT_A1\\setup.log", "COPY_A\\EVT_A1\\ZORInstallEvent.Log"]:
        assert name in names, f"{name} missing from {names}"
    with zipfile.ZipFile(archive) as z:
        expect_equal(z.read("Summary.txt"), (env.store / "Summary.txt").read_bytes(), "archived overall")
        expect_equal(z.read("COPY_A\\Summary.txt"), (env.store / "COPY_A" / "Summary.txt").read_bytes(),
                     "archived copy report")
        expect_equal(z.read("COPY_A\\EVT_A1\\setup.log"), b"the installer's log\r\n", "archived staged log")


def test_second_run_leaves_history_ini_byte_identical(env):
    lay_down_two_copies(env)
    collect(env, "first.zip")
    after_first = (env.store / "History.ini").read_bytes()
    overall_first = (env.store / "Summary.txt").read_bytes()
    code, _, _ = collect(env, "second.zip")
    expect_equal(code, 0, "exit code")
    expect_equal((env.store / "History.ini").read_bytes(), after_first, "History.ini")
    expect_equal((env.store / "Summary.txt").read_bytes(), overall_first, "overall report")
    expect_equal(sorted(p.name for p in (env.store / "COPY_A" / "EVT_A1").iterdir()),
                 ["ZORInstallEvent.Log", "setup.log"], "event folder")


def test_events_without_copy_name_and_unfinished_events(env):
    solo = event("EVT_SOLO", "", "20040702 08:15:00", "20040702 08:40:30", "GUI", "ZOR Server",
                 "9.0", "FP1", "D:\\ZOR", "0")
    u1 = event("EVT_U1", "(Unknown)", "20040801 10:00:00", "", "GUI", "ZOR Server", "9.2", "",
               "C:\\ZOR\\U1", "")
    u2 = event("EVT_U2", "(Unknown)", "20040803 12:00:00", "", "Silent", "ZOR Client", "9.2", "",
               "C:\\ZOR\\U2", "")
    write_history_ini(env, [("History", {"Count": "3"}), ("EVT_U1", u1), ("EVT_SOLO", solo),
                            ("EVT_U2", u2), ("EVT_BARE", {})])
    for folder in ("EVT_U1", "EVT_SOLO", "EVT_U2"):
        make_event_folder(env, folder)
    code, _, archive = collect(env)
    expect_equal(code, 0, "exit code")
    expect_equal(read_text(env.store / "Summary.txt"),
                 overall_report(env, [("(Unknown)", [u1, u2]), ("EVT_SOLO", [solo]), ("EVT_BARE", [{}])]),
                 "overall report")
    expect_equal(read_text(env.store / "EVT_SOLO" / "Summary.txt"),
                 copy_report(env, "EVT_SOLO", [solo]), "report of the event without copy name")
    assert not (env.store / "(Unknown)").exists(), "a folder (Unknown) was made"
    assert not (env.store / "EVT_BARE").exists(), "a folder EVT_BARE was made"
    assert not (env.store / "EVT_U1" / "Summary.txt").exists(), "a report in an unfinished event's folder"
    names = [info.filename for info in check_archive(archive)]
    assert "EVT_SOLO\\Summary.txt" in names, names


def test_copy_names_differing_in_case_make_two_groups(env):
    first = {"Event_ID": "EVT_1", "Copy_Name": "CopyX"}
    second = {"Event_ID": "EVT_2", "Copy_Name": "COPYX"}
    write_history_ini(env, [("History", {"Count": "2"}), ("EVT_1", first), ("EVT_2", second)])
    code, _, _ = collect(env)
    expect_equal(code, 0, "exit code")
    expect_equal(read_text(env.store / "Summary.txt"),
                 overall_report(env, [("CopyX", [first]), ("COPYX", [second])]), "overall report")


def test_store_without_history_ini_gets_no_report_and_is_still_packed(env):
    make_event_folder(env, "EVT_1")
    code, out, archive = collect(env)
    expect_equal(code, 0, "exit code")
    expect_equal(out, env.lines("The file 'history.zip' is created successfully"), "console")
    assert not (env.store / "Summary.txt").exists(), "a report was written"
    names = [info.filename for info in check_archive(archive)]
    assert "EVT_1\\ZORInstallEvent.Log" in names, names
    assert "Summary.txt" not in names, names


def check_stop_on_history_last(env, sections):
    write_history_ini(env, sections)
    code, out, archive = collect(env)
    assert code not in (0, 1), f"exit code {code}"
    expect_equal(out, "", "console")
    assert not archive.exists(), "an archive was made"
    overall = env.store / "Summary.txt"
    assert overall.is_file(), "the overall report was not opened"
    expect_equal(overall.read_bytes(), b"", "overall report")


def test_history_as_the_only_section_stops_the_run(env):
    check_stop_on_history_last(env, [("History", {"Count": "0"})])


def test_history_as_the_last_section_stops_the_run(env):
    make_event_folder(env, "EVT_1")
    check_stop_on_history_last(env, [("EVT_1", {"Event_ID": "EVT_1"}), ("History", {"Count": "1"})])
    assert not (env.store / "EVT_1" / "Summary.txt").exists(), "a copy report was written"



def test_section_names_past_10240_bytes_are_cut_in_the_report(env):
    # "History" and 300 names of 36 characters: 8 + 276 * 37 = 10220 bytes with
    # their zeros fit the list's 10240; the 277th name keeps the 18 characters
    # that still fit before its two closing zeros, and names no section.
    names = [f"EVT_{1000 + i}_" + "ABCDEFGHIJKLMNOPQRSTUVWXYZA" for i in range(300)]
    events = [{"Event_ID": name, "Copy_Name": "C"} for name in names]
    write_history_ini(env, [("History", {"Count": "300"})] + list(zip(names, events)))
    code, out, _ = collect(env)
    expect_equal((code, out), (0, env.lines("The file 'history.zip' is created successfully")),
                 "result and console")
    expect_equal(read_text(env.store / "Summary.txt"),
                 overall_report(env, [("C", events[:276]), (names[276][:18], [{}])]), "overall report")


def test_archive_whose_close_fails_is_still_reported_created(env):
    # The archive is small enough to stay in the write buffer until the close,
    # so only the close finds that the file may not grow to its full size.
    def lay_down():
        env.reset()
        write_history_ini(env, [("History", {"Count": "1"}), ("EVT_1", {"Event_ID": "EVT_1"})])
        make_event_folder(env, "EVT_1")
    lay_down()
    code, _, archive = collect(env)
    expect_equal(code, 0, "exit code of the run without a limit")
    size = archive.stat().st_size
    assert size < 4096, f"the archive of {size} bytes doesn't stay in the write buffer"
    lay_down()
    code, out, _ = env.run_full("ZORGetInstallLog", "-f", "history.zip", file_size_limit=size - 1)
    expect_equal((code, out), (0, env.lines("The file 'history.zip' is created successfully")),
                 "result and console when the close fails")
    expect_equal(archive.stat().st_size, size - 1, "size of the archive cut at the limit")
    assert not zipfile.is_zipfile(archive), "the cut archive still reads as a zip"


if __name__ == "__main__":
    main(globals())
