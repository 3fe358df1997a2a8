// The texts that the recorder compares and writes: the three modes, which are
// also the options that set them, the literals of an event's section, the name
// of the event log and the fixed lines of the log itself. The companion report
// reads the log by the same texts.
#pragma once

namespace texts {

// The modes of a call, as stored in CInstallEvent::Mode.
inline constexpr char kStartMode[] = "-start";
inline constexpr char kEndMode[] = "-end";
inline constexpr char kLogMessageMode[] = "-logmessage";

// Copy_Name of an event whose copy no -end has named yet.
inline constexpr char kUnknownCopy[] = "(Unknown)";

// Complete_Flag of an open and of a finished event.
inline constexpr char kIncomplete[] = "FALSE";
inline constexpr char kComplete[] = "TRUE";

// What the three file keys hold between the two passes of a -start.
inline constexpr char kNoFile[] = "(none)";

// The event log, in the event folder.
inline constexpr char kEventLogName[] = "ZORInstallEvent.Log";

// The head and foot of the log. The start banner has no blank behind its ")",
// the end banner has one; a time stamp follows each directly.
inline constexpr char kStartBanner[] = "---------- ZOR Installation History Logger ( Start )----------";
inline constexpr char kEndBanner[] = "---------- ZOR Installation History Logger ( End ) ----------";
inline constexpr char kBannerEventIdLabel[] = "EventID       :";
inline constexpr char kBannerProductLabel[] = "Product       :";
inline constexpr char kBannerServiceLevelLabel[] = "Service Level :";
inline constexpr char kBannerCommandLineLabel[] = "CommandLine   :";

// The snapshot's frame: a rule of 94 stars, an empty frame line of one star and
// 93 blanks, the title line and the two forms of the closing line.
inline constexpr int kSnapshotRuleLength = 94;
inline constexpr int kSnapshotFrameWidth = 94;
inline constexpr char kSnapshotTitle[] = "*  Snapshoot for EventID: ";
inline constexpr char kSnapshotBefore[] = " -- Before ";
inline constexpr char kSnapshotAfter[] = " -- After ";
inline constexpr char kSnapshotStartClosing[] = "* End of Snapshoot for EventID: ";
inline constexpr char kSnapshotEndClosing[] = "*End of Snapshoot for EventID: ";

// The six sections of a snapshot, in their order. Each title follows the
// section's number directly: "1) User Group & User Information:".
inline constexpr int kSnapshotSectionCount = 6;
inline constexpr const char* kSnapshotSectionTitles[kSnapshotSectionCount] = {
    ") User Group & User Information:",
    ") Software Installed on the machine:",
    ") Current Running Processes:",
    ") Services & Service Status:",
    ") ZOR Products Installed:",
    ") ZOR ODBC Driver Info:",
};

// The title of the result block at -end, "Result of " + action + ":", and
// the rule of 69 "=" that stands below it and at its end.
inline constexpr char kResultBlockTitle[] = "Result of ";
inline constexpr int kResultRuleLength = 69;
// The labels of the result block's lines, each 30 characters wide, with the
// value of the event's section right behind the colon.
inline constexpr char kResultStartLabel[] = "Start Time                   :";
inline constexpr char kResultEndLabel[] = "End   Time                   :";
inline constexpr char kResultProductLabel[] = "ZOR Products & Build Level   :";
inline constexpr char kResultServiceLevelLabel[] = "Service Level                :";
inline constexpr char kResultTypeLabel[] = "Install Type ( GUI | Silent ):";
inline constexpr char kResultActionLabel[] = "Installation Action          :";
inline constexpr char kResultResultLabel[] = "Result                       :";
inline constexpr char kResultLogFileLabel[] = "Log File Name                :";
inline constexpr char kResultTraceFileLabel[] = "Trace File Name              :";

}  // namespace texts
