#include "RefusingDisk.h"

#include <cerrno>
#include <string>

#include <chrono>
#include <thread>

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

std::atomic<int> RefusingDisk::s_error {0};

std::atomic<int> SlowDisk::s_delayMs {0};

namespace {

std::thread::id spared;

bool isDatabase(int file)
{
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t length = ::readlink(link.c_str(), path, sizeof path);
    const std::string name(path, length > 0 ? std::size_t(length) : 0);
    const auto endsWith = [&name](const std::string& end) {
        return name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
    };
    return endsWith("/project.db") || endsWith("/project.db-wal");
}

} // namespace

int RefusingDisk::errorFor(int file)
{
    return s_error != 0 && isDatabase(file) ? int(s_error) : 0;
}

SlowDisk::SlowDisk(int ms)
{
    spared = std::this_thread::get_id();
    s_delayMs = ms;
}

SlowDisk::~SlowDisk()
{
    s_delayMs = 0;
}

void SlowDisk::delay(int file)
{
    if (s_delayMs != 0 && std::this_thread::get_id() != spared && isDatabase(file))
        std::this_thread::sleep_for(std::chrono::milliseconds(s_delayMs.exchange(0)));
}

extern "C" ssize_t pwrite64(int file, const void* bytes, std::size_t count, off64_t offset)
{
    if (const int error = RefusingDisk::errorFor(file)) {
        errno = error;
        return -1;
    }
    SlowDisk::delay(file);
    return ssize_t(::syscall(SYS_pwrite64, file, bytes, count, offset));
}
