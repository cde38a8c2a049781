#include "hc/atomic_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace hc {

namespace {

std::optional<size_t> g_failAfter;

// Writes all of text, or fails with errno set; the seam cuts it short with a full disk.
bool WriteAll(int fd, std::string_view text) {
    size_t limit = g_failAfter ? std::min(*g_failAfter, text.size()) : text.size();
    for (size_t done = 0; done < limit;) {
        ssize_t written = ::write(fd, text.data() + done, limit - done);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += static_cast<size_t>(written);
    }
    if (limit < text.size()) {
        errno = ENOSPC;
        return false;
    }
    return true;
}

} // namespace

void FailFileWritesAfter(std::optional<size_t> bytes) {
    g_failAfter = bytes;
}

bool WriteFileAtomically(const std::string& file, std::string_view text, std::string& error) {
    auto fail = [&](int code) {
        error = "cannot write \"" + file + "\": " + std::strerror(code);
        return false;
    };
    const std::filesystem::path target(file);
    if (target.filename().empty()) return fail(EISDIR);
    // A dot file beside the target: on the same file system, so the rename is atomic, and
    // hidden from listings while it is being written.
    const std::string base =
        (target.parent_path() / ("." + target.filename().string() + ".tmp-")).string() +
        std::to_string(::getpid()) + "-";
    std::string temporary;
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 100; ++attempt) {
        temporary = base + std::to_string(attempt);
        fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST) return fail(errno);
    }
    if (fd < 0) return fail(EEXIST);
    // A file written again keeps its permissions.
    struct stat existing;
    if (::stat(file.c_str(), &existing) == 0) {
        if (S_ISDIR(existing.st_mode)) {
            ::close(fd);
            ::unlink(temporary.c_str());
            return fail(EISDIR);
        }
        ::fchmod(fd, existing.st_mode & 07777);
    }
    int code = 0;
    if (!WriteAll(fd, text) || ::fsync(fd) != 0) code = errno;
    if (::close(fd) != 0 && code == 0) code = errno;
    if (code == 0 && ::rename(temporary.c_str(), file.c_str()) != 0) code = errno;
    if (code == 0) return true;
    ::unlink(temporary.c_str());
    return fail(code);
}

} // namespace hc
