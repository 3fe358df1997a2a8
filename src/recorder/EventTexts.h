// The texts that the recorder compares and writes in more than one place: the
// three modes, which are also the options that set them, the literals of an
// event's section and the name of the event log.
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

// The event log, in the event folder.
inline constexpr char kEventLogName[] = "ZORInstallEvent.Log";

}  // namespace texts
