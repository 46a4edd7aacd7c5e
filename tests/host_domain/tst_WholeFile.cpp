#include "host/domain/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

#include <sys/resource.h>

using namespace Torvik::Database;

namespace {

/** While one lives, no file grows beyond so many bytes, as if the disk were full. */
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small {bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before {};
};

} // namespace

class tst_WholeFile : public QObject {
    Q_OBJECT

private slots:
    void aFileIsWrittenAndReplaced();
    void withoutRoomTheOldFileStays_data();
    void withoutRoomTheOldFileStays();
    void aFullDeviceIsToldAndStaysADevice();
    void whereNoFileCanBeIsTold();

private:
    QString path() const { return m_folder.filePath("file"); }
    QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
};

void tst_WholeFile::aFileIsWrittenAndReplaced()
{
    QCOMPARE(WholeFile::write(path(), "first and long"), QString());
    QCOMPARE(WholeFile::write(path(), "second"), QString());

    QCOMPARE(content(), QByteArray("second"));
}

void tst_WholeFile::withoutRoomTheOldFileStays_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("in the buffer") << 3000;
    QTest::newRow("more than the buffer") << 100000;
}

void tst_WholeFile::withoutRoomTheOldFileStays()
{
    QFETCH(const int, size);
    QCOMPARE(WholeFile::write(path(), "old"), QString());
    QString error;

    {
        const SmallFiles limit(1000);
        error = WholeFile::write(path(), QByteArray(size, 'x'));
    }

    QVERIFY2(error.startsWith(path() + ": "), qPrintable(error));
    QCOMPARE(content(), QByteArray("old"));
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files), QStringList("file"));
}

void tst_WholeFile::aFullDeviceIsToldAndStaysADevice()
{
    const QString device = QStringLiteral("/dev/full");
    if (!QFileInfo::exists(device))
        QSKIP("there is no device that is always full");

    const QString error = WholeFile::write(device, "a little");

    QVERIFY2(error.startsWith("/dev/full: "), qPrintable(error));
    QVERIFY(QFileInfo::exists(device) && !QFileInfo(device).isFile());
}

void tst_WholeFile::whereNoFileCanBeIsTold()
{
    QVERIFY(WholeFile::write(m_folder.filePath("none/file"), "x").contains("none/file"));
    QVERIFY(WholeFile::write(m_folder.path(), "x").startsWith(m_folder.path()));
}

QTEST_GUILESS_MAIN(tst_WholeFile)
#include "tst_WholeFile.moc"
