// PLACEHOLDER: replaced by the collector's own work.
#include "collectors/CProcessList.h"

CProcessList::CProcessList() {}
CProcessList::~CProcessList() {}
int CProcessList::Collect() { return 0; }
int CProcessList::Write() { return 0; }
bool CProcessList::IsSelected(const ProcessEntry&) { return false; }
