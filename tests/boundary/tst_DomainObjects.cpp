#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "domain/boundary/CColumnNameResolver.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "domain/boundary/ColumnNames.h"
#include "host/domain/ObservationCodes.h"

#include <limits>

using namespace Torvik;
using namespace Torvik::Database;
using Kx::Test::TestProject;

class tst_DomainObjects : public QObject {
    Q_OBJECT

private slots:
    void aProjectIsATree()
    {
        TestProject p;
        const auto a = p.addNode("A");
        const auto b = p.addNode("B");
        const auto section = p.addSection("A-B", a, b);
        const auto lateral = p.addLateral("L", section);
        const auto inspection = p.addInspection(section, {}, 2);
        const auto observation = p.addObservation(inspection, "BCA", 3.5);

        const auto typeOf = [](const CDomainObjectPointer& object) { return int(object->objectType()); };
        QCOMPARE(typeOf(p.project()), 1);
        QCOMPARE(typeOf(section), 3);
        QCOMPARE(typeOf(lateral), 4);
        QCOMPARE(typeOf(inspection), 5);
        QCOMPARE(typeOf(observation), 6);
        QCOMPARE(typeOf(a), 7);
        QCOMPARE(p.project()->nodeCount(), 2);
        QCOMPARE(p.project()->node(1), b);
        QCOMPARE(p.project()->sectionCount(), 1);
        QCOMPARE(p.project()->section(0)->id(), section->id());
        QCOMPARE(p.project()->lateralCount(), 1);
        QCOMPARE(p.project()->lateral(0)->objectType(), LateralObjectType);
        QCOMPARE(section->inspectionCount(), 1);
        QCOMPARE(inspection->startNode(), b);
        QCOMPARE(inspection->endNode(), a);
        QCOMPARE(inspection->inspectionDirection(), 2);
        QCOMPARE(inspection->observationCount(), 1);
        QCOMPARE(observation->parentObject().toStrongRef(), CDomainObjectPointer(inspection));
        QCOMPARE(CDomainObject::projectFromObject(observation), p.project());
        QCOMPARE(p.project()->lookupObject(observation->id()), CDomainObjectPointer(observation));
        QCOMPARE(p.project()->lookupObject(p.project()->id()), CDomainObjectPointer(p.project()));
        QCOMPARE(p.project()->findChildObjectById(NodeObjectType, a->id()), a);
        QVERIFY(!p.project()->findChildObjectById(SectionObjectType, a->id()));
        QVERIFY(!p.project()->findChildObjectById(PipeInspectionObjectType, inspection->id()));
        QCOMPARE(section->findChildObjectById(PipeInspectionObjectType, inspection->id()),
                 CDomainObjectPointer(inspection));
        QVERIFY(!section->findChildObjectById(PipeObservationObjectType, observation->id()));
        QCOMPARE(lateral->readValue("OBJ_Section_REF").toString(), section->id());
    }

    void aParentThatHasGoneTestsAsFalse()
    {
        TestProject p;
        const auto section = p.addSection("S", {}, {});
        QVERIFY(section->parentObject());
        QVERIFY(!p.project()->parentObject());

        p.close();

        QVERIFY(!section->parentObject());
    }

    void anIndexOutsideGivesNull()
    {
        TestProject p;
        const auto section = p.addSection("S", {}, {});
        const auto inspection = p.addInspection(section);

        QVERIFY(!p.project()->node(0));
        QVERIFY(!p.project()->section(-1));
        QVERIFY(!p.project()->section(1));
        QVERIFY(!p.project()->lateral(0));
        QVERIFY(!section->inspection(1));
        QVERIFY(!inspection->observation(0));
        QVERIFY(!inspection->startNode());
        QVERIFY(!p.project()->lookupObject("unknown"));
        QVERIFY(!CDomainObject::projectFromObject({}));
    }

