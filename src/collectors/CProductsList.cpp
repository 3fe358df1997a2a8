// PLACEHOLDER: replaced by the collector's own work.
#include "collectors/CProductsList.h"

CProductsList::CProductsList() {}
CProductsList::~CProductsList() {}
int CProductsList::Collect() { return 0; }
int CProductsList::Write() { return 0; }
bool CProductsList::IsSelected(const ProductEntry&) { return false; }
