// CPU time of the benchmark process: its threads and the children it has reaped (the IFC
// importer's meshing workers), and of the calling thread alone.
#pragma once

#include <ctime>
#include <sys/resource.h>

inline double CpuSecondsOf(const rusage& usage) {
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
}

inline double ChildrenCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return CpuSecondsOf(usage);
}

inline double ProcessCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return CpuSecondsOf(usage) + ChildrenCpuSeconds();
}

inline double ThreadCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}