    void aProjectComesBackFromTheDiskAsItWas()
    {
        TestProject p("LOCAL_CS[\"x\"]");
        const auto a = p.addNode("A", "POINT ZM(1 2 3 16)", {{"OBJ_DepthToInvert", 2.5}, {"OBJ_Type", "Manhole"}});
        const auto section =
            p.addSection("S", a, {}, {{"OBJ_Size1", 300}, {"OBJ_Street", QStringLiteral("Große Straße")}});
        const auto inspection = p.addInspection(section, "LINESTRING ZM(1 2 3 144,4 5 6 0)");
        const auto observation =
            p.addObservation(inspection, "BCC", 1.25, {{"OBS_Q1_Value", 45}, {"OBS_ClockPos1", 3}});
        const QStringList ids {a->id(), section->id(), inspection->id(), observation->id()};

        p.reopen();

        const auto project = p.project();
        QCOMPARE(project->projectionWKT(), QString("LOCAL_CS[\"x\"]"));
        QVERIFY(project->is3dProject());
        QCOMPARE(project->node(0)->id(), ids[0]);
        QCOMPARE(project->node(0)->readValue("OBJ_DepthToInvert"), QVariant(2.5));
        QCOMPARE(project->section(0)->readValue("OBJ_Size1").toDouble(), 300.0);
        QCOMPARE(project->section(0)->readValue("OBJ_Street").toString(), QStringLiteral("Große Straße"));
        QCOMPARE(project->section(0)->inspection(0)->readValue(SECINSP_SHAPE_WKT_COLUMN).toString(),
                 QString("LINESTRING ZM(1 2 3 144,4 5 6 0)"));
        QCOMPARE(project->section(0)->inspection(0)->startNode(), project->node(0));
        QCOMPARE(project->section(0)->inspection(0)->observation(0)->id(), ids[3]);
        QCOMPARE(project->section(0)->inspection(0)->observation(0)->readValue("OBS_Q1_Value").toInt(), 45);
    }

    void absentAndEmptyColumnsGiveNoValue()
    {
        TestProject p;
        const auto a = p.addNode("A");

        QVERIFY(!a->readValue("NO_SUCH_COLUMN").isValid());
        QVERIFY(a->readValue("OBJ_Size1").isNull());
    }

