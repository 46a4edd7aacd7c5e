#include "ImportFixtures.h"

#include "host/import/CourseFrame.h"
#include "host/import/CourseGeometry.h"
#include "host/import/FindingsAssembler.h"
#include "host/import/IsybauFindings.h"
#include "host/import/LateralJoins.h"

#include <QQuaternion>
#include <QVector3D>
#include <QtTest>

using namespace Torvik::Import;
using namespace ImportFixtures;

namespace {

/** The observations of the n-th inspection of a pipe. */
QVector<ObservationRow> observations(const Imported& net, const QString& pipe, int inspection = 0)
{
    const QString id = net.inspections(pipe).value(inspection).id;
    QVector<ObservationRow> found;
    for (const ObservationRow& row : net.project.observations) {
        if (row.inspectionId == id)
            found.append(row);
    }
    return found;
}

/** The points of a stored line, without their flags. */
QVector<Point> pointsOf(const QString& wkt)
{
    QVector<Point> points;
    const QString inner = wkt.mid(wkt.indexOf(QLatin1Char('(')) + 1).chopped(1);
    for (const QString& part : inner.split(QLatin1Char(','))) {
        const QStringList words = part.split(QLatin1Char(' '));
        points.append({words[0].toDouble(), words[1].toDouble(), words[2].toDouble()});
    }
    return points;
}

bool isAt(const Point& point, double x, double y, double z)
{
    // Sines of right angles leave some 1e-15 of the length, and eastings hold nine decimals.
    return qAbs(point.x - x) < 1e-6 && qAbs(point.y - y) < 1e-6 && qAbs(*point.z - z) < 1e-6;
}

std::optional<int> hour(int value)
{
    return value > 0 ? std::optional<int>(value) : std::nullopt;
}

} // namespace

class tst_Findings : public QObject {
    Q_OBJECT

private slots:
    void aFindingFillsItsColumns();
    void aRangeKnowsItsEnd();
    void stationsFromTheOtherEndAreTurned();
    void connectionsFindTheirLaterals();
    void aLateralKeepsItsFirstConnection();
    void geometryFillsWhatTheFindingLacks();
    void aSurveyedCourseStaysAsItIs();
    void aStraightCourseGetsItsBends();
    void aPipeToNowhereGetsTheCourseOfItsBends();
    void nothingIsDroppedInSilence();
    void bendsTurnToTheHour_data();
    void bendsTurnToTheHour();
    void bendsTurnAsTheViewTurns_data();
    void bendsTurnAsTheViewTurns();
    void bendsOfACourse();
    void branches_data();
    void branches();
    void pointsHaveAFootOnTheCourse();
    void theNearestPairComesFirst();
    void clocksTellNeighboursApart();
    void everyRealFindingIsAccountedFor();
    void realConnectionsFindTheirLaterals();
    void realBendsHaveHourAndAngle();
};

void tst_Findings::aFindingFillsItsColumns()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const ObservationRow row = observations(net, "SURVEYED").value(1);

    QCOMPARE(row.finding.code, QStringLiteral("BAB"));
    QCOMPARE(row.finding.ch1, QStringLiteral("B"));
    QCOMPARE(row.finding.ch2, QStringLiteral("A"));
    QCOMPARE(row.finding.distance, 3.5);
    QCOMPARE(*row.finding.q1, 1.5);
    QCOMPARE(*row.finding.q2, 7.0);
    QCOMPARE(*row.finding.clock1, 2);
    QCOMPARE(*row.finding.clock2, 5);
    QVERIFY(row.finding.isAtJoint);
    QCOMPARE(row.finding.photo, QStringLiteral("p1.jpg"));
    QCOMPARE(row.finding.videoTime, QStringLiteral("01020304"));
    QCOMPARE(row.finding.remarks, QStringLiteral("Riss"));
    QCOMPARE(row.finding.attributes.value("isybau").toObject().value("Station").toString(), QStringLiteral("3,50"));
    QVERIFY(!row.finding.bendClock);
    QVERIFY(!row.finding.angle);
    // "00" is no hour.
    QCOMPARE(*observations(net, "SURVEYED").value(2).finding.clock1, 9);
    QVERIFY(!observations(net, "SURVEYED").value(2).finding.clock2);
}

