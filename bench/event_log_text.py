"""The text of an event log as the recorder writes it on Windows: the start
banner, the computer report, the snapshot before the install, the installer's
-logmessage lines, the snapshot after it, the result block and the end banner,
each line ended by "\\r\\n" and the texts in the ANSI code page (Windows-1252).

The machine is made up from a seed: users and groups, installed software,
processes, services, copies of the product with their instances and
parameters, and ODBC drivers, in the widths and padding of the collectors'
and the inventory's reports (every column left-aligned: the users' report
turns the stream's left adjustment on, and it stays on for the rest of the
snapshot). `changed_machine` makes the machine after an install from the
one before it, with a few differences in each section.

Used by bench/report_benchmark.py and by fuzz/report_seeds.py.
"""
import copy as copying
import random

FRAME_RULE = "*" * 94
FRAME_BLANK = "*" + " " * 93
SOFTWARE_RULE = "-" * 185
SOFTWARE_HEADER = ("Publisher                     Product Name                                                     "
                   "Version             InstallDate   Language   Location")
PROCESS_RULE = "-" * 51 + " "
PROCESS_HEADER = "Process ID         Process Name                     "
PROCESS_END = "---------- Process List ( end )-------------------- "
SERVICE_RULE = "-" * 68 + " "
SERVICE_HEADER = "Service Name                                                Status   "
SERVICE_STATES = ["Stopped", "Is starting", "Is stopping", "Started",
                  "The service continue is pending", "The service pause is pending", "Paused"]
PART_A = "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *"
PART_B = "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *"
SECTION_TITLES = ["User Group & User Information:", "Software Installed on the machine:",
                  "Current Running Processes:", "Services & Service Status:", "ZOR Products Installed:",
                  "ZOR ODBC Driver Info:"]

PUBLISHERS = ["Microsoft Corporation", "Adobe Inc.", "Oracle Corporation", "TAQ Software",
              "Intel Corporation", "VMware, Inc.", "Hewlett Packard Enterprise", "Notepad++ Team",
              "Python Software Foundation", "Mozilla", "Google LLC", "Citrix Systems, Inc.",
              "Trend Micro Inc.", "Igor Pavlov", "The Git Development Community"]
PRODUCT_WORDS = ["Runtime", "Redistributable", "Tools", "Agent", "Client", "Server", "Driver",
                 "Update", "Framework", "Service Pack", "Language Pack", "SDK", "Connector",
                 "Monitor", "Console", "Library", "Management Studio", "Help Viewer", "Setup Files"]
PRODUCT_STEMS = ["Visual C++ 2015-2019", "SQL Server 2019", ".NET Framework 4.8", "Office Professional Plus",
                 "Acrobat Reader DC", "Java 8", "Chipset Device Software", "VMware Tools",
                 "Integrated Lights-Out", "Notepad++", "Python 3.11", "Firefox ESR", "Chrome",
                 "Workspace App", "Apex One Security Agent", "7-Zip", "Git", "Windows Server 2019",
                 "Microsoft\xae System CLR Types", "Report Viewer", "ODBC Driver 17 for SQL Server"]
# A missing Language prints as 0: the recorder turns the value into a number.
LANGUAGES = ["1033", "0", "1031", "1036", "0"]
PROCESS_NAMES = ["System", "smss.exe", "csrss.exe", "wininit.exe", "services.exe", "lsass.exe",
                 "svchost.exe", "spoolsv.exe", "explorer.exe", "dwm.exe", "winlogon.exe",
                 "taskhostw.exe", "RuntimeBroker.exe", "vmtoolsd.exe", "MsMpEng.exe", "sqlservr.exe",
                 "zorsrv.exe", "zoragent.exe", "conhost.exe", "cmd.exe", "msiexec.exe", "setup.exe",
                 "WmiPrvSE.exe", "SearchIndexer.exe", "ctfmon.exe", "sihost.exe", "fontdrvhost.exe"]
SERVICE_WORDS = ["Windows", "Remote", "Background", "Network", "Print", "Update", "Time", "Event",
                 "Security", "Device", "Storage", "Data", "Diagnostic", "Connection", "Policy",
                 "Discovery", "Management", "Instrumentation", "Transfer", "Registry", "Audio"]
SERVICE_KINDS = ["Service", "Manager", "Host", "Agent", "Broker", "Provider", "Helper", "Spooler"]
GROUPS = ["Administrators", "Backup Operators", "Cryptographic Operators", "Distributed COM Users",
          "Event Log Readers", "Guests", "Hyper-V Administrators", "IIS_IUSRS", "Network Configuration Operators",
          "Performance Log Users", "Performance Monitor Users", "Power Users", "Print Operators",
          "Remote Desktop Users", "Remote Management Users", "Replicator", "Users", "ZOR Administrators",
          "ZOR Operators", "Access Control Assistance Operators"]
