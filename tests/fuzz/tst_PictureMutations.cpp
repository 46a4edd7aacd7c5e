#include "common/Mutations.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QtTest>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

using namespace Kx::Test;

/** What the fuzzer does with pictures for as long as it is let, here for a moment and always the same. */
class tst_PictureMutations : public QObject {
    Q_OBJECT

private slots:
    void damagedPicturesNeverCrash_data()
    {
        QTest::addColumn<int>("ending");
        QTest::addColumn<QByteArray>("form");
        QTest::newRow("png") << 0 << QByteArray("png");
        QTest::newRow("jpg") << 1 << QByteArray("jpg");
        QTest::newRow("tiff") << 2 << QByteArray("tiff");
        QTest::newRow("bmp") << 3 << QByteArray("bmp");
    }

    void damagedPicturesNeverCrash()
    {
        QFETCH(int, ending);
        QFETCH(QByteArray, form);
        QImage picture(40, 30, QImage::Format_ARGB32);
        picture.fill(qRgba(20, 90, 200, 100));
        QBuffer sound;
        QImageWriter writer(&sound, form);
        QVERIFY2(writer.write(picture), qPrintable(writer.errorString()));
        std::mt19937 chance(7);

        for (int run = 0; run < 300; ++run) {
            const QByteArray bytes = char(ending) + damaged(sound.data(), chance);
            QCOMPARE(LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.constData()),
                                            std::size_t(bytes.size())),
                     0);
        }
    }
};

QTEST_GUILESS_MAIN(tst_PictureMutations)
#include "tst_PictureMutations.moc"
