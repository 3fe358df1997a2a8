// PLACEHOLDER: replaced by the collector's own work.
#include "collectors/CComputerInfo.h"

CComputerInfo::CComputerInfo() {}
CComputerInfo::~CComputerInfo() {}
int CComputerInfo::Collect() { return 0; }
int CComputerInfo::Write() { return 0; }
void CComputerInfo::CollectOSInfo() {}
void CComputerInfo::CollectCPUInfo() {}
