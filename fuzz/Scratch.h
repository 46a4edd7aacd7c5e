#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

/** Files of a fuzz target, in memory and one set a process. */
namespace Kx::Fuzz {

inline QString scratchName(const char* target)
{
    return QStringLiteral("/dev/shm/kx-fuzz-%1-%2").arg(QLatin1String(target)).arg(getpid());
}

inline void write(const QString& path, const unsigned char* data, std::size_t size)
{
    std::FILE* const file = std::fopen(qPrintable(path), "wb");
    if (!file)
        std::abort();
    const std::size_t written = size > 0 ? std::fwrite(data, 1, size, file) : 0;
    std::fclose(file);
    if (written != size)
        std::abort();
}

/** What must hold whatever the input is; a fuzzer takes a broken promise for a crash. */
inline void promise(bool kept)
{
    if (!kept)
        std::abort();
}

} // namespace Kx::Fuzz
