// Owners of Win32 handles: each closes what it holds when it goes away.
#ifndef TOVREL_SUPPORT_HANDLES_H
#define TOVREL_SUPPORT_HANDLES_H

#include <windows.h>
#include <winspool.h>

template <typename Traits>
class CUniqueHandle {
public:
    typedef typename Traits::Type Type;

    CUniqueHandle() : Value(Traits::Invalid()) {}
    explicit CUniqueHandle(Type value) : Value(value) {}
    ~CUniqueHandle() { Reset(); }

    CUniqueHandle(CUniqueHandle &&other) : Value(other.Release()) {}
    CUniqueHandle &operator=(CUniqueHandle &&other)
    {
        if (this != &other)
            Reset(other.Release());
        return *this;
    }

    Type Get() const { return Value; }
    bool IsValid() const { return Value != Traits::Invalid(); }
    Type Release()
    {
        Type value = Value;
        Value = Traits::Invalid();
        return value;
    }
    void Reset(Type value = Traits::Invalid())
    {
        if (IsValid())
            Traits::Close(Value);
        Value = value;
    }
    // For calls that fill a handle through a pointer.
    Type *Put()
    {
        Reset();
        return &Value;
    }

private:
    CUniqueHandle(const CUniqueHandle &);
    CUniqueHandle &operator=(const CUniqueHandle &);
    Type Value;
};

struct CFileHandleTraits {
    typedef HANDLE Type;
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Type value) { CloseHandle(value); }
};

// Kernel objects that give NULL, not INVALID_HANDLE_VALUE, for none: tokens.
struct CKernelHandleTraits {
    typedef HANDLE Type;
    static Type Invalid() { return NULL; }
    static void Close(Type value) { CloseHandle(value); }
};

struct CServiceHandleTraits {
    typedef SC_HANDLE Type;
    static Type Invalid() { return NULL; }
    static void Close(Type value) { CloseServiceHandle(value); }
};

struct CFindHandleTraits {
    typedef HANDLE Type;
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Type value) { FindClose(value); }
};

struct CLibraryTraits {
    typedef HMODULE Type;
    static Type Invalid() { return NULL; }
    static void Close(Type value) { FreeLibrary(value); }
};

struct CRegistryKeyTraits {
    typedef HKEY Type;
    static Type Invalid() { return NULL; }
    static void Close(Type value) { RegCloseKey(value); }
};

struct CPrinterHandleTraits {
    typedef HANDLE Type;
    static Type Invalid() { return NULL; }
    static void Close(Type value) { ClosePrinter(value); }
};

typedef CUniqueHandle<CFileHandleTraits> CFileHandle;
typedef CUniqueHandle<CKernelHandleTraits> CKernelHandle;
typedef CUniqueHandle<CServiceHandleTraits> CServiceHandle;
typedef CUniqueHandle<CFindHandleTraits> CFindHandle;
typedef CUniqueHandle<CLibraryTraits> CLibrary;
typedef CUniqueHandle<CRegistryKeyTraits> CRegistryHandle;
typedef CUniqueHandle<CPrinterHandleTraits> CPrinterHandle;

#endif
