#!/usr/bin/env python3
"""Writes the expected product and ODBC reports for each registry fixture of
tests/fixtures/registry, by hand: every row below is copied from its fixture
in the registry's order (keys and values sorted by lower-cased name), and each
field is padded to its column width, right-aligned on a stream that no earlier
report turned left, left-aligned after one did. Run it again after a change of
a fixture; it never runs the program."""
import pathlib

HERE = pathlib.Path(__file__).resolve().parent
R = lambda c, n: c * n

PART_A = "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *"
PART_B = "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *"


def field(text, width, left):
    return text.ljust(width) if left else text.rjust(width)


class Copy:
    """One copy as the registry lists it: products are (name, code, version,
    service level, date); instances are (name, [(parameter, value)])."""

    def __init__(self, name, products=(), instances=(), global_profile=()):
        self.name, self.products = name, list(products)
        self.instances, self.global_profile = list(instances), list(global_profile)


def copy_block(left, copy, v9):
    out = [""]
    if v9:
        out.append("ZOR Installation Copy Name:" + copy.name)
    out += [R("-", 48), f"Total Products     :{len(copy.products)}",
            f"Total ZOR Instances:{len(copy.instances)}", R("-", 48)]
    out += ["", "Global Profiles:", R("-", 120)]
    out += [field(n + ":", 30, left) + v for n, v in copy.global_profile]
    out += [R("-", 120)]
    out += ["", "ZOR Products installed:", R("-", 128),
            "Product Name                            Product Code                            "
            "Version   Service Level       Last Modified Date", R("-", 128)]
    for pname, code, version, level, date in copy.products:
        out.append(field(pname, 40, left) + field(code, 40, left) + field(version, 10, left)
                   + field(level, 20, left) + field(date, 20, left))
    out += [R("-", 128)]
    out += ["", "ZOR Instances:", R("-", 33), "Instance Name                    ", R("-", 33)]
    out += [iname for iname, _ in copy.instances]
    out += [R("-", 33), ""]
    for iname, parameters in copy.instances:
        out += ["ZOR Instance Name:" + iname, R("-", 68),
                "Parameter Name                      Value                  ", R("-", 68)]
        out += [field(n, 36, left) + v for n, v in parameters]
        out += [R("-", 68), ""]
    return out


def products_report(left, pre_v9_copies, v9_copies):
    out = ["", R("*", 93), PART_A, R("*", 93)]
    if not pre_v9_copies:
        out.append("There is no ZOR prior to V9 Installed ")
    for copy in pre_v9_copies:
        out += copy_block(left, copy, v9=False)
    out += ["", R("*", 93), PART_B, R("*", 93), "", f"Total ZOR Copies:{len(v9_copies)}"]
    if not v9_copies:
        return out + ["", "There is no ZOR V9 & later installed "]
    out += [R("-", 45), "ZOR Copy Name", R("-", 45)] + [c.name for c in v9_copies] + [R("-", 45)]
    for copy in v9_copies:
        out += copy_block(left, copy, v9=True)
    return out


def odbc_report(left, drivers):
    out = ["", f"Total ZOR ODBC Drivers:{len(drivers)}"]
    if not drivers:
        return out + [" ******** There is no ZOR ODBC Driver Installed *********"]
    out += [R("-", 43), "Driver Name", R("-", 43)]
    out += [name for name, _ in drivers] + [R("-", 43)]
    for name, parameters in drivers:
        out += ["", "ODBC Driver:" + name, R("-", 76),
                "Parameter Name                Value                ", R("-", 76)]
        out += [field(n, 30, left) + v for n, v in parameters]
        out += [R("-", 76)]
    return out


