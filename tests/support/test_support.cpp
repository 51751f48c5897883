#include "test_support.h"

#include <gtest/gtest.h>
#include <shlwapi.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "entry/printer_inf.h"

#ifndef DBG_PRINTEXCEPTION_C
#define DBG_PRINTEXCEPTION_C 0x40010006
#endif

namespace {

// Under WINEDEBUG=-all a program that dies leaves only what it had flushed:
// unbuffered, the log shows how far it got.
const int UnbufferedOutput = (std::setvbuf(stdout, NULL, _IONBF, 0), 0);

CDebugOutputCapture *ActiveCapture;

}  // namespace

void DeleteTree(const std::string &path)
{
    std::string base = path.back() == '\\' ? path.substr(0, path.size() - 1) : path;
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((base + "\\*").c_str(), &found);
    for (BOOL more = find != INVALID_HANDLE_VALUE; more; more = FindNextFileA(find, &found)) {
        std::string name = found.cFileName, child = base + "\\" + name;
        if (name == "." || name == "..")
            continue;
        SetFileAttributesA(child.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            DeleteTree(child);
        else
            DeleteFileA(child.c_str());
    }
    if (find != INVALID_HANDLE_VALUE)
        FindClose(find);
    RemoveDirectoryA(base.c_str());
}

std::string ScratchDirectory()
{
    const ::testing::TestInfo *info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info ? std::string(info->test_suite_name()) + "." + info->name() : "global";
    CreateDirectoryA("C:\\tovrel-tests", NULL);
    std::string path = "C:\\tovrel-tests\\" + name;
    DeleteTree(path);
    CreateDirectoryA(path.c_str(), NULL);
    return path + "\\";
}

void WriteText(const std::string &path, const std::string &bytes)
{
    std::ofstream out(path.c_str(), std::ios::binary | std::ios::trunc);
    out << bytes;
    ASSERT_TRUE(out.good()) << path;
}

std::string ReadText(const std::string &path)
{
    std::ifstream in(path.c_str(), std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

bool PathExists(const std::string &path)
{
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string BinaryDirectory()
{
    char path[MAX_PATH] = {0};
    GetModuleFileNameA(NULL, path, MAX_PATH);
    std::string directory = path;
    return directory.substr(0, directory.find_last_of('\\') + 1);
}

void LoadModelInf(CPrinterInf &printer, const std::string &path, const std::string &sections)
{
    WriteText(path, "[Version]\r\nClass=Printer\r\n" + sections);
    EXPECT_TRUE(printer.Load(path.c_str()));
    printer.Model = CBoundedString("Acme Laser");
}

CStoredValue ReadStoredValue(HKEY root, const std::string &key, const char *name)
{
    CStoredValue value;
    HKEY handle;
    char bytes[8192];
    DWORD size = sizeof bytes;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return value;
    if (RegQueryValueExA(handle, name, NULL, &value.Type, reinterpret_cast<BYTE *>(bytes), &size) == ERROR_SUCCESS)
        value = {true, value.Type, std::string(bytes, size)};
    RegCloseKey(handle);
    return value;
}

std::vector<std::string> StoredValueNames(HKEY root, const std::string &key)
{
    std::vector<std::string> names;
    HKEY handle;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return names;
    char name[16384];
    for (DWORD i = 0, length = sizeof name; RegEnumValueA(handle, i, name, &length, 0, 0, 0, 0) == ERROR_SUCCESS;
         ++i, length = sizeof name)
        names.push_back(std::string(name, length));
    RegCloseKey(handle);
    return names;
}

bool KeyExists(HKEY root, const std::string &key)
{
    HKEY handle;
    if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS)
        return false;
    RegCloseKey(handle);
    return true;
}

void DeleteKeyTree(HKEY root, const std::string &key)
{
    SHDeleteKeyA(root, key.c_str());
}

int RunProcess(const std::string &commandLine)
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string command = commandLine;
    if (!CreateProcessA(NULL, &command[0], NULL, NULL, FALSE, 0, NULL, NULL, &startup, &process))
        return -1;
    DWORD code = static_cast<DWORD>(-1);
    if (WaitForSingleObject(process.hProcess, 120000) == WAIT_OBJECT_0)
        GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(code);
}

// Wine raises DBG_PRINTEXCEPTION_C for each OutputDebugStringA, with the
// length (NUL counted) and the text; a vectored handler sees it first and
// lets it go on, so the caller notices nothing.
LONG CALLBACK CDebugOutputCapture::OnException(EXCEPTION_POINTERS *pointers)
{
    const EXCEPTION_RECORD *record = pointers->ExceptionRecord;
    if (record->ExceptionCode == DBG_PRINTEXCEPTION_C && record->NumberParameters >= 2 && ActiveCapture) {
        const char *text = reinterpret_cast<const char *>(record->ExceptionInformation[1]);
        size_t length = static_cast<size_t>(record->ExceptionInformation[0]);
        if (text)
            ActiveCapture->Captured.append(text, strnlen(text, length));
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

CDebugOutputCapture::CDebugOutputCapture() : Handler(AddVectoredExceptionHandler(1, OnException))
{
    EXPECT_NE(nullptr, Handler);
    ActiveCapture = this;
}

CDebugOutputCapture::~CDebugOutputCapture()
{
    ActiveCapture = nullptr;
    RemoveVectoredExceptionHandler(Handler);
}

static BOOL CALLBACK ReadChild(HWND child, LPARAM param)
{
    CSeenBox *box = reinterpret_cast<CSeenBox *>(param);
    char name[64] = {0}, text[2048] = {0};
    GetClassNameA(child, name, sizeof name);
    GetWindowTextA(child, text, sizeof text);
    if (lstrcmpiA(name, "Button") == 0)
        box->Buttons.push_back(text);
    else if (lstrcmpiA(name, "Static") == 0 && text[0])
        box->Text = text;
    return TRUE;
}

static CSeenBox AnswerBox(const std::string &caption, int command, DWORD timeout)
{
    CSeenBox box;
    HWND window = NULL;
    for (DWORD start = GetTickCount(); !(window = FindWindowA("#32770", caption.c_str())); Sleep(50))
        if (GetTickCount() - start > timeout)
            return box;
    Sleep(200);  // the box may still be filling its controls
    box.Found = true;
    EnumChildWindows(window, ReadChild, reinterpret_cast<LPARAM>(&box));
    PostMessageA(window, WM_COMMAND, MAKEWPARAM(command, BN_CLICKED), 0);
    return box;
}

std::future<CSeenBox> AnswerBoxLater(const std::string &caption, int command, DWORD timeout)
{
    return std::async(std::launch::async, [=] { return AnswerBox(caption, command, timeout); });
}
