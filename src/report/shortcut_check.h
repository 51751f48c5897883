// The shortcut lines of a record: the link file where the line puts it,
// pointing where the line says and starting in the directory it says.
#ifndef TOVREL_REPORT_SHORTCUT_CHECK_H
#define TOVREL_REPORT_SHORTCUT_CHECK_H

#include <string>

#include "report/report_item.h"

ReportItem CheckShortcutLine(const std::string &line);

#endif
