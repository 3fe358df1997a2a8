// The table that closes an event log at its -end: what the event's section
// then holds, read back key by key.
#include <ostream>
#include <string>

#include "recorder/CInstallEvent.h"
#include "recorder/CLogger.h"
#include "recorder/EventTexts.h"

void CInstallEvent::WriteResultBlock()
{
    CLogger& log = CLogger::Instance();
    const std::string rule(texts::kResultRuleLength, '=');
    log << std::endl << std::endl << std::endl << std::endl;
    log << texts::kResultBlockTitle + GetAction() + ":" << std::endl;
    log << rule << std::endl;
    log << texts::kResultStartLabel << GetStartTime() << std::endl;
    log << texts::kResultEndLabel << GetEndTime() << std::endl;
    log << texts::kResultProductLabel << GetProduct() << std::endl;
    log << texts::kResultServiceLevelLabel << GetServiceLevel() << std::endl;
    log << texts::kResultTypeLabel << GetType() << std::endl;
    log << texts::kResultActionLabel << GetAction() << std::endl;
    log << texts::kResultResultLabel << GetResult() << std::endl;
    log << texts::kResultLogFileLabel << GetLogFileName() << std::endl;
    log << texts::kResultTraceFileLabel << GetTraceFile() << std::endl;
    log << rule << std::endl;
    log << std::endl;
}