void tst_Findings::aRangeKnowsItsEnd()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const auto rows = observations(net, "SURVEYED");

    QCOMPARE(rows[1].finding.range, QStringLiteral("A1"));
    QCOMPARE(*rows[1].finding.distanceEnd, 6.25);
    QCOMPARE(rows[2].finding.range, QStringLiteral("B1"));
    QVERIFY(!rows[2].finding.distanceEnd);
    QCOMPARE(net.problems("AWAY", "the range B4 ends without a beginning"), 1);
    QCOMPARE(net.problems("AWAY", "the range A5 has no end"), 1);
}

void tst_Findings::stationsFromTheOtherEndAreTurned()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const auto rows = observations(net, "SURVEYED", 1);

    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows[0].finding.distance, 0.0);
    QCOMPARE(rows[1].finding.distance, 40.0);
    QCOMPARE(rows[2].finding.distance, 50.0);
    QCOMPARE(net.problems("SURVEYED", "counted from the other end"), 1);
}

void tst_Findings::connectionsFindTheirLaterals()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const auto rows = observations(net, "SURVEYED");

    QCOMPARE(rows[3].lateralId, net.pipe("L1")->id);
    // 1.2 m from the same joint, but that one is the other's.
    QVERIFY(rows[4].lateralId.isEmpty());
    QCOMPARE(rows[5].lateralId, net.pipe("L2")->id);
    QCOMPARE(*rows[3].finding.q1, 150.0);
}

void tst_Findings::aLateralKeepsItsFirstConnection()
{
    const Imported net = isybau({own("findings_2017.xml")});

    // The second inspection sees L1 again, from the other side.
    const ObservationRow again = observations(net, "SURVEYED", 1).value(1);

    QCOMPARE(again.finding.code, QStringLiteral("BCA"));
    QVERIFY(again.lateralId.isEmpty());
}

void tst_Findings::geometryFillsWhatTheFindingLacks()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const auto rows = observations(net, "SURVEYED");

    // L1 leaves to the right at a right angle; L2 comes from behind on the left, and its finding knows the hour.
    QCOMPARE(*rows[3].finding.clock1, 3);
    QCOMPARE(*rows[3].finding.angle, 90.0);
    QCOMPARE(*rows[5].finding.clock1, 10);
    QVERIFY(qAbs(*rows[5].finding.angle - 45.0) < 1e-9);
    QVERIFY(!rows[4].finding.angle);
}

void tst_Findings::aSurveyedCourseStaysAsItIs()
{
    const Imported net = isybau({own("findings_2017.xml")});

    QCOMPARE(net.inspections("SURVEYED").value(0).shapeWkt,
             QStringLiteral("LINESTRING ZM(565000 5932050 10 320,565000 5932000 10 0)"));
    QCOMPARE(*observations(net, "SURVEYED").value(6).finding.bendClock, 9);
    QCOMPARE(*observations(net, "SURVEYED").value(6).finding.angle, 30.0);
}

void tst_Findings::aStraightCourseGetsItsBends()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const QString shape = net.inspections("STRAIGHT").value(0).shapeWkt;

    // From B southwards, after 10 m to the right, which is west, after 5 m straight up.
    const QVector<Point> points = pointsOf(shape);
    QCOMPARE(points.size(), 4);
    QVERIFY(shape.startsWith("LINESTRING ZM(565000 5932050 10 192,"));
    QVERIFY(isAt(points[1], 565000, 5932040, 10));
    QVERIFY(isAt(points[2], 564995, 5932040, 10));
    QVERIFY(isAt(points[3], 564995, 5932040, 25));
    // The pipe itself keeps to its nodes, as something that was not surveyed.
    QCOMPARE(net.pipe("STRAIGHT")->shapeWkt, QStringLiteral("LINESTRING ZM(565000 5932000 10 1,565000 5932050 10 0)"));
}

