#include "ReaderDiary.h"
#include "labels/LabelFile.h"
#include "labels/LabelsPositionsLoader.h"
#include "scene/GlobalNav.h"

#include <QtTest>

using namespace Torvik::View3d;
using Kx::Test::LabelFile;
using Kx::Test::ReaderDiary;
using Kx::Test::TestProject;
using Torvik::AppState;

namespace {

const QString key = QStringLiteral("{manhole}");
const QVector3D moved(1.5F, -2.0F, 0.25F);
const QByteArray stored = R"({"{manhole}": {"x": 1.5, "y": -2.0, "z": 0.25}})";

std::optional<QVector3D> position()
{
    return LabelsPositionsLoader::instance().getLabelPosition(key);
}

} // namespace

/** When the reader has the positions of labels read and stored. */
class tst_DomainReaderLabels : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_reader = std::make_unique<DomainReader>(nullptr);
        m_reader->init();
    }

    void cleanup()
    {
        AppState::instance().setActiveProject({});
        m_reader.reset();
        LabelsPositionsLoader::instance().resetLabelsPositions();
    }

    void positionsAreThereBeforeTheFirstObjectIsTold()
    {
        TestProject project;
        project.addNode(QStringLiteral("A"));
        LabelFile(project).write(stored);
        std::optional<QVector3D> atTheNode;
        connect(m_reader.get(), &DomainReader::nodeInserted, this, [&] { atTheNode = position(); });

        project.activate();

        QCOMPARE(atTheNode, std::make_optional(moved));
    }

    void aMovedLabelStandsThereWhenTheProjectIsOpenedAgain()
    {
        TestProject project;
        project.activate();
        LabelsPositionsLoader::instance().storeLabelPosition(key, moved);

        project.reopen();
        QCOMPARE(position(), std::nullopt);
        project.activate();

        QCOMPARE(position(), std::make_optional(moved));
    }

    void positionsAreStoredBeforeAnythingIsRemoved()
    {
        TestProject project;
        project.activate();
        LabelsPositionsLoader::instance().storeLabelPosition(key, moved);
        bool thereBefore = false;
        connect(m_reader.get(), &DomainReader::allRowsRemoved, this,
                [&] { thereBefore = LabelFile(project).exists(); });

        AppState::instance().setActiveProject({});

        QVERIFY(thereBefore);
    }

    void theNextProjectDoesNotGetThePositionsOfTheLast()
    {
        TestProject first;
        TestProject second;
        first.activate();
        LabelsPositionsLoader::instance().storeLabelPosition(key, moved);

        second.activate();
        QCOMPARE(position(), std::nullopt);
        AppState::instance().setActiveProject({});

        QVERIFY(LabelFile(first).exists());
        QVERIFY(!LabelFile(second).exists());
    }

    void aFlatProjectEndsThoseOfTheLast()
    {
        TestProject first;
        TestProject flat({}, false);
        LabelFile(flat).write(stored);
        first.activate();
        LabelsPositionsLoader::instance().storeLabelPosition(key, moved);

        flat.activate();
        QCOMPARE(position(), std::nullopt);
        GlobalNav::instance()->resetLabelsPositions();

        QCOMPARE(labelPositionsFromJson(LabelFile(first).read()), (LabelPositions {{key, moved}}));
        QCOMPARE(LabelFile(flat).read(), stored);
    }

    void theStartReadsNoPositions()
    {
        m_reader.reset();
        TestProject project;
        LabelFile(project).write(stored);
        project.activate();
        m_reader = std::make_unique<DomainReader>(nullptr);

        m_reader->init();

        QCOMPARE(position(), std::nullopt);
        project.close();
        QCOMPARE(LabelFile(project).read(), stored);
    }

    void aDamagedFileCostsThePositionsAndNotTheProject()
    {
        TestProject project;
        project.addNode(QStringLiteral("A"));
        const QByteArray damaged = "{\"\xFF\xFE" + stored;
        LabelFile(project).write(damaged);
        project.reopen();
        ReaderDiary diary(*m_reader);

        project.activate();

        QCOMPARE(diary.take(), (QStringList {QStringLiteral("node A"), QStringLiteral("loaded")}));
        project.close();
        QCOMPARE(LabelFile(project).read(), damaged);
    }

    void theNavigationResetsThem()
    {
        TestProject project;
        LabelFile(project).write(stored);
        project.activate();
        QSignalSpy reset(&LabelsPositionsLoader::instance(), &LabelsPositionsLoader::labelsPositionsReset);

        QVERIFY(QMetaObject::invokeMethod(GlobalNav::instance(), "resetLabelsPositions"));

        QCOMPARE(reset.count(), 1);
        QCOMPARE(position(), std::nullopt);
        QVERIFY(!LabelFile(project).exists());
    }

private:
    std::unique_ptr<DomainReader> m_reader;
};

QTEST_GUILESS_MAIN(tst_DomainReaderLabels)
#include "tst_DomainReaderLabels.moc"
