// The system's own words for an error code or a failing HRESULT.
#ifndef TOVREL_UNINSTALL_WINDOWS_ERROR_H
#define TOVREL_UNINSTALL_WINDOWS_ERROR_H

#include <windows.h>

#include <string>

// "error 5: Access denied." or, where the system has no text, "error 5".
std::string ErrorText(DWORD error);
std::string ResultText(HRESULT result);
// ErrorText of GetLastError(), read before anything else can change it.
std::string LastErrorText();

#endif
