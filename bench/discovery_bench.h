// INF discovery at a machine's scale, beside setupapi walking the same INFs.
#ifndef TOVREL_BENCH_DISCOVERY_BENCH_H
#define TOVREL_BENCH_DISCOVERY_BENCH_H

#include <string>

// Makes its folders under directory and prints its figures; 1 when a folder
// could not be made.
int Discovery(const std::string &directory, int repeats);

#endif
