#include "plans/GifExtent.h"
#include "plans/PictureReader.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>
#include <unistd.h>

using namespace Torvik::View3d;
using PictureReader::Outcome;

namespace {

/** A GIF with one frame of one pixel's bytes, whatever sizes it tells. */
QByteArray gif(int screenWidth, int screenHeight, int frameWidth, int frameHeight, const QByteArray& before = {})
{
    const auto word = [](int value) { return QByteArray(1, char(value & 255)) + char(value >> 8); };
    return "GIF89a" + word(screenWidth) + word(screenHeight) + QByteArray("\x80\0\0", 3) +
           QByteArray("\xff\0\0\0\0\xff", 6) + before + ',' + word(3) + word(4) + word(frameWidth) + word(frameHeight) +
           QByteArray("\0\2\2D\1\0;", 7);
}

QByteArray bitmap(int width, int height)
{
    QByteArray bytes("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0", 18);
    for (const int value : {width, height}) {
        for (int i = 0; i < 4; ++i)
            bytes += char(unsigned(value) >> (8 * i));
    }
    return bytes + QByteArray("\1\0\x18\0", 4) + QByteArray(24 + 12, '\0');
}

/** No more than so much memory on top while it lives. A sanitizer needs all of the addresses for itself. */
class LittleMemory {
public:
    explicit LittleMemory(rlim_t more)
    {
        QFile file(QStringLiteral("/proc/self/statm"));
        if (!file.open(QIODevice::ReadOnly) || getrlimit(RLIMIT_AS, &m_before) != 0)
            qFatal("the memory cannot be told");
        [[maybe_unused]] rlimit now = m_before;
        now.rlim_cur = rlim_t(file.readAll().split(' ').value(0).toLongLong() * sysconf(_SC_PAGESIZE)) + more;
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
        setrlimit(RLIMIT_AS, &now);
#endif
    }
    ~LittleMemory()
    {
        setrlimit(RLIMIT_AS, &m_before);
    }

private:
    rlimit m_before {};
};

} // namespace

/** Pictures that the fuzzer came upon: some dozen bytes that made a decoder take hundreds of megabytes. */
class tst_FoundPictures : public QObject {
    Q_OBJECT

private slots:
    void aGifTellsWhatItTakes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QSize>("extent");
        QTest::newRow("its own size") << gif(20, 10, 5, 5) << QSize(20, 10);
        QTest::newRow("no size: that of the frame where it lies") << gif(0, 0, 5, 6) << QSize(8, 10);
        QTest::newRow("half a size") << gif(20, 0, 5, 6) << QSize(20, 10);
        QTest::newRow("behind extensions")
            << gif(0, 0, 5, 6, QByteArray("!\xf9\4\0\0\0\0\0!\xfe\2ab\1c\0", 16)) << QSize(8, 10);
        QTest::newRow("behind what is no block") << gif(0, 0, 5, 6, "abc") << QSize(8, 10);
        QTest::newRow("cut in an extension") << gif(0, 0, 5, 6, QByteArray("!\xf9\xff", 3)).left(22) << QSize();
        QTest::newRow("cut in the frame") << gif(0, 0, 5, 6).left(28) << QSize();
        QTest::newRow("cut in the header") << gif(0, 0, 5, 6).left(12) << QSize();
        QTest::newRow("nothing") << QByteArray() << QSize();
        QTest::newRow("something else") << QByteArray(100, '\0') << QSize();
    }

    void aGifTellsWhatItTakes()
    {
        QFETCH(QByteArray, bytes);
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadOnly));

        QTEST(gifExtent(buffer), "extent");

        QCOMPARE(buffer.pos(), 0);
    }

    void whatWouldTakeTooMuchIsRefusedBefore_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<QSize>("size");
        QTest::newRow("gif without a size, with a large frame")
            << "a.gif" << gif(0, 0, 9728, 18759) << int(Outcome::TooLarge) << QSize(9731, 18763);
        QTest::newRow("gif with a large size and a small frame")
            << "a.gif" << gif(63488, 3335, 1, 1) << int(Outcome::TooLarge) << QSize(63488, 3335);
        QTest::newRow("gif with half a size, with a large frame")
            << "a.gif" << gif(37376, 0, 257, 2595, "\xff") << int(Outcome::TooLarge) << QSize(37376, 2599);
        QTest::newRow("bitmap whose many lines go downwards")
            << "a.bmp" << bitmap(5, -16521180) << int(Outcome::TooLarge) << QSize(5, 16521180);
        QTest::newRow("large gif by its name, and none by its bytes")
            << "a.gif" << gif(0, 0, 9728, 18759).replace(0, 6, "G\0\0\0\0\0") << int(Outcome::Unreadable)
            << QSize(-1, -1);
    }

    void whatWouldTakeTooMuchIsRefusedBefore()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QSize, size);
        const QTemporaryDir folder;
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        const std::atomic_bool abandoned(false);
        // The decoders are found and loaded before the memory becomes scarce.
        PictureReader::read(folder.filePath(QStringLiteral("absent.gif")), abandoned);

        const LittleMemory limit(100 * 1024 * 1024);
        const PictureReader::Reading reading = PictureReader::read(file.fileName(), abandoned);

        QTEST(int(reading.outcome), "outcome");
        QCOMPARE(QSize(reading.size.currentWidth, reading.size.currentHeight), size);
    }

    void aBitmapWhoseLinesGoDownwardsIsRead()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("a.bmp")));
        const QByteArray bytes = bitmap(2, -3) + QByteArray(12, '\x40');
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();

        const PictureReader::Reading reading = PictureReader::read(file.fileName(), std::atomic_bool(false));

        QCOMPARE(reading.outcome, Outcome::Read);
        QCOMPARE(reading.image.size(), QSize(2, 3));
    }
};

QTEST_GUILESS_MAIN(tst_FoundPictures)
#include "tst_FoundPictures.moc"
