#!/usr/bin/env python3
"""Writes the seed corpus of report_fuzzer into fuzz/corpus/report: event logs
made from the recorder's golden logs and inventory reports, a small log of a
machine in the recorder's exact format, damaged forms of them, and a few
History.ini files. Each seed ends in the tail that report_fuzzer reads (see
fuzz/report_fuzzer.cpp): block sizes, then the byte that tells the kind of
input and the line limit. Run it again after a change of the log's format."""
import pathlib
import random
import sys

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent
sys.path.insert(0, str(SOURCE / "bench"))
import event_log_text as logtext  # noqa: E402

GOLDEN = SOURCE / "tests" / "golden"
OUT = HERE / "corpus" / "report"

LIMITS = {"default": 0, 1: 1, 40: 2, 200: 3}


def tail(sizes=(), limit="default", history_ini=False):
    """Block-size bytes, then the last byte."""
    assert len(sizes) < 32
    return bytes(sizes) + bytes([len(sizes) | LIMITS[limit] << 5 | (0x80 if history_ini else 0)])


def golden_lines(name):
    return (GOLDEN / name).read_text(encoding="latin-1").split("\n")[:-1]


def crlf(lines):
    return ("\r\n".join(lines) + "\r\n").encode("latin-1")


EVENT = dict(id="E1", start="20240105 10:00:00", end="20240105 10:20:00", product="ZOR Server", level="SL1",
             command="-start E1 -Action Install -Product \"ZOR Server\"", action="Install", result="0",
             log="C:\\Temp\\install.log", copy="COPY1")


def small_machines(rng):
    before = logtext.make_machine(rng, software=6, processes=5, services=5, users=4, copies=1, instances=2,
                                  parameters=3, drivers=1)
    return before, logtext.changed_machine(rng, before, "COPY1")


def with_sections(snapshot, bodies):
    """The snapshot's lines with the bodies of some sections replaced: {number: lines}."""
    out = []
    skipping = False
    for line in snapshot:
        heading = line[:2] if len(line) > 2 and line[0].isdigit() and line[1] == ")" else None
        if heading:
            skipping = int(line[0]) in bodies
            out.append(line)
            if skipping:
                out += bodies[int(line[0])]
            continue
        if skipping and line == logtext.FRAME_RULE:
            skipping = False
        if not skipping:
            out.append(line)
    return out


