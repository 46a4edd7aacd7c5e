#pragma once

#include "common/TestProject.h"

#include <QFile>

namespace Kx::Test {

/** The file of a project's label positions, seen from outside. */
class LabelFile {
public:
    explicit LabelFile(const TestProject& project)
        : LabelFile(project.path() + "/labelPosition.json")
    {
    }
    explicit LabelFile(const QString& file)
        : path(file)
    {
    }

    bool exists() const { return QFile::exists(path); }
    QByteArray read() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QByteArray& content) const
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    const QString path;
};

} // namespace Kx::Test