void tst_Findings::aPipeToNowhereGetsTheCourseOfItsBends()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const QString shape = net.inspections("AWAY").value(0).shapeWkt;

    // Stored from the downstream end. Without an end node it begins northwards, and 4 m on it turns left.
    const QVector<Point> points = pointsOf(shape);
    QCOMPARE(points.size(), 3);
    QVERIFY(isAt(points[2], 565000, 5932000, 10));
    QVERIFY(isAt(points[1], 565000, 5932004, 10));
    QVERIFY(isAt(points[0], 564992, 5932004, 10));
}

void tst_Findings::nothingIsDroppedInSilence()
{
    const Imported net = isybau({own("findings_2017.xml")});

    const ImportReport::Count count = net.report.count(Kinds::Observations);

    QCOMPARE(count.read, 23);
    QCOMPARE(count.leftOut, 3);
    QCOMPARE(count.taken, net.project.observations.size());
    QVERIFY(net.report.isBalanced());
    QCOMPARE(net.problems("AWAY", "no InspektionsKode"), 1);
    QCOMPARE(net.problems("AWAY", "BAA: Station is no number: \"bald\""), 1);
    QCOMPARE(net.problems("AWAY", "BAF: Station -1.00 lies before the start"), 1);
    QCOMPARE(net.problems("AWAY", "BBA at 33 m lies beyond the pipe, which is 20 m long"), 1);
    QCOMPARE(net.problems("AWAY", "PositionVon is no hour of the clock: \"25\""), 1);
    QCOMPARE(net.problems("AWAY", "Quantifizierung1Numerisch is not a number: \"viel\""), 1);
    QCOMPARE(net.problems("AWAY", "a bend that does not say whereto"), 1);
    QCOMPARE(net.problems("AWAY", "a bend without an angle"), 1);
    QSet<QString> ids;
    for (const ObservationRow& row : net.project.observations)
        ids.insert(row.id);
    QCOMPARE(ids.size(), net.project.observations.size());
}

void tst_Findings::bendsTurnToTheHour_data()
{
    QTest::addColumn<QString>("sideways");
    QTest::addColumn<QString>("upDown");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("clock");
    const auto row = [](const char* name, const char* a, const char* b, int from, int to, int clock) {
        QTest::newRow(name) << QString(a) << QString(b) << from << to << clock;
    };
    row("left", "A", "Y", 0, 0, 9);
    row("right", "B", "", 0, 0, 3);
    row("up", "Y", "A", 0, 0, 12);
    row("down", "", "B", 0, 0, 6);
    row("the letters count, not the clock", "Y", "A", 6, 0, 12);
    row("left and up", "A", "A", 0, 0, 10);
    row("left and up, at eleven", "A", "A", 11, 0, 11);
    row("right and up", "B", "A", 0, 0, 2);
    row("right and up, at one", "B", "A", 1, 0, 1);
    row("right and down", "B", "B", 0, 0, 4);
    row("right and down, at five", "B", "B", 5, 0, 5);
    row("left and down", "A", "B", 0, 0, 8);
    row("left and down, the clock elsewhere", "A", "B", 3, 0, 8);
    row("the clock alone", "", "", 7, 0, 7);
    row("a range of the clock", "Y", "Y", 11, 1, 12);
    row("a range over three", "", "", 2, 4, 3);
    row("nothing", "Y", "Y", 0, 0, 0);
}

void tst_Findings::bendsTurnToTheHour()
{
    QFETCH(QString, sideways);
    QFETCH(QString, upDown);
    QFETCH(int, from);
    QFETCH(int, to);

    QTEST(IsybauFindings::bendClock(sideways, upDown, hour(from), hour(to)).value_or(0), "clock");
}

