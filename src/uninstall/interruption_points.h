// Where a test build of tovrel-uninstall can stop a run the way a kill
// would: once an item has been dealt with and before its record value
// goes. The shipped program links the empty version and reads no switch.
#ifndef TOVREL_UNINSTALL_INTERRUPTION_POINTS_H
#define TOVREL_UNINSTALL_INTERRUPTION_POINTS_H

// point: the item's kind; subject: its name, line or path.
void InterruptionPoint(const char *point, const char *subject);

#endif
