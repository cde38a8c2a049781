// CPU time of the benchmark process: its threads and the children it has reaped (the IFC
// importer's meshing workers).
#pragma once

#include <sys/resource.h>

inline double ProcessCpuSeconds() {
    double seconds = 0;
    for (int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        seconds += double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                   double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
    }
    return seconds;
}