PARAMETERS = ["Port", "Home", "Paths", "MaxUsers", "MaxIdle", "LogDir", "LogLevel", "Trace", "Name",
              "Description", "Hosts", "Limit", "BufferPool", "CacheSize", "Locale", "Charset",
              "Timeout", "AutoStart", "Replication", "AuditLevel", "BackupDir", "TempDir", "Threads",
              "Listener", "SSLMode", "Certificate", "KeepAlive", "CheckpointInterval", "Journal",
              "Compression", "Statistics", "QueryCache", "Optimizer", "DeadlockTimeout", "LockWait",
              "Archive", "Mirror", "Failover", "Cluster", "NodeName"]


class Copy:
    """A copy of the product: products are (name, code, version, service
    level, date); instances are [name, [[parameter, value]]]."""

    def __init__(self, name, products=None, instances=None, global_profile=None):
        self.name = name
        self.products = products or []
        self.instances = instances or []
        self.global_profile = global_profile or []


class Machine:
    pass


def make_machine(rng, software=600, processes=110, services=260, users=120, copies=4, instances=8,
                 parameters=36, drivers=6):
    m = Machine()
    m.computer = ["ZORSRV%02d" % rng.randrange(100), "Windows Server 2019 Standard", "Server", "",
                  str(rng.choice([4, 8, 16])), "Intel(R) Xeon(R) Gold 6230 CPU @ 2.10GHz"]
    m.logged_on = "CORP\\installer"
    m.groups = sorted(GROUPS)
    m.members = sorted((rng.choice(GROUPS), "%s%03d" % (rng.choice(["svc_", "adm_", "user", "ops"]), n))
                       for n in range(users))
    rows = []
    for n in range(software):
        stem = rng.choice(PRODUCT_STEMS)
        name = "%s %s" % (stem, rng.choice(PRODUCT_WORDS))
        if rng.random() < 0.4:
            name = "Security Update for %s (KB%d)" % (stem, 4000000 + rng.randrange(999999))
        version = "%d.%d.%d" % (rng.randrange(1, 20), rng.randrange(10), rng.randrange(30000))
        date = "20%02d%02d%02d" % (rng.randrange(15, 25), rng.randrange(1, 13), rng.randrange(1, 29))
        location = rng.choice(["", "C:\\Program Files\\%s\\" % stem, "C:\\Program Files (x86)\\%s\\" % stem])
        rows.append([rng.choice(PUBLISHERS), name, version, date, rng.choice(LANGUAGES), location])
    m.software = rows
    m.processes = [[rng.randrange(4, 40000), rng.choice(PROCESS_NAMES)] for _ in range(processes)]
    names = set()
    while len(names) < services:
        names.add("%s %s %s" % (rng.choice(SERVICE_WORDS), rng.choice(SERVICE_WORDS), rng.choice(SERVICE_KINDS)))
    m.services = [[name, rng.choice(["Started", "Started", "Stopped", "Paused"])] for name in sorted(names)]
    m.pre_v9 = [Copy("ZOR", products=[("ZOR Server", "{11111111-2222-3333-4444-555555555555}", "8.1.0", "SL2",
                                       "20031120")],
                     instances=[["LEGACY", [["Port", "2600"], ["Home", "C:\\ZOR8"]]]],
                     global_profile=[["DefaultInstance", "LEGACY"]])]
    m.v9 = []
    for c in range(copies):
        name = "COPY%d" % (c + 1)
        products = [("ZOR Server", "{AAAAAAAA-BBBB-CCCC-DDDD-%012d}" % c, "9.%d.%d" % (c, rng.randrange(100)),
                     "SL%d" % rng.randrange(5), "2024%02d%02d" % (rng.randrange(1, 13), rng.randrange(1, 29))),
                    ("ZOR Client Tools", "", "..", "", "")]
        inst = []
        for i in range(instances):
            params = [[p, "%s_%d_%d" % (p.lower(), c, rng.randrange(10000))]
                      for p in sorted(rng.sample(PARAMETERS, parameters))]
            inst.append(["INST%02d" % i, params])
        m.v9.append(Copy(name, products, inst, [["DataRoot", "C:\\ZOR\\%s\\Data" % name], ["Nodes", "3"]]))
    m.drivers = [["TAQ ZOR %d Driver" % d, [["Driver", "C:\\Program Files\\TAQ\\ZOR\\zorodbc%d.dll" % d],
                                           ["Setup", "C:\\Program Files\\TAQ\\ZOR\\zorodbcs%d.dll" % d],
                                           ["UsageCount", str(d + 1)]]] for d in range(drivers)]
    return m


