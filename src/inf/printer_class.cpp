#include "inf/printer_class.h"

#include "inf/bounded_string.h"

const char VersionSection[] = "Version";
const char VersionClassKey[] = "Class";
const char VersionClassGuidKey[] = "ClassGUID";
const char PrinterClassName[] = "Printer";
const char PrinterClassGuid[] = "{4D36E979-E325-11CE-BFC1-08002BE10318}";

bool IsPrinterClassName(const char *name) { return CompareNoCase(name, PrinterClassName) == 0; }

bool IsPrinterClassGuid(const char *guid) { return CompareNoCase(guid, PrinterClassGuid) == 0; }
