// Owners for COM: an interface pointer that is released, and a thread's
// membership of a single-threaded apartment that is ended, when the owner
// goes, also when the object that holds it fails half-way through its
// constructor.
#ifndef TOVREL_SUPPORT_COM_H
#define TOVREL_SUPPORT_COM_H

#include <windows.h>
#include <objbase.h>

template <typename Interface>
class CComPointer {
public:
    CComPointer() : Pointer(NULL) {}
    ~CComPointer() { Reset(); }

    Interface *Get() const { return Pointer; }
    Interface *operator->() const { return Pointer; }
    bool IsValid() const { return Pointer != NULL; }
    void Reset()
    {
        if (Pointer)
            Pointer->Release();
        Pointer = NULL;
    }
    // Gives the pointer up unreleased, as after a call that failed and may
    // have left anything in it.
    Interface *Detach()
    {
        Interface *pointer = Pointer;
        Pointer = NULL;
        return pointer;
    }
    // For the calls that fill an interface pointer of this type.
    Interface **Put()
    {
        Reset();
        return &Pointer;
    }
    // For the calls that fill one through a void ** and an interface id.
    void **PutVoid() { return reinterpret_cast<void **>(Put()); }

private:
    CComPointer(const CComPointer &);
    CComPointer &operator=(const CComPointer &);
    Interface *Pointer;
};

class CComApartment {
public:
    CComApartment() : Joined(false) {}
    ~CComApartment()
    {
        if (Joined)
            CoUninitialize();
    }

    // CoInitialize, once. S_FALSE says that COM already ran on this thread;
    // it counts as joined and still wants its CoUninitialize.
    HRESULT Join()
    {
        if (Joined)
            return S_OK;
        HRESULT result = CoInitialize(NULL);
        Joined = SUCCEEDED(result);
        return result;
    }
    bool IsJoined() const { return Joined; }

private:
    CComApartment(const CComApartment &);
    CComApartment &operator=(const CComApartment &);
    bool Joined;
};

#endif