def changed_machine(rng, before, copy_name):
    """The machine after an install into `copy_name`: the copy's entry among
    the software, its service, its driver and its service account there (or
    a new version of each), the copy's server at a new version and one of
    its parameters changed, a few other products updated, and every process
    started anew, the installer's among them. A copy's things are added once,
    so that the machine doesn't grow with each install."""
    m = copying.deepcopy(before)
    build = rng.randrange(1000)
    version = "11.0.%d" % build
    entry = "ZOR Database Server (%s)" % copy_name
    rows = [row for row in m.software if row[1] == entry]
    if rows:
        rows[0][2] = version
    else:
        m.software.append(["TAQ Software", entry, version, "20240105", "1033",
                           "C:\\Program Files\\ZOR\\%s\\" % copy_name])
    for row in rng.sample(m.software, 3):
        row[2] = "%d.%d.%d" % (rng.randrange(1, 20), rng.randrange(10), rng.randrange(30000))
    service = "ZOR Server (%s)" % copy_name
    if not any(name == service for name, _ in m.services):
        m.services.append([service, "Started"])
    m.services = [[name, "Started" if name == service else state] for name, state in m.services]
    names = [name for _, name in m.processes if name != "msiexec.exe"]
    m.processes = [[rng.randrange(4, 40000), name] for name in names + ["msiexec.exe"]]
    member = ("ZOR Administrators", "svc_zor_" + copy_name.lower())
    if member not in m.members:
        m.members = sorted(m.members + [member])
    for c in m.v9:
        if c.name == copy_name:
            c.products[0] = c.products[0][:2] + (version,) + c.products[0][3:]
            c.instances[0][1][0][1] = "%d" % (3000 + build % 100)
    driver = "TAQ ZOR Driver " + copy_name
    m.drivers = [d for d in m.drivers if d[0] != driver]
    m.drivers.append([driver, [["Driver", "C:\\ZOR\\%s\\%s\\zorodbc.dll" % (copy_name, version)]]])
    return m


def machine_between(rng, after, update):
    """The machine when the next install starts: the installer's process gone,
    the others started anew, and with `update` one more update installed."""
    m = copying.deepcopy(after)
    m.processes = [[rng.randrange(4, 40000), name] for _, name in m.processes if name != "msiexec.exe"]
    if update:
        m.software.append(["Microsoft Corporation", "Security Update for Windows Server 2019 (KB%d)"
                           % (5000000 + rng.randrange(999999)), "", "2024%02d%02d" % (rng.randrange(1, 13),
                                                                                      rng.randrange(1, 29)),
                           "1033", ""])
    return m


def users_lines(m):
    out = ["", "Logged on User:" + m.logged_on, "=" * 83, "", "Local Group List:", "-" * 35, "Group Name ",
           "-" * 35]
    out += m.groups
    out += ["-" * 35, "", "Local User List:", "-" * 74, "Group                                   user   ", "-" * 74]
    out += [group.ljust(30) + " " * 10 + user for group, user in m.members]
    out += ["-" * 74, "", "=" * 83]
    return out


def software_lines(m):
    out = ["", SOFTWARE_RULE, SOFTWARE_HEADER, SOFTWARE_RULE]
    for publisher, name, version, date, language, location in m.software:
        out.append(publisher.ljust(30) + name.ljust(65) + version.ljust(20) + date.ljust(14) + language.ljust(11)
                   + location)
    return out + [SOFTWARE_RULE]


def process_lines(m):
    out = ["", "Processes:%d" % len(m.processes), PROCESS_RULE, PROCESS_HEADER, PROCESS_RULE]
    out += [str(pid).ljust(19) + name for pid, name in m.processes]
    return out + [PROCESS_END]


def service_lines(m):
    out = ["", SERVICE_RULE, SERVICE_HEADER, SERVICE_RULE]
    out += [name.ljust(60) + state.ljust(15) for name, state in m.services]
    return out + [SERVICE_RULE]


def copy_block(c, v9):
    out = [""]
    if v9:
        out.append("ZOR Installation Copy Name:" + c.name)
    out += ["-" * 48, "Total Products     :%d" % len(c.products), "Total ZOR Instances:%d" % len(c.instances),
            "-" * 48, "", "Global Profiles:", "-" * 120]
    out += [(n + ":").ljust(30) + v for n, v in c.global_profile]
    out += ["-" * 120, "", "ZOR Products installed:", "-" * 128,
            "Product Name                            Product Code                            "
            "Version   Service Level       Last Modified Date", "-" * 128]
    out += [p[0].ljust(40) + p[1].ljust(40) + p[2].ljust(10) + p[3].ljust(20) + p[4].ljust(20) for p in c.products]
    out += ["-" * 128, "", "ZOR Instances:", "-" * 33, "Instance Name                    ", "-" * 33]
    out += [name for name, _ in c.instances]
    out += ["-" * 33, ""]
    for name, parameters in c.instances:
        out += ["ZOR Instance Name:" + name, "-" * 68,
                "Parameter Name                      Value                  ", "-" * 68]
        out += [n.ljust(36) + v for n, v in parameters]
        out += ["-" * 68, ""]
    return out


