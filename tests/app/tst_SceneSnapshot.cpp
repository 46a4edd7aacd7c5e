#include "host/app/SceneSnapshot.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace Torvik::Viewer;

namespace {

SceneSnapshot::Observation observation(const char* id, double distance)
{
    SceneSnapshot::Observation observation;
    observation.id = id;
    observation.code = QStringLiteral("BCAAA");
    observation.kind = QStringLiteral("connection");
    observation.section = QStringLiteral("s1");
    observation.inspection = QStringLiteral("i1");
    observation.distance = distance;
    observation.position = {-2.5f, -2, 4};
    observation.clock = 3;
    observation.bendClock = 9;
    observation.angle = 45.5;
    observation.lateral = QStringLiteral("l1");
    return observation;
}

SceneSnapshot town()
{
    SceneSnapshot snapshot;
    snapshot.origin = {-570123.25, 37.5, 5831456.125};
    snapshot.projection = QStringLiteral("PROJCS[\"x\"]");

    SceneSnapshot::Node second;
    second.key = QStringLiteral("S2");
    second.guid = QStringLiteral("n2");
    second.type = QStringLiteral("MH");
    second.position = {-10.5f, 1.25f, 20};
    second.flags = 16;
    second.depth = 2.5f;
    second.radius = 0.5f;
    second.visible = true;
    SceneSnapshot::Node first = second;
    first.key = QStringLiteral("S1");
    first.guid = QStringLiteral("n1");
    first.position = {};
    SceneSnapshot::Node twin = first;
    twin.guid = QStringLiteral("n0");
    snapshot.nodes = {second, first, twin};

    SceneSnapshot::Section section;
    section.key = QStringLiteral("H1");
    section.guid = QStringLiteral("i1");
    section.sectionId = QStringLiteral("s1");
    section.startNode = QStringLiteral("n1");
    section.endNode = QStringLiteral("n2");
    section.direction = QStringLiteral("downstream");
    section.radius = 0.125f;
    section.points = {{0, -2.5f, 0}, {-10.5f, -2.75f, 20}};
    section.length = 22.59;
    snapshot.sections = {section};
    snapshot.observations = {observation("o3", 12.5), observation("o2", 4.25), observation("o1", 12.5)};
    snapshot.connections = {{"l2", "o3", "s1", {1, 2, 3}}, {"l1", "o2", "s1", {-1.5f, 0.25f, 4}}};
    return snapshot;
}

} // namespace

class tst_SceneSnapshot : public QObject {
    Q_OBJECT

private slots:
    void objectsAreSortedByKeyThenGuid();
    void aNodeTellsAllOfItself();
    void aSectionHasItsPointsInBothFrames();
    void aSecondPipeShowsWhenThereIsOne();
    void anObservationTellsAllOfItself();
    void observationsFollowOneAnotherAlongThePipe();
    void aPlanTellsWhereItLies();
    void floorsTellTheirHeightsAndPlans();
    void connectionsAreSortedByTheirLateral();
    void numbersReadBackAsTheSame();
    void theProjectorsScaleIsTakenOut();
    void boundsReachFromTheInvertToTheTop();
    void whatDoesNotShowHasNoBounds();
};

void tst_SceneSnapshot::objectsAreSortedByKeyThenGuid()
{
    const QJsonArray nodes = toJson(town()).value(QStringLiteral("nodes")).toArray();

    QStringList order;
    for (const QJsonValue& node : nodes)
        order << node.toObject().value(QStringLiteral("guid")).toString();
    QCOMPARE(order, QStringList({QStringLiteral("n0"), QStringLiteral("n1"), QStringLiteral("n2")}));
}

void tst_SceneSnapshot::aNodeTellsAllOfItself()
{
    const QJsonObject node = toJson(town()).value(QStringLiteral("nodes")).toArray().at(2).toObject();

    QCOMPARE(node.value(QStringLiteral("key")).toString(), QStringLiteral("S2"));
    QCOMPARE(node.value(QStringLiteral("type")).toString(), QStringLiteral("MH"));
    QCOMPARE(node.value(QStringLiteral("position")).toArray(), QJsonArray({-10.5, 1.25, 20}));
    QCOMPARE(node.value(QStringLiteral("flags")).toInt(), 16);
    QCOMPARE(node.value(QStringLiteral("depth")).toDouble(), 2.5);
    QCOMPARE(node.value(QStringLiteral("radius")).toDouble(), 0.5);
    QCOMPARE(node.value(QStringLiteral("visible")).toBool(), true);
    QVERIFY(node.contains(QStringLiteral("seaLevel")));
}

