// Checks before a file is opened or created, shared by every way of doing so.
#pragma once

#include <string>

// netCDF-C's status for a mode it crashes on instead of refusing; 0 for other modes.
int statusOfUnsafeMode(int mode, bool creating);

// Whether a file this library keeps open is the file at path.
bool isOpenHere(const std::string& path);
