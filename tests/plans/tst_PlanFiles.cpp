#include "plans/PlanFiles.h"
#include "plans/PlanSwap.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Torvik::View3d;

namespace {

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

dev_t diskOf(const QString& path)
{
    struct stat info {};
    stat(QFile::encodeName(path).constData(), &info);
    return info.st_dev;
}

/** No file grows beyond that while it lives: as on a disk that is full. */
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit narrow {bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &narrow);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before {};
};

} // namespace

/** What becomes of the files when one plan takes another's place. */
class tst_PlanFiles : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("docs")));
        QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("stick")));
    }

    void drawingsHaveALimit_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<qlonglong>("bytes");
        QTest::newRow("dxf") << "dxf" << 52428800LL;
        QTest::newRow("DXF") << "DXF" << 52428800LL;
        QTest::newRow("dwg") << "Dwg" << 10485760LL;
        QTest::newRow("PDF") << "PDF" << 0LL;
        QTest::newRow("none") << QString() << 0LL;
    }

    void drawingsHaveALimit()
    {
        QFETCH(QString, extension);
        QTEST(PlanFiles::sizeLimit(extension), "bytes");
    }

    void aFileOfExactlyTheLimitIsValid()
    {
        const QString path = m_folder->filePath(QStringLiteral("large.DXF"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(52428800));
        QVERIFY(PlanFiles::isValid(path));

        QVERIFY(file.resize(52428801));

        QVERIFY(!PlanFiles::isValid(path));
        QVERIFY(!PlanFiles::isValid(m_folder->filePath(QStringLiteral("missing.dxf"))));
    }

    void theFirstPlanMovesIntoTheProject()
    {
        const QString source = put("stick/new.png", "new");

        const auto swapped = PlanFiles::swap({}, source, at("docs/new.png"));

        QCOMPARE(swapped.newPath, at("docs/new.png"));
        QCOMPARE(swapped.problem, QString());
        QCOMPARE(content(at("docs/new.png")), QByteArray("new"));
        QVERIFY(!QFile::exists(source));
    }

    void theFirstPlanLeavesAFileOfItsNameAlone()
    {
        const QString source = put("stick/new.png", "new");
        put("docs/new.png", "a photograph");

        const auto swapped = PlanFiles::swap({}, source, at("docs/new.png"));

        QCOMPARE(swapped.newPath, source);
        QVERIFY(swapped.problem.contains(source));
        QCOMPARE(content(at("docs/new.png")), QByteArray("a photograph"));
        QCOMPARE(content(source), QByteArray("new"));
    }

    void aPlanThatIsInPlaceStays()
    {
        const QString path = put("docs/new.png", "new");

        for (const QString& old : {QString(), path}) {
            const auto swapped = PlanFiles::swap(old, path, path);

            QCOMPARE(swapped.newPath, path);
            QCOMPARE(swapped.problem, QString());
            QCOMPARE(content(path), QByteArray("new"));
        }
    }

    void aPlanThatIsInPlaceLetsTheOldOneGo()
    {
        const QString old = put("docs/old.png", "old");
        const QString path = put("docs/new.png", "new");

        const auto swapped = PlanFiles::swap(old, path, path);

        QCOMPARE(swapped.newPath, path);
        QVERIFY(!QFile::exists(old));
        QVERIFY(QFile::exists(path));
    }

    void theNewPlanTakesTheOldOnesPlace_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("other name") << "new.png";
        QTest::newRow("same name") << "old.png";
    }

    void theNewPlanTakesTheOldOnesPlace()
    {
        QFETCH(QString, name);
        const QString old = put("docs/old.png", "old");
        const QString source = put("stick/" + name, "new");
        const QString target = at("docs/" + name);

        const auto swapped = PlanFiles::swap(old, source, target);

        QCOMPARE(swapped.newPath, target);
        QCOMPARE(swapped.problem, QString());
        QCOMPARE(content(target), QByteArray("new"));
        QCOMPARE(files(), QStringList("docs/" + name));
    }

    void aThirdFileOfTheNewNameMakesRoomOnlyForAPlanThatComes()
    {
        const QString old = put("docs/old.png", "old");
        put("docs/new.png", "third");

        QVERIFY(!PlanFiles::swap(old, at("stick/new.png"), at("docs/new.png")).problem.isEmpty());
        QCOMPARE(content(at("docs/new.png")), QByteArray("third"));
        const QString source = put("stick/new.png", "new");
        QCOMPARE(PlanFiles::swap(old, source, at("docs/new.png")).problem, QString());

        QCOMPARE(content(at("docs/new.png")), QByteArray("new"));
        QCOMPARE(files(), QStringList("docs/new.png"));
    }

    void aPlanThatCannotComeLeavesTheOldOneInPlace()
    {
        const QString old = put("docs/old.png", "old");
        const QString missing = at("stick/new.png");

        const auto swapped = PlanFiles::swap(old, missing, at("docs/new.png"));

        QCOMPARE(swapped.newPath, old);
        QVERIFY(swapped.problem.contains(missing));
        QCOMPARE(content(old), QByteArray("old"));
        QCOMPARE(files(), QStringList("docs/old.png"));
    }

    void aBackupThatIsInTheWayIsKeptUnderAnotherName()
    {
        const QString old = put("docs/old.png", "old");
        put("docs/old.png.bak", "older");
        const QString source = put("stick/new.png", "new");

        const auto swapped = PlanFiles::swap(old, source, at("docs/new.png"));

        QCOMPARE(swapped.problem, QString());
        QCOMPARE(content(at("docs/new.png")), QByteArray("new"));
        QCOMPARE(content(at("docs/old.png-1.bak")), QByteArray("older"));
        QCOMPARE(files(), (QStringList {"docs/new.png", "docs/old.png-1.bak"}));
    }

    void untilTheEndASwapCanBeTakenBack_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("other name") << "new.png";
        QTest::newRow("same name") << "old.png";
        QTest::newRow("name of a third file") << "third.png";
    }

    void untilTheEndASwapCanBeTakenBack()
    {
        QFETCH(QString, name);
        const QString old = put("docs/old.png", "old");
        put("docs/third.png", "third");
        const QString source = put("stick/" + name, "new");
        const QStringList before = files();
        PlanSwap swap(old, source, at("docs/" + name));

        QCOMPARE(swap.begin(), QString());
        QCOMPARE(content(at("docs/" + name)), QByteArray("new"));
        QCOMPARE(content(PlanFiles::backupOf(old)), QByteArray("old"));
        QCOMPARE(swap.takeBack(), QString());

        QCOMPARE(files(), before);
        QCOMPARE(content(old), QByteArray("old"));
        QCOMPARE(content(source), QByteArray("new"));
        QCOMPARE(content(at("docs/third.png")), QByteArray("third"));
    }

    void aFileInItsPlaceIsTakenBackToNowhere()
    {
        const QString old = put("docs/old.png", "old");
        const QString path = put("docs/new.png", "new");
        const QStringList before = files();
        PlanSwap swap(old, path, path);

        QCOMPARE(swap.begin(), QString());
        QCOMPARE(swap.takeBack(), QString());

        QCOMPARE(files(), before);
    }

    void anOldFileThatIsGoneHindersNobody()
    {
        const QString source = put("stick/new.png", "new");

        const auto swapped = PlanFiles::swap(at("docs/old.png"), source, at("docs/new.png"));

        QCOMPARE(swapped.newPath, at("docs/new.png"));
    }

    void aFullDiskLosesNoFile()
    {
        QTemporaryDir elsewhere(QStringLiteral("/dev/shm/plan-files-XXXXXX"));
        if (!elsewhere.isValid() || diskOf(elsewhere.path()) == diskOf(m_folder->path()))
            QSKIP("there is no second disk here");
        const QString old = put("docs/old.png", "old");
        const QString source = elsewhere.filePath(QStringLiteral("new.png"));
        const QByteArray large(3000000, 'n');
        QVERIFY(write(source, large));
        PlanFiles::Swapped swapped;

        {
            const FullDisk full(1000000);
            swapped = PlanFiles::swap(old, source, at("docs/new.png"));
        }

        QCOMPARE(swapped.newPath, old);
        QVERIFY2(swapped.problem.contains(QStringLiteral("disk may be full")), qPrintable(swapped.problem));
        QCOMPARE(content(old), QByteArray("old"));
        QVERIFY(content(source) == large);
        QCOMPARE(files(), QStringList("docs/old.png"));
        QCOMPARE(PlanFiles::swap(old, source, at("docs/new.png")).newPath, at("docs/new.png"));
        QVERIFY(content(at("docs/new.png")) == large);
        QVERIFY(!QFile::exists(source));
    }

    void aSwapThatWasCutOffIsRecovered()
    {
        put("docs/old.png.bak", "old");

        PlanFiles::recover(at("docs/old.png"));
        PlanFiles::recover(QString());

        QCOMPARE(content(at("docs/old.png")), QByteArray("old"));
        put("docs/old.png.bak", "older");
        PlanFiles::recover(at("docs/old.png"));
        QCOMPARE(content(at("docs/old.png")), QByteArray("old"));
    }

    void whatCannotBeMovedIsToldInTheUsersLanguage()
    {
        struct Shouting : QTranslator {
            bool isEmpty() const override { return false; }
            QString translate(const char* context, const char* source, const char*, int) const override
            {
                const bool ours = qstrcmp(context, "Torvik::View3d::PlanFiles") == 0;
                return ours ? QString::fromUtf8(source).toUpper() : QString();
            }
        } shouting;
        QVERIFY(QCoreApplication::installTranslator(&shouting));

        const QString problem = PlanFiles::move(at("a"), at("b"));

        QCOMPARE(problem, QStringLiteral("%1 CANNOT BE MOVED TO %2: IT IS NOT THERE ANY MORE").arg(at("a"), at("b")));
    }

    void aConversionThatWasCutOffGivesThePictureBack()
    {
        put("docs/plan.png.before", "the plan before");
        put("docs/plan.png", "half a pict");

        PlanFiles::recover(at("docs/plan.png"));

        QCOMPARE(content(at("docs/plan.png")), QByteArray("the plan before"));
        QCOMPARE(content(at("docs/plan-1.png")), QByteArray("half a pict"));
        QCOMPARE(files(), (QStringList {"docs/plan-1.png", "docs/plan.png"}));
    }

private:
    QString at(const QString& name) const { return m_folder->filePath(name); }

    QString put(const QString& name, const QByteArray& bytes) { return write(at(name), bytes) ? at(name) : QString(); }

    QStringList files() const
    {
        QStringList found;
        QDirIterator all(m_folder->path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext())
            found << QDir(m_folder->path()).relativeFilePath(all.next());
        found.sort();
        return found;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(tst_PlanFiles)
#include "tst_PlanFiles.moc"
