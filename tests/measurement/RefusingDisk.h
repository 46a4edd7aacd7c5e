#pragma once

#include <atomic>
#include <cerrno>

/** While one lives, writes to a project's database fail with an error of the system, by default that of a full disk.
 *  RefusingDisk.cpp puts itself between SQLite and the system, so the program has to export its symbols. */
class RefusingDisk {
public:
    explicit RefusingDisk(int error = ENOSPC) { s_error = error; }
    ~RefusingDisk() { s_error = 0; }
    RefusingDisk(const RefusingDisk&) = delete;
    RefusingDisk& operator=(const RefusingDisk&) = delete;

    /** The error of a write to that file, or 0. */
    static int errorFor(int file);

private:
    static std::atomic<int> s_error;
};

/** While one lives, the next write to a project's database on another thread than this takes so long. */
class SlowDisk {
public:
    explicit SlowDisk(int ms);
    ~SlowDisk();
    SlowDisk(const SlowDisk&) = delete;
    SlowDisk& operator=(const SlowDisk&) = delete;

    static void delay(int file);

private:
    static std::atomic<int> s_delayMs;
};
