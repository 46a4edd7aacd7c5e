#pragma once

#include <QFile>
#include <QTemporaryDir>

namespace Kx::Test {

/** A pdftoppm that does what the script says, before the real one on the PATH. */
class FakeConverter {
public:
    explicit FakeConverter(const QByteArray& script)
        : m_before(qgetenv("PATH"))
    {
        QFile file(m_folder.filePath(QStringLiteral("pdftoppm")));
        if (file.open(QIODevice::WriteOnly))
            file.write("#!/bin/sh\n" + script + "\n");
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(m_folder.path()) + ':' + m_before);
    }
    ~FakeConverter() { qputenv("PATH", m_before); }

private:
    QTemporaryDir m_folder;
    QByteArray m_before;
};

} // namespace Kx::Test
