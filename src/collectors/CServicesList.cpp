// PLACEHOLDER: replaced by the collector's own work.
#include "collectors/CServicesList.h"

CServicesList::CServicesList() {}
CServicesList::~CServicesList() {}
int CServicesList::Collect() { return 0; }
int CServicesList::Write() { return 0; }
bool CServicesList::IsSelected(const ServiceEntry&) { return false; }
