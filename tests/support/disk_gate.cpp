// SPDX-License-Identifier: MIT
// Preloaded into a program, it stands between it and a disk: reads of the files in the folder
// HALVANE_TEST_DISK wait while somebody holds a lock on HALVANE_TEST_DISK.lock, as on a drive that
// does not answer, and take HALVANE_TEST_DISK_MS milliseconds each, as on a slow one. Looking at a
// file's head, as for its tags, is let through.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <unistd.h>

namespace {

bool isOnTheDisk(int descriptor) {
    static const char* const folder = std::getenv("HALVANE_TEST_DISK");
    if (!folder)
        return false;
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const auto length = ::readlink(link.c_str(), path, sizeof path - 1);
    return length > 0 && std::strncmp(path, folder, std::strlen(folder)) == 0 &&
           path[std::strlen(folder)] == '/';
}

void wait() {
    static const char* const milliseconds = std::getenv("HALVANE_TEST_DISK_MS");
    if (milliseconds) {
        const long time = std::atol(milliseconds);
        const timespec pause{time / 1000, time % 1000 * 1'000'000};
        ::nanosleep(&pause, nullptr);
    }
    const std::string lock = std::string(std::getenv("HALVANE_TEST_DISK")) + ".lock";
    const int gate = ::open(lock.c_str(), O_RDONLY | O_CLOEXEC);
    if (gate < 0)
        return;
    while (::flock(gate, LOCK_SH) != 0 && errno == EINTR) {
    }
    ::close(gate);
}

} // namespace

extern "C" ssize_t read(int descriptor, void* to, std::size_t size) {
    static const auto next =
        reinterpret_cast<ssize_t (*)(int, void*, std::size_t)>(dlsym(RTLD_NEXT, "read"));
    constexpr std::size_t head = 4000; // bytes
    if (size > head && isOnTheDisk(descriptor))
        wait();
    return next(descriptor, to, size);
}