void tst_Findings::bendsTurnAsTheViewTurns_data()
{
    QTest::addColumn<QVector<QVector3D>>("bends"); // clock, angle, length of the piece behind it
    QTest::newRow("to the right") << QVector<QVector3D> {{3, 40, 5}};
    QTest::newRow("up, then down") << QVector<QVector3D> {{12, 30, 5}, {6, 50, 4}};
    QTest::newRow("all around") << QVector<QVector3D> {{10, 25, 3}, {1, 70, 2}, {5, 15, 6}, {8, 89, 1}};
    QTest::newRow("nearly plumb up, then to the side") << QVector<QVector3D> {{12, 87.1F, 2}, {3, 90, 3}, {6, 45, 1}};
    QTest::newRow("nearly plumb down, then on") << QVector<QVector3D> {{6, 92.9F, 2}, {12, 90, 3}, {9, 20, 2}};
    QTest::newRow("against the way") << QVector<QVector3D> {{9, 135, 2}, {2, 10, 3}};
}

/** The view's rule, put together anew: axes (west, up, north), quaternions, every piece upright unless it is plumb. */
void tst_Findings::bendsTurnAsTheViewTurns()
{
    QFETCH(QVector<QVector3D>, bends);
    const Course::Vector heading {6.0, 8.0, 0.5};
    const QVector3D up(0, 1, 0);
    QQuaternion turn = QQuaternion::fromDirection(QVector3D(-6.0F, 0.5F, 8.0F), up);
    QVector3D at = turn.rotatedVector({0, 0, 2});
    QVector<QVector3D> expected {{0, 0, 0}, at};
    QVector<Course::Bend> own;
    double run = 2.0;
    for (const QVector3D& bend : qAsConst(bends)) {
        const QVector3D tipped = QQuaternion::fromAxisAndAngle(-1, 0, 0, bend.y()).rotatedVector({0, 0, 1});
        const QVector3D aside = QQuaternion::fromAxisAndAngle(0, 0, 1, bend.x() * 30).rotatedVector(tipped);
        const QVector3D before = turn.rotatedVector({0, 0, 1});
        const QVector3D direction = (turn * QQuaternion::fromDirection(aside, up)).rotatedVector({0, 0, 1});
        const QVector3D right = QVector3D::crossProduct(before, turn.rotatedVector(up));
        const bool isPlumb = qAbs(direction.x()) < 0.01F && qAbs(direction.z()) < 0.01F;
        turn = QQuaternion::fromDirection(direction, isPlumb ? QVector3D::crossProduct(right, direction) : up);
        at += direction * bend.z();
        expected << at;
        own.append({run, double(bend.x()), double(bend.y())});
        run += double(bend.z());
    }

    const QVector<Point> course = Course::bentCourse({100, 200, 50.0}, heading, run, own);

    QCOMPARE(course.size(), expected.size());
    for (int i = 0; i < course.size(); ++i) {
        // Floats of a few metres, multiplied some ten times.
        const QVector3D seen(float(100 - course[i].x), float(*course[i].z - 50), float(course[i].y - 200));
        QVERIFY2(seen.distanceToPoint(expected[i]) < 1e-4F, qPrintable(QString::number(i)));
    }
}

void tst_Findings::bendsOfACourse()
{
    const Course::Vector north {0, 5, 0};
    const auto course = [&](const QVector<Course::Bend>& bends) {
        return Course::bentCourse({0, 0, 0.0}, north, 10.0, bends);
    };

    // In whatever order they come; two at one place add up; at the start they turn the heading; at the end nothing.
    QCOMPARE(course({}).size(), 2);
    const auto sorted = course({{6, 9, 90}, {4, 3, 90}});
    QCOMPARE(sorted.size(), 4);
    QVERIFY(isAt(sorted[2], 2, 4, 0));
    QVERIFY(isAt(sorted[3], 2, 8, 0));
    const auto added = course({{4, 3, 30}, {4, 3, 60}});
    QCOMPARE(added.size(), 3);
    QVERIFY(isAt(added[2], 6, 4, 0));
    QVERIFY(isAt(course({{0, 9, 90}})[1], -10, 0, 0));
    QVERIFY(isAt(course({{10, 9, 90}})[1], 0, 10, 0));
    QVERIFY(isAt(course({{11, 9, 90}})[1], 0, 10, 0));
    QVERIFY(qAbs(Course::length(sorted) - 10.0) < 1e-9);
}

