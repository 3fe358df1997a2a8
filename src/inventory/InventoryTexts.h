// The fixed texts of the product inventory's reports in the event log: the
// banners of its two parts, labels, rules, column headers and the widths of
// the columns below them. The inventory writes them; the companion report
// reads a snapshot by them.
#pragma once

namespace texts {

namespace products {
inline constexpr int kBannerRuleLength = 93;  // of "*"
inline constexpr char kPartABanner[] =
    "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *";
inline constexpr char kPartBBanner[] =
    "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *";
inline constexpr char kNoPartACopies[] = "There is no ZOR prior to V9 Installed ";
inline constexpr char kNoPartBCopies[] = "There is no ZOR V9 & later installed ";
inline constexpr char kCopyCountLabel[] = "Total ZOR Copies:";
inline constexpr int kCopyListRuleLength = 45;
inline constexpr char kCopyListHeader[] = "ZOR Copy Name";

inline constexpr char kCopyNameLabel[] = "ZOR Installation Copy Name:";
inline constexpr int kCopyRuleLength = 48;
inline constexpr char kProductCountLabel[] = "Total Products     :";
inline constexpr char kInstanceCountLabel[] = "Total ZOR Instances:";

inline constexpr char kGlobalProfilesTitle[] = "Global Profiles:";
inline constexpr int kProfileRuleLength = 120;
// A global parameter: its name and ":" in a column of 30, then its value.
inline constexpr int kGlobalNameWidth = 30;

// A product's key name begins with this, case counting; the row shows it whole.
inline constexpr char kProductKeyPrefix[] = "ZOR ";
inline constexpr char kProductsTitle[] = "ZOR Products installed:";
inline constexpr int kProductRuleLength = 128;
inline constexpr char kProductHeader[] =
    "Product Name                            Product Code                            "
    "Version   Service Level       Last Modified Date";
// Name, product code, version, service level and last modified date.
inline constexpr int kProductColumnCount = 5;
inline constexpr int kProductColumnWidths[kProductColumnCount] = {40, 40, 10, 20, 20};

inline constexpr char kInstancesTitle[] = "ZOR Instances:";
inline constexpr int kInstanceRuleLength = 33;
inline constexpr char kInstanceHeader[] = "Instance Name                    ";
inline constexpr char kInstanceNameLabel[] = "ZOR Instance Name:";
inline constexpr int kParameterRuleLength = 68;
inline constexpr char kParameterHeader[] = "Parameter Name                      Value                  ";
inline constexpr int kParameterNameWidth = 36;
}  // namespace products

namespace odbc {
inline constexpr char kDriverCountLabel[] = "Total ZOR ODBC Drivers:";
inline constexpr char kNoDrivers[] = " ******** There is no ZOR ODBC Driver Installed *********";
inline constexpr int kDriverRuleLength = 43;
inline constexpr char kDriverListHeader[] = "Driver Name";
inline constexpr char kDriverNameLabel[] = "ODBC Driver:";
inline constexpr int kParameterRuleLength = 76;
inline constexpr char kParameterHeader[] = "Parameter Name                Value                ";
inline constexpr int kParameterNameWidth = 30;
}  // namespace odbc

}  // namespace texts
