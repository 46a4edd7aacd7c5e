#pragma once

#include "common/SharedData.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QPair>
#include <QString>
#include <QTemporaryDir>

namespace Kx::Test {

/** Small drawings as text. */
namespace Dxf {

inline QByteArray pair(int code, const QByteArray& value)
{
    return QByteArray::number(code) + '\n' + value + '\n';
}
inline QByteArray at(int code, double x, double y, double z = 0.0)
{
    return pair(code, QByteArray::number(x, 'g', 17)) + pair(code + 10, QByteArray::number(y, 'g', 17)) +
           pair(code + 20, QByteArray::number(z, 'g', 17));
}
/** `more`: what only this kind of entity has. A handle of 0 leaves it without one. */
inline QByteArray entity(const QByteArray& kind, int handle, const QByteArray& more, const QByteArray& layer = "0")
{
    return pair(0, kind) + (handle > 0 ? pair(5, QByteArray::number(handle, 16)) : QByteArray()) + pair(8, layer) +
           more;
}
inline QByteArray line(int handle, double x0, double y0, double x1, double y1, const QByteArray& layer = "0")
{
    return entity("LINE", handle, at(10, x0, y0) + at(11, x1, y1), layer);
}
inline QByteArray layer(const QByteArray& name, int colour, int flags = 0)
{
    return pair(0, "LAYER") + pair(2, name) + pair(70, QByteArray::number(flags)) +
           pair(62, QByteArray::number(colour)) + pair(6, "CONTINUOUS");
}
inline QByteArray section(const QByteArray& name, const QByteArray& contents)
{
    return pair(0, "SECTION") + pair(2, name) + contents + pair(0, "ENDSEC");
}
inline QByteArray block(const QByteArray& name, const QByteArray& contents)
{
    return pair(0, "BLOCK") + pair(8, "0") + pair(2, name) + pair(70, "0") + at(10, 0, 0) + contents +
           pair(0, "ENDBLK");
}
inline QByteArray insert(int handle, const QByteArray& name, double x, double y, const QByteArray& more = {})
{
    return entity("INSERT", handle, pair(2, name) + at(10, x, y) + more);
}
/** Everything up to the entities. */
inline QByteArray head(const QByteArray& layers = {}, const QByteArray& blocks = {},
                       const QByteArray& version = "AC1015", const QByteArray& header = {})
{
    return section("HEADER", pair(9, "$ACADVER") + pair(1, version) + header) +
           section("TABLES",
                   pair(0, "TABLE") + pair(2, "LAYER") + pair(70, "9") + layer("0", 7) + layers + pair(0, "ENDTAB")) +
           section("BLOCKS", blocks);
}
inline QByteArray drawing(const QByteArray& entities, const QByteArray& layers = {}, const QByteArray& blocks = {})
{
    return head(layers, blocks) + section("ENTITIES", entities) + pair(0, "EOF");
}

} // namespace Dxf

inline QString written(const QTemporaryDir& folder, const QString& name, const QByteArray& contents)
{
    const QString path = folder.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

} // namespace Kx::Test