void tst_Findings::branches_data()
{
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("up");
    QTest::addColumn<int>("clock");
    QTest::addColumn<double>("angle");
    QTest::newRow("right") << 1.0 << 0.0 << 0.0 << 3 << 90.0;
    QTest::newRow("left, from behind") << -1.0 << -1.0 << 0.0 << 9 << 45.0;
    QTest::newRow("left, from ahead") << -1.0 << 1.0 << 0.0 << 9 << 135.0;
    QTest::newRow("above") << 0.0 << 0.0 << 1.0 << 12 << 90.0;
    QTest::newRow("above right") << 1.0 << 0.0 << 1.7 << 1 << 90.0;
    QTest::newRow("above left") << -1.0 << 0.0 << 0.6 << 10 << 90.0;
    QTest::newRow("below") << 0.0 << 0.0 << -1.0 << 6 << 90.0;
}

void tst_Findings::branches()
{
    QFETCH(double, east);
    QFETCH(double, north);
    QFETCH(double, up);
    QFETCH(double, angle);

    const Course::Branch branch = Course::branchOf(Course::frameOf({0, 3, 0}), {east, north, up});

    QTEST(branch.clock, "clock");
    QVERIFY(qAbs(branch.angleDeg - angle) < 1e-9);
}

void tst_Findings::pointsHaveAFootOnTheCourse()
{
    const QVector<Point> course {{0, 0, 0.0}, {0, 10, 0.0}, {10, 10, 0.0}};

    QCOMPARE(Course::footOf(course, {2, 4, {}}).along, 4.0);
    QCOMPARE(Course::footOf(course, {2, 4, {}}).offset, 2.0);
    QCOMPARE(Course::footOf(course, {7, 11, {}}).along, 17.0);
    QCOMPARE(Course::footOf(course, {30, 10, {}}).along, 20.0);
    QCOMPARE(Course::footOf(course, {30, 10, {}}).offset, 20.0);
    QCOMPARE(Course::frameAt(course, 5).forward.north, 1.0);
    QCOMPARE(Course::frameAt(course, 15).forward.east, 1.0);
    QCOMPARE(Course::frameAt(course, 99).forward.east, 1.0);
}

void tst_Findings::theNearestPairComesFirst()
{
    using namespace LateralJoins;

    QCOMPARE(match({{10.0, {}}, {11.0, {}}}, {{11.2, {}}}, 2.0), (QVector<int> {-1, 0}));
    QCOMPARE(match({{10.0, {}}, {11.0, {}}}, {{11.2, {}}, {9.0, {}}}, 2.0), (QVector<int> {1, 0}));
    QCOMPARE(match({{10.0, {}}}, {{12.1, {}}}, 2.0), QVector<int> {-1});
    QCOMPARE(match({}, {{1.0, {}}}, 2.0), QVector<int> {});
}

void tst_Findings::clocksTellNeighboursApart()
{
    using namespace LateralJoins;

    // Three joints in one place, as at a pipe that is tapped all around; the third finding knows no hour.
    QCOMPARE(match({{7.3, 12}, {7.3, 3}, {7.3, {}}}, {{7.31, 3}, {7.32, 9}, {7.3, 11}}, 2.0), (QVector<int> {2, 0, 1}));
    // Far apart the station counts, whatever the hour.
    QCOMPARE(match({{5.0, 9}}, {{5.1, 3}, {6.0, 9}}, 2.0), QVector<int> {0});
}

#define NEEDS_REAL(variable, name)                                                                                     \
    const QString variable = Kx::Test::realFile(QStringLiteral(name));                                                 \
    if (variable.isEmpty())                                                                                            \
    QSKIP("the folder of real data is not there")

