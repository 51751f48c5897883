// Captures what the process sends to OutputDebugStringA. Wine raises
// DBG_PRINTEXCEPTION_C for each call, with the length and the text as
// arguments; a vectored handler sees it before anyone else and lets it go
// on, so the caller notices nothing.
#ifndef TOVREL_TESTS_DEBUG_OUTPUT_H
#define TOVREL_TESTS_DEBUG_OUTPUT_H

#include <string>

class CDebugOutputCapture {
public:
    // Starts capturing. Captures may nest: each active one records every call.
    CDebugOutputCapture();
    ~CDebugOutputCapture();

    // Everything captured by this object so far, in order, as one text.
    std::string Text() const;
    void Clear();
    // False if the handler could not be installed.
    bool IsActive() const;

    void Record(const char *text, size_t length);

private:
    CDebugOutputCapture(const CDebugOutputCapture &);
    CDebugOutputCapture &operator=(const CDebugOutputCapture &);
    std::string Captured;
};

#endif
