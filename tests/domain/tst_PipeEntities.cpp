#include "common/TestProject.h"
#include "domain/PipeEntities.h"
#include "domain/PipeEntityBuilder.h"
#include "geo/GdalGeoProjector.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QPointer>
#include <QSignalSpy>
#include <Qt3DCore/QTransform>
#include <QtTest>

using namespace Torvik::View3d;
using Kx::Test::TestProject;

/** The registry of sections and the builder that fills it. */
class tst_PipeEntities : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = new SceneRoot;
        m_project = new TestProject;
        m_pipe = m_project->addSection(QStringLiteral("S"), m_project->addNode(QStringLiteral("A")), {});
        m_first = m_project->addInspection(m_pipe);
        m_second = m_project->addInspection(m_pipe);
        m_project->activate();
    }

    void cleanup()
    {
        const auto sections = registry().takeAll();
        qDeleteAll(sections);
        m_pipe.reset();
        m_first.reset();
        m_second.reset();
        delete m_project;
        delete m_root;
        GdalGeoProjector::instance()->deinit();
    }

    void theBuilderMakesOneNamedAndRegisteredSectionAnInspection()
    {
        PipeEntityBuilder builder;
        Section* const first = builder.create(m_first);
        Section* const second = builder.create(m_second);
        QVERIFY(first && second && first != second);
        QCOMPARE(first->name(), QStringLiteral("S"));
        QCOMPARE(first->parentNode(), m_root);
        QCOMPARE(registry().getByInspectionId(m_first->id()), first);
        QCOMPARE(registry().getByInspectionId(m_second->id()), second);
        const auto both = registry().getBySectionId(m_pipe->id());
        QCOMPARE(both.size(), 2);
        QVERIFY(both.contains(first) && both.contains(second));
        QCOMPARE(registry().getPipeEntities().size(), 2);
    }

    void unknownIdsGiveNothing()
    {
        QVERIFY(!registry().getByInspectionId(QStringLiteral("nobody")));
        QVERIFY(registry().getBySectionId(QStringLiteral("nobody")).isEmpty());
        QVERIFY(!registry().removeByInspectionId(QStringLiteral("nobody")));
        QObject stranger;
        registry().removeObject(&stranger);
    }

    void removingBySectionOrByInspectionLeavesTheOther()
    {
        PipeEntityBuilder builder;
        Section* const first = builder.create(m_first);
        Section* const second = builder.create(m_second);
        QCOMPARE(registry().removeByInspectionId(m_first->id()), first);
        QCOMPARE(registry().getBySectionId(m_pipe->id()), QList<Section*> {second});
        registry().remove(second);
        QCOMPARE(registry().count(), 0);
        QVERIFY(registry().getBySectionId(m_pipe->id()).isEmpty());
        delete first;
        delete second;
    }

    void twoSectionsOfOneInspectionBothStayInHand()
    {
        PipeEntityBuilder builder;
        Section* const first = builder.create(m_first);
        Section* const second = builder.create(m_first);
        QCOMPARE(registry().getByInspectionId(m_first->id()), second);
        QCOMPARE(registry().getBySectionId(m_pipe->id()).size(), 2);
        QCOMPARE(registry().getPipeEntities().size(), 2);
        QCOMPARE(registry().count(), 2);

        registry().remove(first);
        QCOMPARE(registry().getByInspectionId(m_first->id()), second);
        registry().addPipeEntity(first);
        QCOMPARE(registry().getByInspectionId(m_first->id()), first);

        const QPointer<Section> one = first;
        const QPointer<Section> another = second;
        registry().deleteSectionEntities();
        QCOMPARE(registry().count(), 0);
        QTRY_VERIFY(one.isNull() && another.isNull());
    }

    void deletingAllEmptiesTheRegistryAtOnceAndTheSceneLater()
    {
        PipeEntityBuilder builder;
        const QPointer<Section> first = builder.create(m_first);
        registry().deleteSectionEntities();
        QCOMPARE(registry().count(), 0);
        QVERIFY(first);
        QTRY_VERIFY(first.isNull());
    }

    void replacingASectionByItselfChangesNothing()
    {
        PipeEntityBuilder builder;
        Section* const section = builder.create(m_first);
        QVERIFY(!builder.createOrReplace(section, section, m_first));
        QCOMPARE(registry().getByInspectionId(m_first->id()), section);
    }

    void replacingASectionDeletesTheOldOne()
    {
        PipeEntityBuilder builder;
        const QPointer<Section> old = builder.create(m_first);
        Section* const fresh = builder.createOrReplace(old, nullptr, m_first);
        QVERIFY(fresh);
        QVERIFY(fresh != old);
        QCOMPARE(registry().getByInspectionId(m_first->id()), fresh);
        QTRY_VERIFY(old.isNull());
    }

    void aReplacementAtHandTakesThePlaceOfTheOldSection()
    {
        PipeEntityBuilder builder;
        const QPointer<Section> old = builder.create(m_first);
        Section* const replacement = builder.create(m_second);

        QVERIFY(!builder.createOrReplace(old, replacement, m_first));

        QCOMPARE(registry().getPipeEntities(), QList<Section*> {replacement});
        QVERIFY(!registry().getByInspectionId(m_first->id()));
        QTRY_VERIFY(old.isNull());
    }

    void withoutAnInspectionTheOldSectionOnlyGoes()
    {
        PipeEntityBuilder builder;
        const QPointer<Section> old = builder.create(m_first);
        QVERIFY(!builder.createOrReplace(old, nullptr, {}));
        QCOMPARE(registry().count(), 0);
        QTRY_VERIFY(old.isNull());
        QVERIFY(!builder.createOrReplace(nullptr, nullptr, {}));
    }

    void aLateralInProximityIsAnnouncedWithItsTransform()
    {
        qRegisterMetaType<Qt3DCore::QTransform*>();
        PipeEntityBuilder builder;
        Section* const section = builder.create(m_first);
        QSignalSpy announced(m_root, &SceneRoot::lateralInProximity);
        QSignalSpy over(m_root, &SceneRoot::lateralNotInProximity);

        emit section->lateralInProximity(m_first->id());
        builder.onLateralInProximity(QStringLiteral("nobody"));
        emit section->lateralNotInProximity();

        QCOMPARE(announced.count(), 1);
        QCOMPARE(announced.first().first().toString(), section->getDomainObjectId());
        QCOMPARE(announced.first().at(1).value<Qt3DCore::QTransform*>(), section->transform());
        QCOMPARE(over.count(), 1);
    }

private:
    static PipeEntities& registry() { return SceneEntities::instance().getPipeEntities(); }

    SceneRoot* m_root = nullptr;
    TestProject* m_project = nullptr;
    QSharedPointer<Torvik::Database::CSectionObject> m_pipe;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_first;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_second;
};

QTEST_GUILESS_MAIN(tst_PipeEntities)
#include "tst_PipeEntities.moc"