void tst_Findings::everyRealFindingIsAccountedFor()
{
    NEEDS_REAL(network, "networks/ISYBAU_XML-2013-Stammdaten.xml");
    NEEDS_REAL(inspections, "inspections/ISYBAU_XML-2013-Zustandsdaten_DIN_EN_13508-2_AH_Abwasser.xml");

    const Imported net = isybau({network, inspections});

    QCOMPARE(net.report.count(Kinds::Observations).read, 861);
    QCOMPARE(net.report.count(Kinds::Observations).taken, 861);
    QCOMPARE(net.project.observations.size(), 861);
    QHash<QString, int> codes;
    int ranges = 0;
    int closed = 0;
    int atJoint = 0;
    for (const ObservationRow& row : net.project.observations) {
        ++codes[row.finding.code];
        ranges += row.finding.range.isEmpty() ? 0 : 1;
        closed += row.finding.distanceEnd ? 1 : 0;
        atJoint += row.finding.isAtJoint ? 1 : 0;
        QVERIFY(!row.finding.clock1 || (*row.finding.clock1 >= 1 && *row.finding.clock1 <= 12));
    }
    QCOMPARE(codes.value("BCA"), 175);
    QCOMPARE(codes.value("BCD"), 133);
    QCOMPARE(codes.value("BCE"), 123);
    QCOMPARE(codes.value("BAJ"), 105);
    QCOMPARE(codes.value("BCC"), 14);
    QCOMPARE(codes.size(), 23);
    QCOMPARE(ranges, 37);
    QCOMPARE(closed, 18);
    QVERIFY(atJoint > 0 && atJoint <= 110);
}

void tst_Findings::realConnectionsFindTheirLaterals()
{
    NEEDS_REAL(network, "networks/ISYBAU_XML-2013-Stammdaten.xml");
    NEEDS_REAL(inspections, "inspections/ISYBAU_XML-2013-Zustandsdaten_DIN_EN_13508-2_AH_Abwasser.xml");

    const Imported net = isybau({network, inspections});

    QHash<QString, QPair<QString, double>> found;
    for (const ObservationRow& row : net.project.observations) {
        if (row.lateralId.isEmpty())
            continue;
        for (const PipeRow& pipe : net.project.pipes) {
            if (pipe.id != row.lateralId)
                continue;
            QVERIFY2(!found.contains(pipe.key), qPrintable(pipe.key));
            found.insert(pipe.key, {row.finding.code, row.finding.distance});
        }
    }
    const QHash<QString, double> expected {
        {"120015SE01", 37.5}, {"120015SE02", 17.7}, {"120015SE03", 4.1},  {"120016RR01", 2.0},  {"120017RR02", 2.1},
        {"120017SE01", 19.8}, {"120017SE02", 6.0},  {"211099SE01", 40.3}, {"211099SE02", 20.5}, {"211099SE03", 4.8}};
    QCOMPARE(found.size(), expected.size());
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        QCOMPARE(found.value(it.key()).first, QStringLiteral("BCA"));
        QCOMPARE(found.value(it.key()).second, it.value());
    }
}

void tst_Findings::realBendsHaveHourAndAngle()
{
    NEEDS_REAL(network, "networks/ISYBAU_XML-2013-Stammdaten.xml");
    NEEDS_REAL(inspections, "inspections/ISYBAU_XML-2013-Zustandsdaten_DIN_EN_13508-2_AH_Abwasser.xml");

    const Imported net = isybau({network, inspections});

    int bends = 0;
    for (const ObservationRow& row : net.project.observations) {
        if (row.finding.code != QLatin1String("BCC"))
            continue;
        ++bends;
        QVERIFY(row.finding.bendClock);
        QCOMPARE(*row.finding.angle, *row.finding.q1);
    }
    QCOMPARE(bends, 14);
}

QTEST_APPLESS_MAIN(tst_Findings)
#include "tst_Findings.moc"
