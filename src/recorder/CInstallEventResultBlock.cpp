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
    log << "Start Time                   :" << GetStartTime() << std::endl;
    log << "End   Time                   :" << GetEndTime() << std::endl;
    log << "ZOR Products & Build Level   :" << GetProduct() << std::endl;
    log << "Service Level                :" << GetServiceLevel() << std::endl;
    log << "Install Type ( GUI | Silent ):" << GetType() << std::endl;
    log << "Installation Action          :" << GetAction() << std::endl;
    log << "Result                       :" << GetResult() << std::endl;
    log << "Log File Name                :" << GetLogFileName() << std::endl;
    log << "Trace File Name              :" << GetTraceFile() << std::endl;
    log << rule << std::endl;
    log << std::endl;
}
