#include "host/ifc/ifc_worker_processes.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace obsidra::host::ifc {

WorkerProcesses::~WorkerProcesses() {
    Kill();
    Wait();
}

int WorkerProcesses::Start(int count, const std::function<int(int writeEnd)>& body) {
    const pid_t parent = getpid();
    for (int i = 0; i < count; ++i) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) break;
        const pid_t child = fork();
        if (child < 0) {
            close(ends[0]);
            close(ends[1]);
            break;
        }
        if (child == 0) {
            // A child whose parent dies (the thread that forked it ends) goes too.
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (getppid() != parent) _exit(1);
            close(ends[0]);
            for (int other : m_readEnds)
                close(other);
            int status = 1;
            try {
                status = body(ends[1]);
            } catch (...) {}
            _exit(status);
        }
        close(ends[1]);
        m_children.push_back(child);
        m_readEnds.push_back(ends[0]);
    }
    return static_cast<int>(m_children.size());
}

void WorkerProcesses::Kill() {
    for (pid_t child : m_children)
        kill(child, SIGKILL);
}

bool WorkerProcesses::Wait() {
    bool clean = true;
    for (pid_t child : m_children) {
        int status = 0;
        while (waitpid(child, &status, 0) < 0 && errno == EINTR) {}
        clean = clean && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    m_children.clear();
    for (int end : m_readEnds)
        close(end);
    m_readEnds.clear();
    return clean;
}

SharedCounter::SharedCounter() {
    void* memory = mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    m_shared = memory != MAP_FAILED;
    m_value = m_shared ? new (memory) std::atomic<int>(0) : &m_local;
}

SharedCounter::~SharedCounter() {
    if (m_shared) munmap(m_value, sizeof(std::atomic<int>));
}

} // namespace obsidra::host::ifc
