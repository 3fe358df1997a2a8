#!/usr/bin/env python3
"""Writes the expected product and ODBC reports for the registry of
tests/fixtures/registry/both_layouts.reg, by hand: every row below is copied
from that fixture in the registry's order (sorted by lower-cased name), and
each field is padded to its column width, right-aligned on a stream that no
earlier report turned left, left-aligned after one did. Run it again after a
change of the fixture; it never runs the program."""
R = lambda c, n: c * n


def field(text, width, left):
    return text.ljust(width) if left else text.rjust(width)


def copy_block(left, name, products, instances, global_profile, v9):
    out = [""]
    if v9:
        out.append("ZOR Installation Copy Name:" + name)
    out += [R("-", 48), f"Total Products     :{len(products)}",
            f"Total ZOR Instances:{len(instances)}", R("-", 48)]
    out += ["", "Global Profiles:", R("-", 120)]
    out += [field(n + ":", 30, left) + v for n, v in global_profile]
    out += [R("-", 120)]
    out += ["", "ZOR Products installed:", R("-", 128),
            "Product Name                            Product Code                            "
            "Version   Service Level       Last Modified Date", R("-", 128)]
    for pname, code, version, level, date in products:
        out.append(field(pname, 40, left) + field(code, 40, left) + field(version, 10, left)
                   + field(level, 20, left) + field(date, 20, left))
    out += [R("-", 128)]
    out += ["", "ZOR Instances:", R("-", 33), "Instance Name                    ", R("-", 33)]
    out += [iname for iname, _ in instances]
    out += [R("-", 33), ""]
    for iname, parameters in instances:
        out += ["ZOR Instance Name:" + iname, R("-", 68),
                "Parameter Name                      Value                  ", R("-", 68)]
        out += [field(n, 36, left) + v for n, v in parameters]
        out += [R("-", 68), ""]
    return out


def products_report(left):
    out = ["", R("*", 93),
           "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *",
           R("*", 93)]
    out += copy_block(left, "ZOR",
                      [("ZOR Server", "{11111111-2222-3333-4444-555555555555}", "8.1.0", "SL2", "20031120")],
                      [("LEGACY", [("Port", "2600")])],
                      [("DefaultInstance", "LEGACY"), ("LogLevel", "3")], v9=False)
    out += ["", R("*", 93),
            "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *",
            R("*", 93), "", "Total ZOR Copies:2", R("-", 45), "ZOR Copy Name", R("-", 45),
            "ZORCopy1", "ZORCopy2", R("-", 45)]
    out += copy_block(left, "ZORCopy1",
                      [("ZOR Client Tools", "", "..", "", ""),
                       ("ZOR Replication Server with a Very Long Name",
                        "{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}-LONG", "9.2.10",
                        "Service Level 3 Hotfix", "20240106"),
                       ("ZOR Server", "{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}", "9.2.1", "SL3", "20240105")],
                      [("EMPTY", []),
                       ("PROD", [("Home", ""), ("MaxUsers", "-1"), ("Name", "Production"),
                                 ("Paths", ""), ("Port", "3000")])],
                      [("A_Global_Parameter_Named_Long_Enough", "x"), ("DataRoot", "C:\\ZOR\\Data")],
                      v9=True)
    out += copy_block(left, "ZORCopy2", [], [("PROD", [("Port", "3000")])], [], v9=True)
    return out


def odbc_report(left):
    drivers = [("My TAQ ZOR 9 Driver", [("Driver", "C:\\ZOR9\\zorodbc.dll")]),
               ("Old TAQ ZOR", []),
               ("TAQ ZOR Driver", [("Driver", "C:\\ZOR\\bin\\zorodbc.dll"), ("FileExtns", ""),
                                   ("Setup", "C:\\ZOR\\bin\\zorodbcs.dll"), ("UsageCount", "1")]),
               ("TAQ ZOR NoKey", [])]
    out = ["", f"Total ZOR ODBC Drivers:{len(drivers)}", R("-", 43), "Driver Name", R("-", 43)]
    out += [name for name, _ in drivers] + [R("-", 43)]
    for name, parameters in drivers:
        out += ["", "ODBC Driver:" + name, R("-", 76),
                "Parameter Name                Value                ", R("-", 76)]
        out += [field(n, 30, left) + v for n, v in parameters]
        out += [R("-", 76)]
    return out


for left in (False, True):
    suffix = "left" if left else "right"
    with open(f"both_layouts.products.{suffix}.txt", "w") as f:
        f.write("\n".join(products_report(left)) + "\n")
    with open(f"both_layouts.odbc.{suffix}.txt", "w") as f:
        f.write("\n".join(odbc_report(left)) + "\n")
