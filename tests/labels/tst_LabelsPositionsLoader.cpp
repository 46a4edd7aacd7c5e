#include "labels/LabelsPositionsLoader.h"

#include "labels/LabelFile.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Torvik::View3d;
using Kx::Test::LabelFile;
using Kx::Test::TestProject;

namespace {

const QString key = QStringLiteral("{manhole}");
const QVector3D moved(1.5F, -2.0F, 0.25F);
const QByteArray stored = R"({"{manhole}": {"x": 1.5, "y": -2.0, "z": 0.25}})";

LabelsPositionsLoader& loader()
{
    return LabelsPositionsLoader::instance();
}

/** A user who may read what is readable to everybody, and write nothing: permissions do not bind root. */
class AsNobody {
public:
    AsNobody() { m_changed = ::geteuid() == 0 && ::seteuid(65534) == 0; }
    ~AsNobody()
    {
        if (m_changed && ::seteuid(0) != 0) {
            qFatal("cannot return to the user of the test");
        }
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    bool m_changed = false;
};

} // namespace

class tst_LabelsPositionsLoader : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        loader().saveLabelsPositionsForPreviousProject();
        loader().resetLabelsPositions();
    }

    void whatWasMovedStandsThereAfterReopening()
    {
        TestProject project;
        QSignalSpy reset(&loader(), &LabelsPositionsLoader::labelsPositionsReset);
        loader().readLabelsPositionsForProject(project.project());
        QCOMPARE(loader().getLabelPosition(key), std::nullopt);
        QCOMPARE(reset.count(), 0);

        loader().storeLabelPosition(key, {9.0F, 9.0F, 9.0F});
        loader().storeLabelPosition(key, moved);
        loader().saveLabelsPositionsForPreviousProject();
        QCOMPARE(reset.count(), 1);
        QCOMPARE(loader().getLabelPosition(key), std::nullopt);
        project.reopen();
        loader().readLabelsPositionsForProject(project.project());

        QCOMPARE(reset.count(), 2);
        QCOMPARE(loader().getLabelPosition(key), std::make_optional(moved));
        QCOMPARE(labelPositionsFromJson(LabelFile(project).read()), (LabelPositions {{key, moved}}));
    }

    void whatWasMovedWithoutAFileStaysOutOfTheNextOne()
    {
        TestProject project;
        loader().storeLabelPosition("elsewhere", moved);

        loader().saveLabelsPositionsForPreviousProject();
        loader().readLabelsPositionsForProject(project.project());
        loader().storeLabelPosition(key, moved);
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(labelPositionsFromJson(LabelFile(project).read()), (LabelPositions {{key, moved}}));
    }

    void withoutAMoveThereIsNoFile()
    {
        TestProject project;

        loader().readLabelsPositionsForProject(project.project());
        const QSignalSpy reset(&loader(), &LabelsPositionsLoader::labelsPositionsReset);
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(reset.count(), 0);
        QVERIFY(!LabelFile(project).exists());
    }

    void withoutAMoveTheFileStaysAsItIs_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("good, in a form of its own") << stored;
        QTest::newRow("with an entry of the wrong type") << QByteArray(R"({"a": 5, "{manhole}": {"x": 1}})");
        QTest::newRow("damaged") << stored.left(20);
        QTest::newRow("not UTF-8") << QByteArray("{\"\xE4\": {\"x\": 1}}");
        QTest::newRow("empty") << QByteArray();
    }

    void withoutAMoveTheFileStaysAsItIs()
    {
        QFETCH(QByteArray, content);
        TestProject project;
        const LabelFile file(project);
        file.write(content);

        loader().readLabelsPositionsForProject(project.project());
        // As a label does that goes with its project.
        if (const auto position = loader().getLabelPosition(key)) {
            loader().storeLabelPosition(key, *position);
        }
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(file.read(), content);
    }

    void aDamagedFileIsReplacedWhenALabelWasMoved()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(stored.left(20));
        QSignalSpy reset(&loader(), &LabelsPositionsLoader::labelsPositionsReset);
        loader().readLabelsPositionsForProject(project.project());
        QCOMPARE(reset.count(), 1);

        loader().storeLabelPosition(key, moved);
        QCOMPARE(file.read(), stored.left(20));
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(labelPositionsFromJson(file.read()), (LabelPositions {{key, moved}}));
    }

    void fiftyMegabytesOfNoiseCostThePositionsOnly()
    {
        TestProject project;
        const LabelFile file(project);
        QVector<quint32> noise(50 * 1024 * 1024 / 4);
        QRandomGenerator(3).fillRange(noise.data(), noise.size());
        const QByteArray content(reinterpret_cast<const char*>(noise.constData()), noise.size() * 4);
        file.write(content);
        project.reopen();

        loader().readLabelsPositionsForProject(project.project());
        QCOMPARE(loader().getLabelPosition(key), std::nullopt);
        loader().saveLabelsPositionsForPreviousProject();
        QVERIFY(file.read() == content);

        loader().readLabelsPositionsForProject(project.project());
        loader().storeLabelPosition(key, moved);
        loader().saveLabelsPositionsForPreviousProject();
        QCOMPARE(labelPositionsFromJson(file.read()), (LabelPositions {{key, moved}}));
    }

    void whatIsNoFileIsNotRead_data()
    {
        QTest::addColumn<bool>("pipe");
        QTest::newRow("folder") << false;
        QTest::newRow("pipe that nobody writes into") << true;
    }

    void whatIsNoFileIsNotRead()
    {
        QFETCH(bool, pipe);
        TestProject project;
        const QString path = LabelFile(project).path;
        QVERIFY(pipe ? ::mkfifo(path.toLocal8Bit().constData(), 0600) == 0 : QDir().mkdir(path));

        loader().readLabelsPositionsForProject(project.project());

        QCOMPARE(loader().getLabelPosition(key), std::nullopt);
    }

    void inAReadOnlyFolderChangesAreLostAndNothingElse_data()
    {
        QTest::addColumn<bool>("withFile");
        QTest::newRow("without a file") << false;
        QTest::newRow("with a file") << true;
    }

    void inAReadOnlyFolderChangesAreLostAndNothingElse()
    {
        QFETCH(bool, withFile);
        TestProject project;
        const LabelFile file(project);
        if (withFile) {
            file.write(stored);
            QVERIFY(::chmod(file.path.toLocal8Bit().constData(), 0444) == 0);
        }
        const QByteArray folder = project.path().toLocal8Bit();
        QVERIFY(::chmod((folder + "/..").constData(), 0755) == 0 && ::chmod(folder.constData(), 0555) == 0);
        {
            const AsNobody nobody;
            loader().readLabelsPositionsForProject(project.project());
            QCOMPARE(loader().getLabelPosition(key).has_value(), withFile);
            loader().storeLabelPosition(key, {7.0F, 7.0F, 7.0F});
            loader().saveLabelsPositionsForPreviousProject();
            QCOMPARE(loader().getLabelPosition(key), std::nullopt);
            loader().readLabelsPositionsForProject(project.project());
            loader().resetLabelsPositions();
        }
        ::chmod(folder.constData(), 0755);

        QCOMPARE(file.exists(), withFile);
        QCOMPARE(file.read(), withFile ? stored : QByteArray());
    }

    void aWritableFileInAReadOnlyFolderIsWritten()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(stored);
        QVERIFY(::chmod(file.path.toLocal8Bit().constData(), 0666) == 0);
        const QByteArray folder = project.path().toLocal8Bit();
        QVERIFY(::chmod((folder + "/..").constData(), 0755) == 0 && ::chmod(folder.constData(), 0555) == 0);
        {
            const AsNobody nobody;
            loader().readLabelsPositionsForProject(project.project());
            loader().storeLabelPosition(key, {7.0F, 7.0F, 7.0F});
            loader().saveLabelsPositionsForPreviousProject();
        }
        ::chmod(folder.constData(), 0755);

        QCOMPARE(labelPositionsFromJson(file.read()), (LabelPositions {{key, {7.0F, 7.0F, 7.0F}}}));
    }

    void aDiskWithoutRoomKeepsWhatWasThere()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(stored);
        loader().readLabelsPositionsForProject(project.project());
        loader().storeLabelPosition(key, {7.0F, 7.0F, 7.0F});
        rlimit before {};
        QVERIFY(::getrlimit(RLIMIT_FSIZE, &before) == 0);
        const rlimit tenBytes {10, before.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QVERIFY(::setrlimit(RLIMIT_FSIZE, &tenBytes) == 0);

        loader().saveLabelsPositionsForPreviousProject();

        QVERIFY(::setrlimit(RLIMIT_FSIZE, &before) == 0);
        std::signal(SIGXFSZ, handler);
        QCOMPARE(file.read(), stored);
        QCOMPARE(QDir(project.path()).entryList({"labelPosition*"}), QStringList {"labelPosition.json"});
    }

    void aFlatProjectOrNoneHasNoPositions()
    {
        TestProject flat({}, false);
        const LabelFile file(flat);
        file.write(stored);

        loader().readLabelsPositionsForProject({});
        loader().readLabelsPositionsForProject(flat.project());
        QCOMPARE(loader().getLabelPosition(key), std::nullopt);
        loader().storeLabelPosition(key, {});
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(file.read(), stored);
    }

    void aResetDeletesTheFileAtOnce()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(stored);
        loader().readLabelsPositionsForProject(project.project());
        QSignalSpy reset(&loader(), &LabelsPositionsLoader::labelsPositionsReset);

        loader().resetLabelsPositions();

        QVERIFY(!file.exists());
        QCOMPARE(reset.count(), 1);
        QCOMPARE(loader().getLabelPosition(key), std::nullopt);
        loader().saveLabelsPositionsForPreviousProject();
        QVERIFY(!file.exists());
    }

    void aMoveAfterAResetIsStored()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(stored);
        loader().readLabelsPositionsForProject(project.project());
        loader().resetLabelsPositions();

        loader().storeLabelPosition(QStringLiteral("other"), moved);
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(labelPositionsFromJson(file.read()), (LabelPositions {{"other", moved}}));
    }

    void aLabelThatWasPutBackIsNotStored()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(stored);
        loader().readLabelsPositionsForProject(project.project());
        loader().storeLabelPosition(QStringLiteral("other"), moved);

        loader().removeLabelPosition(key);
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(labelPositionsFromJson(file.read()), (LabelPositions {{"other", moved}}));
    }

    void withTheLastLabelPutBackTheFileGoes()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(jsonFromLabelPositions({{key, moved}}));
        loader().readLabelsPositionsForProject(project.project());

        loader().removeLabelPosition(QStringLiteral("unknown"));
        QVERIFY(file.exists());
        loader().removeLabelPosition(key);
        QVERIFY(loader().isEmpty());
        loader().saveLabelsPositionsForPreviousProject();

        QVERIFY(!file.exists());
    }

    void aMoveInAProjectThatWasNeverReadIsKeptWithWhatWasThere()
    {
        TestProject project;
        const LabelFile file(project);
        file.write(stored);
        project.activate();
        QCOMPARE(loader().getLabelPosition(key), std::nullopt);

        loader().storeLabelPosition("other", {7.0F, 7.0F, 7.0F});
        QCOMPARE(file.read(), stored);
        loader().saveLabelsPositionsForPreviousProject();

        QCOMPARE(labelPositionsFromJson(file.read()), (LabelPositions {{key, moved}, {"other", {7.0F, 7.0F, 7.0F}}}));
        project.close();
    }

    void aLinkIsFollowed()
    {
        TestProject project;
        QTemporaryDir elsewhere;
        const LabelFile file(project);
        const LabelFile target(elsewhere.filePath("labels.json"));
        target.write(stored);
        QVERIFY(QFile::link(target.path, file.path));

        loader().readLabelsPositionsForProject(project.project());
        QCOMPARE(loader().getLabelPosition(key), std::make_optional(moved));
        loader().storeLabelPosition(key, {7.0F, 7.0F, 7.0F});
        loader().saveLabelsPositionsForPreviousProject();

        QVERIFY(QFileInfo(file.path).isSymLink());
        QCOMPARE(labelPositionsFromJson(target.read()), (LabelPositions {{key, {7.0F, 7.0F, 7.0F}}}));
    }

    void aResetWithoutAProjectTellsNothingAndDeletesNothing()
    {
        TestProject project;
        const LabelFile file(project);
        file.write("damaged");
        loader().readLabelsPositionsForProject(project.project());
        loader().saveLabelsPositionsForPreviousProject();
        loader().storeLabelPosition(key, moved);
        QSignalSpy reset(&loader(), &LabelsPositionsLoader::labelsPositionsReset);

        loader().resetLabelsPositions();

        QCOMPARE(loader().getLabelPosition(key), std::nullopt);
        QCOMPARE(reset.count(), 0);
        QVERIFY(file.exists());
    }
};

QTEST_GUILESS_MAIN(tst_LabelsPositionsLoader)
#include "tst_LabelsPositionsLoader.moc"
