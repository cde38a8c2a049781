// Processes forked to share a job that would race on state without locks if it ran on threads
// (carve's boolean operations count on a plain static). Each child gets a copy-on-write copy of
// the parent's memory, runs one function on the forking thread only (the parent's other
// threads do not exist in it) and leaves with _exit, so that none of the parent's exit handlers
// runs twice. What a child finds goes back through its pipe.
#pragma once

#include <atomic>
#include <functional>
#include <sys/types.h>
#include <vector>

namespace obsidra::host::ifc {

class WorkerProcesses {
public:
    WorkerProcesses() = default;
    WorkerProcesses(const WorkerProcesses&) = delete;
    WorkerProcesses& operator=(const WorkerProcesses&) = delete;
    // Kills the children still running and reaps them all.
    ~WorkerProcesses();

    // Forks up to count children, each running body with the writing end of its pipe and
    // exiting with what body returns. Returns how many started: fewer when fork fails.
    int Start(int count, const std::function<int(int writeEnd)>& body);
    // The reading end of each child's pipe, in the order they started.
    const std::vector<int>& ReadEnds() const { return m_readEnds; }
    // Ends the children at once (a cancelled job).
    void Kill();
    // Waits for every child to end; true when each exited with 0.
    bool Wait();

private:
    std::vector<pid_t> m_children;
    std::vector<int> m_readEnds;
};

// Numbers 0, 1, 2, ... handed out once each among the processes forked after it was made.
class SharedCounter {
public:
    SharedCounter();
    ~SharedCounter();
    SharedCounter(const SharedCounter&) = delete;
    SharedCounter& operator=(const SharedCounter&) = delete;

    // False when no shared memory could be had: the counter then counts for this process only.
    bool Shared() const { return m_shared; }
    int Next() { return m_value->fetch_add(1); }

private:
    std::atomic<int>* m_value;
    std::atomic<int> m_local{0};
    bool m_shared = false;
};

static_assert(std::atomic<int>::is_always_lock_free, "shared between processes without a lock");

} // namespace obsidra::host::ifc
