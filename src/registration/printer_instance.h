// Making the printer, or bringing one of the same name up to date.
#ifndef TOVREL_REGISTRATION_PRINTER_INSTANCE_H
#define TOVREL_REGISTRATION_PRINTER_INSTANCE_H

// Where the spooler keeps a printer's settings, below HKEY_LOCAL_MACHINE;
// the printer's name follows.
extern const char *const PrintersKey;

// The printer-data value that marks a printer as installed by this library.
extern const char *const PrinterMarkValue;

#endif