void tst_SceneSnapshot::aSectionHasItsPointsInBothFrames()
{
    const QJsonObject section = toJson(town()).value(QStringLiteral("sections")).toArray().at(0).toObject();

    QCOMPARE(section.value(QStringLiteral("points")).toArray().at(0).toArray(), QJsonArray({0, -2.5, 0}));
    QCOMPARE(section.value(QStringLiteral("projectedPoints")).toArray().at(0).toArray(),
             QJsonArray({570123.25, 5831456.125, 35.0}));
    const QJsonArray end = section.value(QStringLiteral("projectedPoints")).toArray().at(1).toArray();
    QCOMPARE(end.at(0).toDouble(), 570133.75);
    QCOMPARE(end.at(1).toDouble(), 5831476.125);
    QCOMPARE(section.value(QStringLiteral("direction")).toString(), QStringLiteral("downstream"));
    QCOMPARE(section.value(QStringLiteral("lateral")).toBool(true), false);
    QVERIFY(!section.contains(QStringLiteral("secondPoints")));
}

void tst_SceneSnapshot::aSecondPipeShowsWhenThereIsOne()
{
    SceneSnapshot snapshot = town();
    snapshot.sections[0].secondPoints = {{1, 2, 3}};

    const QJsonObject section = toJson(snapshot).value(QStringLiteral("sections")).toArray().at(0).toObject();

    QCOMPARE(section.value(QStringLiteral("secondPoints")).toArray().size(), 1);
    QCOMPARE(section.value(QStringLiteral("secondProjectedPoints")).toArray().size(), 1);
}

void tst_SceneSnapshot::anObservationTellsAllOfItself()
{
    const QJsonObject json = toJson(town()).value(QStringLiteral("observations")).toArray().at(0).toObject();

    QCOMPARE(json, QJsonObject({{"id", "o2"},
                                {"code", "BCAAA"},
                                {"kind", "connection"},
                                {"section", "s1"},
                                {"inspection", "i1"},
                                {"distance", 4.25},
                                {"position", QJsonArray({-2.5, -2, 4})},
                                {"clock", 3},
                                {"bendClock", 9},
                                {"angle", 45.5},
                                {"lateral", "l1"}}));
}

void tst_SceneSnapshot::observationsFollowOneAnotherAlongThePipe()
{
    const QJsonArray observations = toJson(town()).value(QStringLiteral("observations")).toArray();

    QStringList order;
    for (const QJsonValue& observation : observations)
        order << observation.toObject().value(QStringLiteral("id")).toString();
    QCOMPARE(order, QStringList({QStringLiteral("o2"), QStringLiteral("o1"), QStringLiteral("o3")}));
}

void tst_SceneSnapshot::aPlanTellsWhereItLies()
{
    SceneSnapshot snapshot;
    QMatrix4x4 matrix;
    matrix.translate(7, -3, 9);
    snapshot.plans = {{"imagebackground", "/p/plan.png", matrix, {50, 0, -25}, -3, true, false, true}};

    const QJsonArray plans = toJson(snapshot).value(QStringLiteral("plans")).toArray();

    QCOMPARE(plans.size(), 1);
    const QJsonObject plan = plans.first().toObject();
    QCOMPARE(plan.value(QStringLiteral("kind")).toString(), QStringLiteral("imagebackground"));
    QCOMPARE(plan.value(QStringLiteral("file")).toString(), QStringLiteral("/p/plan.png"));
    QCOMPARE(plan.value(QStringLiteral("matrix")).toArray(),
             (QJsonArray {QJsonArray {1, 0, 0, 7}, QJsonArray {0, 1, 0, -3}, QJsonArray {0, 0, 1, 9},
                          QJsonArray {0, 0, 0, 1}}));
    QCOMPARE(plan.value(QStringLiteral("anchor")).toArray(), (QJsonArray {50, 0, -25}));
    QCOMPARE(plan.value(QStringLiteral("elevation")).toDouble(), -3.0);
    QCOMPARE(plan.value(QStringLiteral("locked")).toBool(), true);
    QCOMPARE(plan.value(QStringLiteral("visible")).toBool(), false);
    QCOMPARE(plan.value(QStringLiteral("toConfirm")).toBool(), true);
    QVERIFY(!plan.contains(QStringLiteral("floor")));
}