FIXTURES = {
    # No copy under either root ("zor" and "ZORX" are no copy before V9, and
    # there is no InstalledCopies), no driver whose name holds "TAQ ZOR".
    "nothing_installed": ([], [], []),

    # SOFTWARE\TAQ\ZOR alone. Its subkeys in the registry's order: CurrentVersion,
    # PROFILES, Tools, ZOR, ZOR Monitor, ZOR Server, ZORTools; two are products.
    "pre_v9_only": (
        [Copy("ZOR",
              products=[("ZOR Monitor", "", "..", "SL0", ""),
                        ("ZOR Server", "{80808080-0000-0000-0000-000000000003}", "8.0.3", "SL1",
                         "20020415")],
              instances=[("Backup", []),
                         ("MAIN", [("Description", "Main instance"), ("Home", ""), ("Paths", ""),
                                   ("Port", "2600"), ("Trace", "-1")])])],
        [],
        [("TAQ ZOR Legacy", [("APILevel", "1"), ("Driver", "C:\\ZOR\\bin\\zorodbc8.dll")])]),

    # InstalledCopies alone: the older layout takes its parent, SOFTWARE\TAQ\ZOR,
    # for a copy named "ZOR" whose only subkey, InstalledCopies, is no product.
    "v9_only": (
        [Copy("ZOR")],
        [Copy("Alpha",
              products=[("ZOR Analytics Platform Enterprise Edition",
                         "{A1A1A1A1-0000-0000-0000-000000000095}", "9.5.0", "SL0", "20250610"),
                        ("ZOR Client", "", "..", "", ""),
                        ("ZOR Server", "{A1A1A1A1-0000-0000-0000-000000000095}-SERVER-X64",
                         "9.5.12345", "SL0 with Cumulative Hotfix 7", "20250611")],
              instances=[("PROD", [("Hosts", ""), ("Limit", "-1"), ("LogDir", ""),
                                   ("Parameter_Name_Longer_Than_The_Column", "wide"),
                                   ("Port", "3000")]),
                         ("TEST", [("Port", "3010")])],
              global_profile=[("Mode", "Cluster"), ("Nodes", "3"),
                              ("ZOR_Global_Parameter_Name_Of_30", "long")]),
         Copy("Bare"),
         Copy("Beta",
              products=[("ZOR Server", "{BBBBBBBB-0000-0000-0000-000000000010}", "10.0.0", "GA",
                         "20260301")],
              instances=[("PROD", [("Max_Users", "25"), ("MaxIdle", "60"),
                                   ("Name", "Beta production"), ("Port", "3001")])])],
        [("Acme TAQ ZOR Bridge", [("CPTimeout", ""), ("Driver", "C:\\Acme\\bridge.dll")]),
         ("Driver for TAQ ZOR", []),
         ("TAQ ZOR 10 Driver", [("ConnectFunctions", "YYY"),
                                ("Driver", "C:\\Program Files\\TAQ\\ZOR\\Beta\\zorodbc.dll"),
                                ("Setup", "C:\\Program Files\\TAQ\\ZOR\\Beta\\zorodbcs.dll"),
                                ("UsageCount", "2")]),
         ("TAQ ZOR Ghost", [])]),

    # A release before V9 beside two copies of V9 and later.
    "both_layouts": (
        [Copy("ZOR",
              products=[("ZOR Server", "{11111111-2222-3333-4444-555555555555}", "8.1.0", "SL2",
                         "20031120")],
              instances=[("LEGACY", [("Port", "2600")])],
              global_profile=[("DefaultInstance", "LEGACY"), ("LogLevel", "3")])],
        [Copy("ZORCopy1",
              products=[("ZOR Client Tools", "", "..", "", ""),
                        ("ZOR Replication Server with a Very Long Name",
                         "{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}-LONG", "9.2.10",
                         "Service Level 3 Hotfix", "20240106"),
                        ("ZOR Server", "{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}", "9.2.1", "SL3",
                         "20240105")],
              instances=[("EMPTY", []),
                         ("PROD", [("Home", ""), ("MaxUsers", "-1"), ("Name", "Production"),
                                   ("Paths", ""), ("Port", "3000")])],
              global_profile=[("A_Global_Parameter_Named_Long_Enough", "x"),
                              ("DataRoot", "C:\\ZOR\\Data")]),
         Copy("ZORCopy2", instances=[("PROD", [("Port", "3000")])])],
        [("My TAQ ZOR 9 Driver", [("Driver", "C:\\ZOR9\\zorodbc.dll")]),
         ("Old TAQ ZOR", []),
         ("TAQ ZOR Driver", [("Driver", "C:\\ZOR\\bin\\zorodbc.dll"), ("FileExtns", ""),
                             ("Setup", "C:\\ZOR\\bin\\zorodbcs.dll"), ("UsageCount", "1")]),
         ("TAQ ZOR NoKey", [])]),
}


def write(name, lines):
    with open(HERE / name, "w") as f:
        f.write("\n".join(lines) + "\n")


for fixture, (pre_v9, v9, drivers) in FIXTURES.items():
    for left in (False, True):
        suffix = "left" if left else "right"
        write(f"{fixture}.products.{suffix}.txt", products_report(left, pre_v9, v9))
        write(f"{fixture}.odbc.{suffix}.txt", odbc_report(left, drivers))
