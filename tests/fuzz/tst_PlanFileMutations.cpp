#include "common/Mutations.h"

#include <QDir>
#include <QFile>
#include <QtTest>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

using namespace Kx::Test;

/** What the fuzzer does with plan.xml for as long as it is let, here for a moment and always the same. */
class tst_PlanFileMutations : public QObject {
    Q_OBJECT

private slots:
    void damagedPlanFilesNeverCrash_data()
    {
        QTest::addColumn<QString>("path");
        const QDir folder(QStringLiteral(KX_SOURCE_DIR "/tests/plans/data"));
        for (const QString& name : folder.entryList({QStringLiteral("*.xml")}, QDir::Files))
            QTest::newRow(qPrintable(name)) << folder.filePath(name);
    }

    void damagedPlanFilesNeverCrash()
    {
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray sound = file.readAll();
        std::mt19937 chance(7);

        for (int run = 0; run < 100; ++run) {
            const QByteArray bytes = damaged(sound, chance);
            QCOMPARE(LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.constData()),
                                            std::size_t(bytes.size())),
                     0);
        }
    }
};

QTEST_APPLESS_MAIN(tst_PlanFileMutations)
#include "tst_PlanFileMutations.moc"