def main():
    OUT.mkdir(parents=True, exist_ok=True)
    for old in OUT.iterdir():
        old.unlink()
    seeds = {}
    rng = random.Random(2024)

    # The recorder's golden logs of a machine where every call fails: -start
    # alone, and -start with the snapshot of -end.
    start = golden_lines("eventlog/every_call_fails.start.txt")
    end = golden_lines("eventlog/every_call_fails.end-snapshot.txt")
    seeds["golden-start"] = crlf(start) + tail()
    seeds["golden-start-end-in-small-blocks"] = crlf(start + ["installer message"] + end) + tail((0, 1, 2, 0x81))

    # The same frame around the inventory's golden reports: the copies and
    # drivers of both layouts before, of V9 alone after.
    before = with_sections(start, {5: golden_lines("inventory/both_layouts.products.left.txt"),
                                   6: golden_lines("inventory/both_layouts.odbc.left.txt")})
    after = with_sections(end, {5: golden_lines("inventory/v9_only.products.left.txt"),
                                6: golden_lines("inventory/v9_only.odbc.left.txt")})
    seeds["golden-inventory-changes"] = crlf(before + after) + tail((0x40, 0x7f, 3))
    seeds["golden-inventory-pre-v9"] = crlf(
        with_sections(start, {5: golden_lines("inventory/pre_v9_only.products.left.txt"),
                              6: golden_lines("inventory/pre_v9_only.odbc.left.txt")})
        + with_sections(end, {5: golden_lines("inventory/nothing_installed.products.left.txt"),
                              6: golden_lines("inventory/nothing_installed.odbc.left.txt")})) + tail((5,))

    # A small machine in the recorder's exact format, whole and damaged.
    machine, changed = small_machines(rng)
    head = logtext.start_lines(EVENT, machine)
    messages = logtext.message_lines(rng, EVENT, 4)
    foot = logtext.end_lines(EVENT, changed)
    whole = head + messages + foot
    seeds["small-machine"] = crlf(whole) + tail((0x80, 17, 0))
    seeds["small-machine-lf"] = ("\n".join(whole) + "\n").encode("latin-1") + tail((63,))
    seeds["small-machine-cr-only"] = ("\r".join(whole) + "\r").encode("latin-1") + tail((0, 0, 1))
    seeds["small-machine-no-last-line-end"] = crlf(whole)[:-2] + tail((2,))
    cut = len(head) + len(messages) + len(foot) // 2
    seeds["cut-in-after-snapshot"] = crlf(whole[:cut]) + tail((9, 0x83))
    seeds["cut-in-before-snapshot"] = crlf(head[: len(head) * 2 // 3])[:-5] + tail((4,))
    software = [i for i, line in enumerate(head) if line.startswith("2) ")][0]
    processes = [i for i, line in enumerate(head) if line.startswith("3) ")][0]
    seeds["section-repeated"] = crlf(head[:processes] + head[software:] + messages + foot) + tail((31,))
    seeds["snapshot-repeated"] = crlf(head + head[15:] + messages + foot + foot) + tail((0x90,))
    seeds["after-before-before"] = crlf(foot + head + head) + tail()
    seeds["no-snapshots"] = crlf(head[:15] + messages) + tail((1,))
    seeds["long-lines-limit-40"] = crlf(whole) + tail((6, 0x8f), limit=40)
    seeds["long-lines-limit-200"] = crlf(whole) + tail((6, 0x8f), limit=200)

    # A member table of a damaged log whose rows end short of the group
    # column, down to an empty one.
    seeds["user-row-shorter-than-group-column"] = crlf(
        ["*  Snapshoot for EventID: E1 -- Before Install Starts ", "1) User Group & User Information:",
         "Local User List:", "-" * 74, "Group                                   user   ", "-" * 74,
         "Administrators                          admin", "", "Users", "-" * 74]) + tail()

    # A "\r\n" that ends a block, with an empty "\n" line at the start of the next.
    seeds["crlf-then-lf-across-blocks"] = b"Logged on User:x\r\n\nEventID       :E1\r\n\n\r\r\n" + tail((17, 0, 0))

    # Texts that the page must escape, and bytes that UTF-8 has no place for.
    hostile = "<script>alert('x')</script> & \"quoted\" \x80\x81\x9d\xae\xff\x7f\x01\t"
    machine.software.append(["<b>Publisher</b>", hostile, "1.0", "20240101", "1033", "C:\\<x>"])
    machine.services.append([hostile[:40], "Started"])
    machine.computer[0] = hostile
    texts = logtext.start_lines(EVENT, machine) + [hostile] + logtext.end_lines(EVENT, changed)
    seeds["hostile-texts"] = "\r\n".join(texts).encode("latin-1") + tail((0x7f, 0x7f))

    # History.ini: events of several copies, an EventID again in another
    # case, an event without a copy, blank and odd sections.
    ini = ["[History]", "Count=5"]
    for n, copy in enumerate(["COPY1", "COPY2", "COPY1", "", "(Unknown)", "COPY2"]):
        ini += ["[EVT_%d]" % n, "Event_ID=EVT_%d" % n, "Action=Install", "Copy_Name=%s" % copy,
                "Complete_Flag=TRUE" if n != 4 else "Complete_Flag=FALSE", "Result=%s" % ["0", "1603", ""][n % 3],
                "Start_Time=20240105 10:%02d:00" % n, "End_Time=20240105 11:%02d:00" % n,
                "Log_File_Name=C:\\Temp\\setup%d.log" % n,
                "Event_Log_File=C:\\ProgramData\\TAQ\\ZORHistory\\%s\\EVT_%d\\ZORInstallEvent.Log" % (copy, n)]
    ini += ["[evt_1]", "Copy_Name=COPY3", "[ ]", "Action=x", "[History]", "Count=9", "[<script>]",
            "Copy_Name=<i>\x93copy\x94</i>", "Result=\x00\x01"]
    seeds["history-ini"] = crlf(ini) + tail(history_ini=True)
    seeds["history-ini-lf-no-header"] = ("Count=1\nAction=none\n" + "\n".join(ini[2:30])).encode("latin-1") + \
        tail(history_ini=True)

    for name, data in seeds.items():
        (OUT / name).write_bytes(data)
    print("%d seeds, %d bytes at most, in %s" % (len(seeds), max(map(len, seeds.values())), OUT))


if __name__ == "__main__":
    main()