def product_lines(m):
    out = ["", "*" * 93, PART_A, "*" * 93]
    if not m.pre_v9:
        out.append("There is no ZOR prior to V9 Installed ")
    for c in m.pre_v9:
        out += copy_block(c, False)
    out += ["", "*" * 93, PART_B, "*" * 93, "", "Total ZOR Copies:%d" % len(m.v9)]
    if not m.v9:
        return out + ["", "There is no ZOR V9 & later installed "]
    out += ["-" * 45, "ZOR Copy Name", "-" * 45] + [c.name for c in m.v9] + ["-" * 45]
    for c in m.v9:
        out += copy_block(c, True)
    return out


def odbc_lines(m):
    out = ["", "Total ZOR ODBC Drivers:%d" % len(m.drivers)]
    if not m.drivers:
        return out + [" ******** There is no ZOR ODBC Driver Installed *********"]
    out += ["-" * 43, "Driver Name", "-" * 43] + [name for name, _ in m.drivers] + ["-" * 43]
    for name, parameters in m.drivers:
        out += ["", "ODBC Driver:" + name, "-" * 76, "Parameter Name                Value                ", "-" * 76]
        out += [n.ljust(30) + v for n, v in parameters]
        out += ["-" * 76]
    return out


def snapshot_lines(event_id, action, m, after):
    if after:
        out = [FRAME_RULE, FRAME_BLANK, "*  Snapshoot for EventID: %s -- After %s Completed " % (event_id, action),
               FRAME_BLANK, FRAME_RULE]
    else:
        out = [FRAME_RULE, "*  Snapshoot for EventID: %s -- Before %s Starts " % (event_id, action),
               FRAME_BLANK, FRAME_RULE]
    bodies = [users_lines(m), software_lines(m), process_lines(m), service_lines(m), product_lines(m),
              odbc_lines(m)]
    for number, body in enumerate(bodies, 1):
        out += ["", "%d) %s" % (number, SECTION_TITLES[number - 1])] + body
    if after:
        out += [FRAME_RULE, "*End of Snapshoot for EventID: %s -- After %s Completed " % (event_id, action),
                FRAME_RULE]
    else:
        out += [FRAME_RULE, "* End of Snapshoot for EventID: %s Before %s Starts  " % (event_id, action),
                FRAME_RULE]
    return out


def start_lines(event, m):
    out = ["---------- ZOR Installation History Logger ( Start )----------" + event["start"],
           "EventID       :" + event["id"], "Product       :" + event["product"],
           "Service Level :" + event["level"], "CommandLine   :" + event["command"],
           "", "System Information: ", "=" * 45]
    labels = ["Computer Name       :", "OS                  :", "Type                :", "Service Pack        :",
              "Number of processors:", "CPU                 :"]
    out += [label + value for label, value in zip(labels, m.computer)]
    out += ["=" * 45, ""]
    return out + snapshot_lines(event["id"], event["action"], m, after=False)


def end_lines(event, m):
    out = snapshot_lines(event["id"], event["action"], m, after=True)
    out += ["", "", "", "", "Result of %s:" % event["action"], "=" * 69,
            "Start Time                   :" + event["start"], "End   Time                   :" + event["end"],
            "ZOR Products & Build Level   :" + event["product"], "Service Level                :" + event["level"],
            "Install Type ( GUI | Silent ):GUI", "Installation Action          :" + event["action"],
            "Result                       :" + event["result"], "Log File Name                :" + event["log"],
            "Trace File Name              :", "=" * 69, ""]
    return out + ["", "---------- ZOR Installation History Logger ( End ) ----------" + event["end"]]


def message_lines(rng, event, count):
    """The installer's -logmessage lines: each is written as given."""
    steps = ["Checking prerequisites", "Stopping service ZOR Server (%s)", "Copying files to %s",
             "Registering ODBC driver for %s", "Updating instance parameters of %s", "Starting service ZOR Server (%s)",
             "Creating shortcuts for %s", "Writing the uninstall entry of %s"]
    folder = "C:\\Program Files\\ZOR\\" + event["copy"]
    return ["%s %s: %s" % (event["start"], event["id"], rng.choice(steps).replace("%s", folder))
            for _ in range(count)]


def event_log_text(rng, event, before, after, messages=12):
    """The whole log of one completed event, as bytes."""
    lines = start_lines(event, before) + message_lines(rng, event, messages) + end_lines(event, after)
    return ("\r\n".join(lines) + "\r\n").encode("cp1252")
