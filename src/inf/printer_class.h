// What makes an INF a printer INF: the class that its [Version] section
// names, by name or by GUID. Plain text, so that every reader can ask.
#ifndef TOVREL_INF_PRINTER_CLASS_H
#define TOVREL_INF_PRINTER_CLASS_H

extern const char VersionSection[];
extern const char VersionClassKey[];
extern const char VersionClassGuidKey[];

// The printer device class, as "Class" and as "ClassGUID" name it.
extern const char PrinterClassName[];
extern const char PrinterClassGuid[];

// Case is ignored, as everywhere in an INF.
bool IsPrinterClassName(const char *name);
bool IsPrinterClassGuid(const char *guid);

#endif
