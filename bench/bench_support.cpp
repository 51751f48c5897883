#include <windows.h>

#include <algorithm>
#include <vector>

#include "bench_support.h"
#include "support/handles.h"

double Milliseconds(const std::function<void()> &work)
{
    LARGE_INTEGER frequency, start, end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    work();
    QueryPerformanceCounter(&end);
    return double(end.QuadPart - start.QuadPart) * 1000.0 / double(frequency.QuadPart);
}

double MedianOf(int repeats, const std::function<void()> &work, const std::function<void()> &before)
{
    std::vector<double> times;
    for (int i = 0; i < repeats; ++i) {
        if (before)
            before();
        times.push_back(Milliseconds(work));
    }
    std::sort(times.begin(), times.end());
    size_t middle = times.size() / 2;
    return times.size() % 2 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
}

bool WriteFileText(const std::string &path, const std::string &text)
{
    CFileHandle file(CreateFileA(path.c_str(), GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL));
    DWORD written = 0;
    return file.IsValid() && WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, NULL) &&
           written == text.size();
}
