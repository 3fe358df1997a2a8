// The keys of an event's section in History.ini, as they stand in the file.
// The recorder writes them; the companion report reads them back.
#pragma once

namespace keys {
inline constexpr char EventID[] = "Event_ID";
inline constexpr char CommandLine[] = "Command_Line";
inline constexpr char StartTime[] = "Start_Time";
inline constexpr char EndTime[] = "End_Time";
inline constexpr char Action[] = "Action";
inline constexpr char Type[] = "Type";
inline constexpr char Product[] = "Product";
inline constexpr char Version[] = "Version";
inline constexpr char ServiceLevel[] = "Service_Level";
inline constexpr char Path[] = "Path";
inline constexpr char CopyName[] = "Copy_Name";
inline constexpr char CompleteFlag[] = "Complete_Flag";
inline constexpr char LogFileName[] = "Log_File_Name";
inline constexpr char TraceFile[] = "Trace_File";
inline constexpr char ResponseFile[] = "Response_File";
inline constexpr char EventLogFile[] = "Event_Log_File";
inline constexpr char Result[] = "Result";
inline constexpr char WiLogFile[] = "Wi_Log_File";
}  // namespace keys
