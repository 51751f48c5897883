// The shipped program's interruption points: nothing stops it here.
#include "uninstall/interruption_points.h"

void InterruptionPoint(const char *, const char *) {}
