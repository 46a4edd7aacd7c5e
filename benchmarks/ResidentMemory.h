#pragma once

#include <QFile>

#include <unistd.h>

/** What of the process's memory lies in the machine's, as the kernel counts it; 0 where it cannot be read. */
namespace ResidentMemory {

inline double bytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
}

inline double kilobytes()
{
    return bytes() / 1024.0;
}

inline double megabytes()
{
    return bytes() / (1024.0 * 1024.0);
}

} // namespace ResidentMemory
