// PLACEHOLDER: replaced by the collector's own work.
#include "collectors/CUsersList.h"

CUsersList::CUsersList() {}
CUsersList::~CUsersList() {}
int CUsersList::Collect() { return 0; }
int CUsersList::Write() { return 0; }
