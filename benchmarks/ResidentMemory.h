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

/** Forgets the highest that there was; false where that cannot be. */
inline bool forgetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    return file.open(QIODevice::WriteOnly) && file.write("5") == 1 && file.flush();
}

/** The highest since then; 0 where it cannot be read. */
inline double peakBytes()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    const QByteArray text = file.readAll();
    const int at = text.indexOf("VmHWM:");
    return at < 0
               ? 0.0
               : text.mid(at + 6, text.indexOf('\n', at) - at - 6).simplified().split(' ').value(0).toDouble() * 1024.0;
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
