// Self-registration of the libraries that the model names: each is loaded
// into this process and its DllRegisterServer called.
#ifndef TOVREL_REGISTRATION_SELF_REGISTRATION_H
#define TOVREL_REGISTRATION_SELF_REGISTRATION_H

// The export every self-registering library offers.
extern const char SelfRegisterExport[];

// An element of the list that names an executable is never loaded.
bool IsExecutableExtension(const char *extension);

#endif
