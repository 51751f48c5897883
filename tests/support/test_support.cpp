#include "test_support.h"

#include <gtest/gtest.h>
#include <shellapi.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "entry/printer_inf.h"
#include "support/handles.h"

namespace {

// Under WINEDEBUG=-all a program that dies leaves only what it had flushed:
// unbuffered, the log shows how far it got.
const int UnbufferedOutput = (std::setvbuf(stdout, NULL, _IONBF, 0), 0);
const DWORD ProcessTimeout = 120000;
const DWORD BoxFillingTime = 200, BoxPollInterval = 50;

bool OpenKeyToRead(HKEY root, const std::string &key, CRegistryHandle &handle)
{
    return RegOpenKeyExA(root, key.c_str(), 0, KEY_READ, handle.Put()) == ERROR_SUCCESS;
}

}  // namespace

// The shell clears read-only attributes on the way; a missing path is no error here.
void DeleteTree(const std::string &path)
{
    const std::string from = path.substr(0, path.find_last_not_of('\\') + 1) + '\0';  // a list of one
    SHFILEOPSTRUCTA operation = {NULL, FO_DELETE, from.c_str(), NULL, FOF_NO_UI, FALSE, NULL, NULL};
    SHFileOperationA(&operation);
}

std::string ScratchDirectory()
{
    const ::testing::TestInfo *info = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = info ? std::string(info->test_suite_name()) + "." + info->name() : "global";
    const std::string path = "C:\\tovrel-tests\\" + name;
    CreateDirectoryA("C:\\tovrel-tests", NULL);
    DeleteTree(path);
    CreateDirectoryA(path.c_str(), NULL);
    return path + "\\";
}

void WriteText(const std::string &path, const std::string &bytes)
{
    std::ofstream out(path.c_str(), std::ios::binary | std::ios::trunc);
    ASSERT_TRUE((out << bytes).good()) << path;
}

std::string ReadText(const std::string &path)
{
    std::ostringstream content;
    content << std::ifstream(path.c_str(), std::ios::binary).rdbuf();
    return content.str();
}

std::string BinaryDirectory()
{
    char path[MAX_PATH] = {0};
    GetModuleFileNameA(NULL, path, MAX_PATH);
    return std::string(path, std::strrchr(path, '\\') + 1);
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
    CRegistryHandle handle;
    BYTE bytes[8192];
    DWORD size = sizeof bytes;
    if (OpenKeyToRead(root, key, handle) &&
        RegQueryValueExA(handle.Get(), name, NULL, &value.Type, bytes, &size) == ERROR_SUCCESS)
        value.Data.assign(bytes, bytes + size);
    return value;
}

std::vector<std::string> StoredValueNames(HKEY root, const std::string &key)
{
    std::vector<std::string> names;
    CRegistryHandle handle;
    char name[16384];
    if (!OpenKeyToRead(root, key, handle))
        return names;
    for (DWORD i = 0, length = sizeof name; RegEnumValueA(handle.Get(), i, name, &length, 0, 0, 0, 0) == ERROR_SUCCESS;
         ++i, length = sizeof name)
        names.push_back(std::string(name, length));
    return names;
}

bool KeyExists(HKEY root, const std::string &key)
{
    CRegistryHandle handle;
    return OpenKeyToRead(root, key, handle);
}

int RunProcess(const std::string &commandLine)
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string command = commandLine;
    if (!CreateProcessA(NULL, &command[0], NULL, NULL, FALSE, 0, NULL, NULL, &startup, &process))
        return -1;
    CKernelHandle owner(process.hProcess), thread(process.hThread);
    DWORD code = static_cast<DWORD>(-1);
    if (WaitForSingleObject(owner.Get(), ProcessTimeout) == WAIT_OBJECT_0)
        GetExitCodeProcess(owner.Get(), &code);
    return static_cast<int>(code);
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

std::future<CSeenBox> AnswerBoxLater(const std::string &caption, int command, DWORD timeout)
{
    return std::async(std::launch::async, [=] {
        CSeenBox box;
        HWND window = NULL;
        for (DWORD start = GetTickCount(); !(window = FindWindowA("#32770", caption.c_str())); Sleep(BoxPollInterval))
            if (GetTickCount() - start > timeout)
                return box;
        Sleep(BoxFillingTime);  // the box may still be filling its controls
        box.Found = true;
        EnumChildWindows(window, ReadChild, reinterpret_cast<LPARAM>(&box));
        PostMessageA(window, WM_COMMAND, MAKEWPARAM(command, BN_CLICKED), 0);
        return box;
    });
}
