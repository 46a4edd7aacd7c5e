#include "plans/PictureReader.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QRgba64>
#include <QTemporaryDir>
#include <QtTest>

#include <random>
#include <thread>

using namespace Torvik::View3d;
using PictureReader::Outcome;
using PictureReader::Reading;

namespace {

Reading read(const QString& path)
{
    const std::atomic_bool abandoned(false);
    return PictureReader::read(path, abandoned);
}

/** A line of /proc/self/status in bytes. */
qint64 status(const char* key)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(key))
            return line.mid(int(qstrlen(key))).simplified().split(' ').value(0).toLongLong() * 1024;
    }
    return -1;
}

/** Forgets the highest memory that the process has had. */
bool resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    return file.open(QIODevice::WriteOnly) && file.write("5") == 1 && file.flush();
}

} // namespace

/** Which pictures become textures, and what that costs. */
class tst_PictureReader : public QObject {
    Q_OBJECT

private slots:
    void sidesAndBytesHaveTheirLimits_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("fits");
        QTest::newRow("largest") << QSize(4048, 4048) << true;
        QTest::newRow("too wide, though small") << QSize(4049, 1) << false;
        QTest::newRow("too high, though small") << QSize(1, 4049) << false;
        QTest::newRow("as wide as can be") << QSize(4048, 1) << true;
        QTest::newRow("unknown") << QSize() << true;
        QTest::newRow("more than 32 bits hold") << QSize(65536, 65536) << false;
    }

    void sidesAndBytesHaveTheirLimits()
    {
        QFETCH(QSize, size);

        const PictureReader::SizeCheck check = PictureReader::validateImageSize(size);

        QTEST(check.fits, "fits");
        QCOMPARE(check.info.currentWidth, size.width());
        QCOMPARE(check.info.currentHeight, size.height());
        QCOMPARE(check.info.bytesPerPixel, 4);
        QCOMPARE(check.info.maxWidth, 4048);
        QCOMPARE(check.info.maxHeight, 4048);
        QCOMPARE(check.info.maxSize, 65545216);
    }

    void theSizeIsToldInBytes()
    {
        QCOMPARE(PictureReader::validateImageSize({4048, 4048}).info.currentSize, 65545216);
        QCOMPARE(PictureReader::validateImageSize({4049, 1}).info.currentSize, 16196);
        QCOMPARE(PictureReader::validateImageSize({}).info.currentSize, 4);
    }

    void picturesOfManyKindsAreRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::newRow("png with transparency") << "a.png" << int(QImage::Format_ARGB32);
        QTest::newRow("png of 16 bits") << "b.png" << int(QImage::Format_RGBA64);
        QTest::newRow("png of greys") << "c.png" << int(QImage::Format_Grayscale8);
        QTest::newRow("png of few colours") << "d.png" << int(QImage::Format_Indexed8);
        QTest::newRow("png of two colours") << "e.png" << int(QImage::Format_Mono);
        QTest::newRow("jpeg") << "a.jpg" << int(QImage::Format_RGB32);
        QTest::newRow("jpeg, other ending") << "a.JPEG" << int(QImage::Format_RGB32);
        QTest::newRow("bmp") << "a.bmp" << int(QImage::Format_RGB32);
        QTest::newRow("tiff") << "a.tiff" << int(QImage::Format_RGB32);
    }

    void picturesOfManyKindsAreRead()
    {
        QFETCH(QString, name);
        QFETCH(int, format);
        QImage drawn(40, 30, QImage::Format_ARGB32);
        drawn.fill(QColor(200, 30, 60));
        const QString path = m_folder.filePath(name);
        QVERIFY(drawn.convertToFormat(QImage::Format(format)).save(path));
        const QColor meant = drawn.convertToFormat(QImage::Format(format)).pixelColor(20, 15);

        const Reading reading = read(path);

        QCOMPARE(reading.outcome, Outcome::Read);
        QCOMPARE(reading.image.format(), QImage::Format_RGBA8888);
        QCOMPARE(reading.image.size(), QSize(40, 30));
        const QColor got = reading.image.pixelColor(20, 15);
        // A jpeg rounds.
        QVERIFY2(qAbs(got.red() - meant.red()) <= 4 && qAbs(got.green() - meant.green()) <= 4 &&
                     qAbs(got.blue() - meant.blue()) <= 4 && got.alpha() == 255,
                 qPrintable(got.name(QColor::HexArgb)));
    }

    void sixteenBitsKeepTheirTransparencyAndPlaces()
    {
        QImage drawn(3, 2, QImage::Format_RGBA64);
        drawn.fill(Qt::transparent);
        drawn.setPixelColor(2, 1, QColor(250, 100, 50, 128));
        const QString path = m_folder.filePath(QStringLiteral("wide.png"));
        QVERIFY(drawn.save(path));

        const QImage image = read(path).image;

        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(image.pixelColor(2, 1), QColor(250, 100, 50, 128));
        QCOMPARE(image.copy().pixelColor(2, 1), QColor(250, 100, 50, 128));
    }

    void aPictureThatIsTooLargeIsRefusedWithItsSize()
    {
        const QString path = m_folder.filePath(QStringLiteral("wide-strip.png"));
        QVERIFY(QImage(4049, 1, QImage::Format_RGB32).save(path));

        const Reading reading = read(path);

        QCOMPARE(reading.outcome, Outcome::TooLarge);
        QVERIFY(reading.image.isNull());
        QCOMPARE(reading.size.currentWidth, 4049);
        QCOMPARE(reading.size.currentHeight, 1);
    }

    void whatIsNoPictureIsUnreadable_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QByteArray whole;
        QBuffer buffer(&whole);
        QImage noisy(64, 64, QImage::Format_RGB32);
        for (int i = 0; i < 64 * 64; ++i)
            noisy.setPixel(i % 64, i / 64, uint(i) * 2654435761U);
        noisy.save(&buffer, "PNG");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("no picture at all");
        QTest::newRow("signature only") << whole.left(8);
        QTest::newRow("header only") << whole.left(33);
        QTest::newRow("cut short") << whole.left(whole.size() / 2);
    }

    void whatIsNoPictureIsUnreadable()
    {
        QFETCH(QByteArray, bytes);
        const QString path = m_folder.filePath(QStringLiteral("broken.png"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();

        const Reading reading = read(path);

        QCOMPARE(reading.outcome, Outcome::Unreadable);
        QVERIFY(!reading.reason.isEmpty());
    }

    void damagedPicturesAreReadOrRefused_data()
    {
        QTest::addColumn<QString>("ending");
        for (const char* ending : {"png", "jpg", "bmp", "gif", "tiff"})
            QTest::newRow(ending) << ending;
    }

    /** Bytes changed, left out and doubled, the same at every run. */
    void damagedPicturesAreReadOrRefused()
    {
        QFETCH(QString, ending);
        const QString path = m_folder.filePath("damaged." + ending);
        QByteArray whole = gif();
        if (ending != "gif") {
            QImage image(23, 17, QImage::Format_ARGB32);
            image.fill(QColor(10, 200, 90));
            QBuffer buffer(&whole);
            whole.clear();
            QVERIFY(image.save(&buffer, qPrintable(ending)));
        }
        std::mt19937 random(4048);
        const auto below = [&random](int limit) { return int(random() % unsigned(limit)); };
        QElapsedTimer passed;
        passed.start();
        // The decoders speak to the error stream of each; that is no news here.
        const auto before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

        for (int i = 0; i < 400 && passed.elapsed() < 3000; ++i) {
            QByteArray damaged = whole;
            for (int changes = 1 + below(4); changes > 0 && !damaged.isEmpty(); --changes) {
                const int at = below(damaged.size());
                switch (below(4)) {
                case 0:
                    damaged[at] = char(below(256));
                    break;
                case 1:
                    damaged.remove(at, 1 + below(16));
                    break;
                case 2:
                    damaged.insert(at, damaged.mid(below(damaged.size()), 16));
                    break;
                default:
                    damaged.truncate(at);
                }
            }
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly) || file.write(damaged) != damaged.size())
                break;
            file.close();
            const Reading reading = read(path);
            const bool sane = reading.outcome == Outcome::Read
                                  ? PictureReader::validateImageSize(reading.image.size()).fits &&
                                        reading.image.format() == QImage::Format_RGBA8888
                                  : reading.image.isNull();
            QVERIFY2(sane, damaged.toHex().constData());
        }
        qInstallMessageHandler(before);
    }

    void aMissingFileAndAFolderAreUnreadable()
    {
        QCOMPARE(read(m_folder.filePath(QStringLiteral("none.png"))).outcome, Outcome::Unreadable);
        QCOMPARE(read(m_folder.path()).outcome, Outcome::Unreadable);
        QCOMPARE(read(QString()).outcome, Outcome::Unreadable);
    }

    void anAbandonedReadingEndsSoon()
    {
        const QString path = largest(QImage::Format_ARGB32);
        QElapsedTimer whole;
        whole.start();
        QCOMPARE(read(path).outcome, Outcome::Read);
        const qint64 wholeMs = whole.elapsed();
        std::atomic_bool abandoned(false);
        Reading reading;
        std::thread worker([&] { reading = PictureReader::read(path, abandoned); });
        QElapsedTimer rest;
        rest.start();

        abandoned = true;
        worker.join();

        QCOMPARE(reading.outcome, Outcome::Unreadable);
        QVERIFY2(rest.elapsed() < qMax(wholeMs / 2, 50LL), qPrintable(QString::number(rest.elapsed())));
    }

    void theLargestPictureTakesTwiceItsBytesAtMost_data()
    {
        QTest::addColumn<int>("format");
        QTest::newRow("with transparency") << int(QImage::Format_ARGB32);
        QTest::newRow("without") << int(QImage::Format_RGB32);
        QTest::newRow("of 16 bits") << int(QImage::Format_RGBA64);
        QTest::newRow("of greys") << int(QImage::Format_Grayscale8);
    }

    void theLargestPictureTakesTwiceItsBytesAtMost()
    {
        QFETCH(int, format);
        const QString path = largest(QImage::Format(format));
        // The decoder's own buffers.
        constexpr qint64 slack = 8 * 1024 * 1024;
        // The allocator may keep what the source of a conversion took.
        constexpr qint64 keptByAllocator = PictureReader::maxSize / 4;
        if (!resetPeak())
            QSKIP("the peak of the memory cannot be reset here");
        const qint64 before = status("VmRSS:");

        const Reading reading = read(path);

        const qint64 peak = status("VmHWM:") - before;
        const qint64 kept = status("VmRSS:") - before;
        QCOMPARE(reading.outcome, Outcome::Read);
        QVERIFY2(peak <= 2LL * PictureReader::maxSize + slack, qPrintable(QString::number(peak)));
        QVERIFY2(kept <= PictureReader::maxSize + keptByAllocator + slack, qPrintable(QString::number(kept)));
    }

private:
    /** Qt writes none: one pixel, with a table of two colours. */
    static QByteArray gif()
    {
        return QByteArray::fromHex(
            "47494638396101000100800000ff0000ffffff21f90401000000002c00000000010001000002024401003b");
    }

    QString largest(QImage::Format format)
    {
        const QString path = m_folder.filePath(QStringLiteral("largest-%1.png").arg(int(format)));
        if (!QFile::exists(path)) {
            QImage image(4048, 4048, format);
            image.fill(0x40);
            image.save(path, "PNG", 90);
        }
        return path;
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(tst_PictureReader)
#include "tst_PictureReader.moc"
