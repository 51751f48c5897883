// The shipped library's interruption points: nothing stops it here.
#include "files/interruption_points.h"

void InterruptionPoint(const char *, const char *) {}

bool ChosenWorkDirectoryName(std::string &) { return false; }
