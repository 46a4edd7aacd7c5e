#pragma once

#include <QByteArray>

#include <random>

namespace Kx::Test {

/** The same bytes with up to four changes: some cut out, some said twice, single ones replaced. */
inline QByteArray damaged(QByteArray bytes, std::mt19937& chance)
{
    for (int change = int(chance() % 4); change >= 0 && !bytes.isEmpty(); --change) {
        const int at = int(chance() % unsigned(bytes.size()));
        if (chance() % 3 == 0)
            bytes.remove(at, int(chance() % 20));
        else if (chance() % 2 == 0)
            bytes.insert(at, bytes.mid(int(chance() % unsigned(bytes.size())), int(chance() % 60)));
        else
            bytes[at] = char(chance() % 256);
    }
    return bytes;
}

} // namespace Kx::Test
