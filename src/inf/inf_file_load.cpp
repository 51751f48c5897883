#include <windows.h>

#include <new>

#include "inf/inf_file.h"
#include "support/handles.h"

int CInfFile::Load(const char *path)
{
    if (!Sections.empty())
        return 0;
    FilePath = CBoundedString();
    FilePath.Append(path);
    OnLoad(1);

    int result = 0;
    {
        // No sharing: nobody may change the file while it is read in one piece.
        CFileHandle file(CreateFileA(path, GENERIC_READ, 0, NULL, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, NULL));
        if (!file.IsValid())
            return OnLoad(0), 0;
        DWORD size = GetFileSize(file.Get(), NULL);
        if (size != 0 && size != INVALID_FILE_SIZE && size <= 0x7FFFFFF0u) {
            char *buffer = new (std::nothrow) char[size + 3];
            if (buffer) {
                DWORD read = 0;
                BOOL ok = ReadFile(file.Get(), buffer, size, &read, NULL);
                file.Reset();
                if (ok && read) {
                    buffer[read] = '\r';
                    buffer[read + 1] = '\n';
                    buffer[read + 2] = 0;
                    Parse(buffer);
                    result = 1;
                }
                delete[] buffer;
            }
        }
    }
    OnLoad(0);
    return result;
}
