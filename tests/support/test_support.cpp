#include "test_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "entry/printer_inf.h"

namespace {

// Under WINEDEBUG=-all a program that dies leaves only what it had flushed:
// unbuffered, the log shows how far it got.
const int UnbufferedOutput = (std::setvbuf(stdout, NULL, _IONBF, 0), 0);

std::string UnixToWine(const char *unixPath)
{
    std::string path = std::string("Z:") + unixPath;
    for (char &c : path)
        if (c == '/')
            c = '\\';
    return path;
}

}  // namespace

void DeleteTree(const std::string &path)
{
    std::string base = path;
    if (!base.empty() && base.back() == '\\')
        base.pop_back();
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((base + "\\*").c_str(), &found);
    if (find != INVALID_HANDLE_VALUE) {
        do {
            std::string name = found.cFileName;
            if (name == "." || name == "..")
                continue;
            std::string child = base + "\\" + name;
            SetFileAttributesA(child.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                DeleteTree(child);
            else
                DeleteFileA(child.c_str());
        } while (FindNextFileA(find, &found));
        FindClose(find);
    }
    RemoveDirectoryA(base.c_str());
}

std::string ScratchDirectory()
{
    const ::testing::TestInfo *info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info ? std::string(info->test_suite_name()) + "." + info->name() : "global";
    for (char &c : name)
        if (c == '/')
            c = '_';
    CreateDirectoryA("C:\\tovrel-tests", NULL);
    std::string path = "C:\\tovrel-tests\\" + name;
    DeleteTree(path);
    CreateDirectoryA(path.c_str(), NULL);
    return path + "\\";
}

void WriteBytes(const std::string &path, const void *data, size_t size)
{
    HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL);
    ASSERT_NE(file, INVALID_HANDLE_VALUE) << path;
    DWORD written = 0;
    BOOL ok = size ? WriteFile(file, data, static_cast<DWORD>(size), &written, NULL) : TRUE;
    CloseHandle(file);
    ASSERT_TRUE(ok && written == size) << path;
}

void WriteText(const std::string &path, const std::string &text)
{
    WriteBytes(path, text.data(), text.size());
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

std::string FixturePath(const std::string &relative)
{
    std::string path = UnixToWine(TOVREL_SOURCE_DIR "/tests/fixtures/") + relative;
    for (char &c : path)
        if (c == '/')
            c = '\\';
    return path;
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
