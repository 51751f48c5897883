#include "debug_output.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#ifndef DBG_PRINTEXCEPTION_C
#define DBG_PRINTEXCEPTION_C 0x40010006
#endif

namespace {

CRITICAL_SECTION *Guard()
{
    static CRITICAL_SECTION section;
    static bool ready = (InitializeCriticalSection(&section), true);
    (void)ready;
    return &section;
}

std::vector<CDebugOutputCapture *> Active;
void *Handler;

LONG CALLBACK OnException(EXCEPTION_POINTERS *pointers)
{
    const EXCEPTION_RECORD *record = pointers->ExceptionRecord;
    if (record->ExceptionCode == DBG_PRINTEXCEPTION_C && record->NumberParameters >= 2) {
        size_t length = static_cast<size_t>(record->ExceptionInformation[0]);
        const char *text = reinterpret_cast<const char *>(record->ExceptionInformation[1]);
        if (text) {
            // The length counts the terminating NUL.
            size_t n = 0;
            while (n < length && text[n])
                ++n;
            EnterCriticalSection(Guard());
            for (CDebugOutputCapture *capture : Active)
                capture->Record(text, n);
            LeaveCriticalSection(Guard());
        }
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

CDebugOutputCapture::CDebugOutputCapture()
{
    EnterCriticalSection(Guard());
    if (!Handler)
        Handler = AddVectoredExceptionHandler(1, OnException);
    Active.push_back(this);
    LeaveCriticalSection(Guard());
}

CDebugOutputCapture::~CDebugOutputCapture()
{
    EnterCriticalSection(Guard());
    Active.erase(std::remove(Active.begin(), Active.end(), this), Active.end());
    if (Active.empty() && Handler) {
        RemoveVectoredExceptionHandler(Handler);
        Handler = nullptr;
    }
    LeaveCriticalSection(Guard());
}

bool CDebugOutputCapture::IsActive() const
{
    return Handler != nullptr;
}

void CDebugOutputCapture::Record(const char *text, size_t length)
{
    Captured.append(text, length);
}

std::string CDebugOutputCapture::Text() const
{
    EnterCriticalSection(Guard());
    std::string text = Captured;
    LeaveCriticalSection(Guard());
    return text;
}

void CDebugOutputCapture::Clear()
{
    EnterCriticalSection(Guard());
    Captured.clear();
    LeaveCriticalSection(Guard());
}
