#include "gateway/netcdflib.hpp"
#include "gateway/registry.hpp"

void QNTerminate() { OpenFileRegistry::closeAll(); }
