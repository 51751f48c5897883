// The uninstall record: everything an install did, noted under one registry
// tree per model for an uninstaller to read later.
#ifndef TOVREL_FILES_UNINSTALL_DATA_H
#define TOVREL_FILES_UNINSTALL_DATA_H

// Root of the record below HKEY_LOCAL_MACHINE; the model's key goes under it.
extern const char UninstallRoot[];

// Subkeys of a model's key, by what they record.
extern const char UninstallFiles[];
extern const char UninstallUnregister[];
extern const char UninstallServices[];
extern const char UninstallRegistry[];
extern const char UninstallShortcuts[];

#endif