    void aChangedValueReachesTheDatabaseWithUpdateObject()
    {
        TestProject p;
        const auto a = p.addNode("A");

        a->updateValue("OBJ_Key", "New");

        QCOMPARE(a->readValue("OBJ_Key").toString(), QString("New"));
        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("A"));
        CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);
        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("New"));
    }

    void anInvalidValueEmptiesTheColumn()
    {
        TestProject p;
        const auto a = p.addNode("A", "POINT ZM(1 2 3 4)");

        a->updateValue(NODE_SHAPE_WKT_COLUMN, QVariant());
        CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);

        QVERIFY(a->readValue(NODE_SHAPE_WKT_COLUMN).isNull());
        QVERIFY(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Shape_WKT").isNull());
    }

    void aKeyWithoutColumnLivesInMemoryOnly()
    {
        TestProject p;
        const auto inspection = p.addInspection(p.addSection("S", {}, {}));
        Kx::Test::LogCapture log;

        inspection->updateValue("OBJ_Shape_WKT", "text");
        CDatabaseLibrary::dbAccessManager()->updateObject(inspection, 1);

        QCOMPARE(inspection->readValue("OBJ_Shape_WKT").toString(), QString("text"));
        QVERIFY(log.lines().isEmpty());
    }

    void theProjectsCoordinateSystemIsStored()
    {
        TestProject p;
        QCOMPARE(p.project()->projectionWKT(), QString());

        p.project()->setProjectionWKT("PROJCS[\"a\"]");
        CDatabaseLibrary::dbAccessManager()->updateObject(p.project(), -1);
        p.reopen();

        QCOMPARE(p.project()->projectionWKT(), QString("PROJCS[\"a\"]"));
    }

    void anObjectOfAClosedProjectIsReadableAndInvalid()
    {
        TestProject p;
        const auto a = p.addNode("A");
        p.close();
        Kx::Test::LogCapture log;

        QVERIFY(!a->isValid());
        QCOMPARE(a->readValue("OBJ_Key").toString(), QString("A"));
        QVERIFY(!CDomainObject::projectFromObject(a));
        a->updateValue("OBJ_Key", "New");
        CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(int(log.lines().first().level), 1);
    }

    void aFailedWriteIsToldAndCanBeRepeated()
    {
        TestProject p;
        const auto a = p.addNode("A");
        QSignalSpy failed(&ProjectStore::instance(), &ProjectStore::writeFailed);
        StoreStatus status;
        auto other = SqlConnection::open(ProjectStore::databaseFile(p.path()), SqlConnection::ReadWrite, status);
        {
            SqlTransaction lock(*other);
            QVERIFY(lock.begun().ok());
            a->updateValue("OBJ_Key", "New");
            Kx::Test::LogCapture log;
            CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);
            QVERIFY(log.lines().value(0).message.contains("locked"));
        }

        CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);

        // It passes, so nobody is told that it has failed.
        QCOMPARE(failed.count(), 0);
        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("New"));
    }

    void deletingTakesAllBelowWithIt()
    {
        TestProject p;
        const auto section = p.addSection("S", {}, {});
        const auto inspection = p.addInspection(section);
        const auto observation = p.addObservation(inspection, "BCE", 1);

        QVERIFY(ProjectStore::instance().deleteObject(section).ok());

        QCOMPARE(p.project()->sectionCount(), 0);
        QVERIFY(!observation->isValid());
        QVERIFY(!p.project()->lookupObject(observation->id()));
        QVERIFY(p.stored("SECOBS", "OBS_PK", observation->id(), "OBS_PK").isNull());
    }

    void objectsOnlyStandUnderTheirKindOfParent()
    {
        TestProject p;
        const auto a = p.addNode("A");
        auto& store = ProjectStore::instance();

        QVERIFY(!store.insertObject(a, PipeInspectionObjectType, {}).error.isEmpty());
        QVERIFY(!store.insertObject(p.project(), PipeObservationObjectType, {}).error.isEmpty());
        QVERIFY(!store.insertObject({}, NodeObjectType, {}).error.isEmpty());
        QVERIFY(!store.insertObject(p.project(), NodeObjectType, {{"NO_COLUMN", 1}}).error.isEmpty());
        QVERIFY(!store.deleteObject(p.project()).ok());
        QCOMPARE(p.project()->nodeCount(), 1);
    }

    void codesTellTheirKind_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<unsigned>("flags");
        QTest::newRow("bend") << "BCC" << 0x400U;
        QTest::newRow("end") << "BCE" << 0x4U;
        QTest::newRow("connection") << "BCA" << 0x8U;
        QTest::newRow("with characterisation") << " bcaea " << 0x8U;
        QTest::newRow("crack") << "BAB" << 0U;
        QTest::newRow("none") << "" << 0U;
        QTest::newRow("host's own") << "XYZ" << 0x2000U;
    }

    void codesTellTheirKind()
    {
        QFETCH(QString, code);
        ObservationCodes::setFlags("XYZ", 0x2000U);
        TestProject p;

        const auto observation = p.addObservation(p.addInspection(p.addSection("S", {}, {})), code, 0);

        QTEST(observation->codeTypeFlags(), "flags");
        QCOMPARE(observation->code(), code);
    }

    void sizesComeInTheProjectsUnit()
    {
        TestProject p;
        const auto a = p.addNode("A", {}, {{"OBJ_Size1", 1000}});
        const auto b = p.addNode("B");

        QCOMPARE(CColumnNameResolver::sizeToProjectUnit(a, "OBJ_Size1"), QVariant(1.0));
        QVERIFY(CColumnNameResolver::sizeToProjectUnit(b, "OBJ_Size1").isNull());
        QVERIFY(CColumnNameResolver::sizeToProjectUnit({}, "OBJ_Size1").isNull());
        Base::HostSettings::setDistanceUnit(Base::HostSettings::unitFeet);
        QCOMPARE(CColumnNameResolver::sizeToProjectUnit(a, "OBJ_Size1").toDouble(), 1000.0 / 304.8);
        Base::HostSettings::setDistanceUnit(Base::HostSettings::unitMetres);
    }

    void qmlSeesNameStartNodeAndAddress()
    {
        TestProject p;
        const auto a = p.addNode("A", {}, {{"OBJ_Street", "Node Street"}, {"OBJ_City", "Town"}});
        const auto section = p.addSection("S", a, {}, {{"OBJ_Street", "Pipe Street"}});
        const QmlWrapper::CQmlDomainObject inspection(p.addInspection(section));

        QVERIFY(inspection.isValid());
        QCOMPARE(inspection.queryName(), QString("S"));
        QCOMPARE(inspection.getStartNode().id(), a->id());
        QCOMPARE(inspection.queryAddressDetailsOfStartingNode(), (QVariantList {"Node Street", "Town", ""}));
        QCOMPARE(inspection.queryAddressDetails(), (QVariantList {"Pipe Street", "", ""}));
        QVERIFY(!QmlWrapper::CQmlDomainObject(a).getStartNode().isValid());
        QVERIFY(!QmlWrapper::CQmlDomainObject().isValid());
        QCOMPARE(QmlWrapper::CQmlDomainObject().objectType(), 0);
        QCOMPARE(QmlWrapper::CQmlDomainObject().queryAddressDetails(), QVariantList());
    }

    void qmlSeesWhatKindOfObjectItIs()
    {
        TestProject p;
        const auto node = p.addNode("A");
        const auto section = p.addSection("S", node, {});
        const auto lateral = p.addLateral("L", section);
        const auto inspection = p.addInspection(section, {}, 1, {{"INS_Key", "2024"}});
        const auto observation = p.addObservation(inspection, "BCA", 1);
        struct Row {
            CDomainObjectPointer object;
            const char* name;
            const char* templateId;
        };
        for (const Row& row :
             {Row {p.project(), "Test", "PROJECT"}, Row {section, "S", "SECTION"}, Row {lateral, "L", "LATERAL"},
              Row {inspection, "2024", "SECINSP"}, Row {observation, "BCA", "SECOBS"}, Row {node, "A", "NODE"}}) {
            const auto copy = QVariant::fromValue(QmlWrapper::CQmlDomainObject(row.object));
            const auto seen = copy.value<QmlWrapper::CQmlDomainObject>();
            QCOMPARE(seen.object(), row.object);
            QCOMPARE(seen.objectType(), int(row.object->objectType()));
            QCOMPARE(seen.queryName(), QString(row.name));
            QCOMPARE(seen.queryTemplateId(), QString(row.templateId));
        }
        QCOMPARE(QmlWrapper::CQmlDomainObject().queryTemplateId(), QString());
    }

    void whatIsActiveIsHandedOverAndNullWhenTheProjectCloses()
    {
        TestProject p;
        const CDomainObjectPointer section = p.addSection("S", {}, {});
        const CDomainObjectPointer inspection = p.addInspection(section);
        const CDomainObjectPointer project = p.project();
        AppState& state = AppState::instance();
        QVector<CDomainObjectPointer> projects;
        QVector<CDomainObjectPointer> inspections;
        QVector<CDomainObjectPointer> structures;
        const QObject here;
        connect(&state, &AppState::activeProjectChanged, &here, [&](const auto& object) { projects << object; });
        connect(&state, &AppState::activeInspectionChanged, &here, [&](const auto& object) { inspections << object; });
        connect(&state, &AppState::activeStructureChanged, &here, [&](const auto& object) { structures << object; });

        p.activate();
        state.setActiveStructure(section);
        state.setActiveInspection(inspection);
        QCOMPARE(state.getActiveInspection(), inspection);
        QCOMPARE(state.getActiveStructure(), section);
        p.close();

        QCOMPARE(projects, (QVector<CDomainObjectPointer> {project, {}}));
        QCOMPARE(inspections, (QVector<CDomainObjectPointer> {inspection, {}}));
        QCOMPARE(structures, (QVector<CDomainObjectPointer> {section, {}}));
        QVERIFY(!state.getActiveInspection());
        QVERIFY(!state.getActiveStructure());
        QVERIFY(!state.getActiveJob());
    }

    void aChangeOfProjectFirstClearsWhatBelongsToTheFormerOne()
    {
        TestProject p;
        const auto section = p.addSection("S", {}, {});
        AppState& state = AppState::instance();
        QStringList order;
        const auto c1 = connect(&state, &AppState::activeProjectChanged, this, [&] { order << "project"; });
        const auto c2 = connect(&state, &AppState::activeInspectionChanged, this, [&] { order << "inspection"; });
        const auto c3 = connect(&state, &AppState::activeStructureChanged, this, [&] { order << "structure"; });

        p.activate();
        p.activate();
        QVERIFY(state.is3dProjectActive());
        state.setActiveStructure(section);
        state.setActiveInspection(p.addInspection(section));
        p.close();

        QCOMPARE(order, (QStringList {"project", "structure", "inspection", "inspection", "structure", "project"}));
        QVERIFY(!state.getActiveProject());
        QVERIFY(!state.is3dProjectActive());
        for (const auto& connection : {c1, c2, c3}) {
            disconnect(connection);
        }
    }

    void aProjectMayBeNo3dProject()
    {
        TestProject p({}, false);
        p.activate();

        QVERIFY(!p.project()->is3dProject());
        QVERIFY(!AppState::instance().is3dProjectActive());
    }

    void unloadingIsAnnouncedWhileAllIsValid()
    {
        TestProject p;
        const auto a = p.addNode("A");
        bool validThen = false;
        const auto connection = connect(CDatabaseLibrary::dbAccessManager(), &CProjectDBAccessManager::projectUnloading,
                                        this, [&](const QSharedPointer<CProjectObject>& project) {
                                            validThen = project->isValid() && a->isValid();
                                            a->updateValue("OBJ_Key", "Last");
                                            CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);
                                        });

        p.close();
        disconnect(connection);

        QVERIFY(validThen);
        QCOMPARE(p.stored("NODE", "OBJ_PK", a->id(), "OBJ_Key").toString(), QString("Last"));
    }

    void aNumberThatIsNoneStaysReadableInMemory()
    {
        TestProject p;
        const auto observation = p.addObservation(p.addInspection(p.addSection("S", {}, {})), "BAB", 1);

        observation->updateValue("OBS_Distance", std::numeric_limits<double>::quiet_NaN());

        QVERIFY(qIsNaN(observation->readValue("OBS_Distance").toDouble()));
    }
};

QTEST_GUILESS_MAIN(tst_DomainObjects)
#include "tst_DomainObjects.moc"