void tst_SceneSnapshot::floorsTellTheirHeightsAndPlans()
{
    SceneSnapshot snapshot;
    snapshot.plans = {{"imagebackground", "/p/one.png", {}, {}, 3, false, true, false, 1}};
    snapshot.floors = {1, {0.0, 3.0, 3.5}};

    const QJsonObject scene = toJson(snapshot);

    QCOMPARE(scene.value(QStringLiteral("plans")).toArray().first().toObject().value(QStringLiteral("floor")).toInt(),
             1);
    const QJsonObject floors = scene.value(QStringLiteral("floors")).toObject();
    QCOMPARE(floors.value(QStringLiteral("shown")).toInt(), 1);
    QCOMPARE(floors.value(QStringLiteral("heights")).toArray(), (QJsonArray {0.0, 3.0, 3.5}));
    QCOMPARE(toJson(SceneSnapshot()).value(QStringLiteral("floors")).toObject(),
             (QJsonObject {{"shown", -1}, {"heights", QJsonArray()}}));
}

void tst_SceneSnapshot::connectionsAreSortedByTheirLateral()
{
    const QJsonArray connections = toJson(town()).value(QStringLiteral("connections")).toArray();

    QCOMPARE(connections.size(), 2);
    QCOMPARE(
        connections.at(0).toObject(),
        QJsonObject(
            {{"lateral", "l1"}, {"observation", "o2"}, {"section", "s1"}, {"point", QJsonArray({-1.5, 0.25, 4})}}));
    QCOMPARE(connections.at(1).toObject().value(QStringLiteral("lateral")).toString(), QStringLiteral("l2"));
}

void tst_SceneSnapshot::numbersReadBackAsTheSame()
{
    SceneSnapshot snapshot = town();
    snapshot.origin = {1.0 / 3.0, 5831456.1000000006, -0.1};

    const QByteArray text = QJsonDocument(toJson(snapshot)).toJson();
    const QJsonArray origin = QJsonDocument::fromJson(text)
                                  .object()
                                  .value(QStringLiteral("projector"))
                                  .toObject()
                                  .value(QStringLiteral("origin"))
                                  .toArray();

    QVERIFY(origin.at(0).toDouble() == 1.0 / 3.0);
    QVERIFY(origin.at(1).toDouble() == 5831456.1000000006);
    QVERIFY(origin.at(2).toDouble() == -0.1);
}

void tst_SceneSnapshot::theProjectorsScaleIsTakenOut()
{
    SceneSnapshot snapshot;
    snapshot.origin = {-50, 10, 100};
    snapshot.scale = 0.5;

    const auto projected = projectedFromScene({-1, 2, 3}, snapshot);

    QCOMPARE(projected.x(), 102.0);
    QCOMPARE(projected.y(), 206.0);
    QCOMPARE(projected.z(), 24.0);
}

void tst_SceneSnapshot::boundsReachFromTheInvertToTheTop()
{
    const Bounds bounds = boundsOf(town());

    QCOMPARE(bounds.lowest(), QVector3D(-11, -2.875f, -0.5f));
    QCOMPARE(bounds.highest(), QVector3D(0.5f, 1.75f, 20.5f));
}

void tst_SceneSnapshot::whatDoesNotShowHasNoBounds()
{
    SceneSnapshot snapshot = town();
    for (SceneSnapshot::Node& node : snapshot.nodes)
        node.visible = false;
    snapshot.sections[0].length = 0.01;

    QVERIFY(boundsOf(snapshot).isEmpty());
}

QTEST_APPLESS_MAIN(tst_SceneSnapshot)
#include "tst_SceneSnapshot.moc"
