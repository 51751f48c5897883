// What the benchmarks share: timing by the performance counter, the median
// of repeated rounds, and a file written whole.
#ifndef TOVREL_BENCH_BENCH_SUPPORT_H
#define TOVREL_BENCH_BENCH_SUPPORT_H

#include <functional>
#include <string>

double Milliseconds(const std::function<void()> &work);
// before runs ahead of each round, untimed.
double MedianOf(int repeats, const std::function<void()> &work,
                const std::function<void()> &before = std::function<void()>());
bool WriteFileText(const std::string &path, const std::string &text);

#endif
