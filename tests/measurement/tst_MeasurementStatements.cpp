#include "measurement/MeasuredLine.h"
#include "measurement/MeasurementStatements.h"
#include "measurement/PointsStatements.h"
#include "measurement/TextPool.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QDateTime noon(QDate(2024, 3, 9), QTime(12, 5, 7, 42));
const QVector3D point(1.5F, -2.0F, 0.25F);

MeasuredLine lineOf(const QVector<QVector3D>& points)
{
    MeasuredLine line;
    for (const QVector3D& each : points)
        line.insert(line.count(), each);
    return line;
}

} // namespace

/** Other programs read and write the same tables: the texts are an agreement, so they stand here letter by letter. */
class tst_MeasurementStatements : public QObject {
    Q_OBJECT

private slots:
    void aStatementHasItsText_data();
    void aStatementHasItsText();
    void aValueIsNoPlaceholder();
    void anOrdinateHasSixDigits_data();
    void anOrdinateHasSixDigits();
    void theLineJoinsItsPoints_data();
    void theLineJoinsItsPoints();
    void aPointIsInsertedWhereItFits_data();
    void aPointIsInsertedWhereItFits();
    void aRangeIsRemovedAsFarAsItIsThere_data();
    void aRangeIsRemovedAsFarAsItIsThere();
    void anEmptiedLineBeginsAnew();
    void roomServesAgainWhenNobodyHoldsIt();
    void aRangeMayEndOnePastTheEnd();
};

void tst_MeasurementStatements::aStatementHasItsText_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("text");

    QTest::newRow("running: find measurement")
        << MeasurementStatements::findMeasurement("i")
        << R"(SELECT MES_PK from SECMES WHERE MES_Inspection_FK="i" AND MES_METHOD="forward")";
    QTest::newRow("running: create measurement")
        << MeasurementStatements::createMeasurement("m", "i", noon)
        << R"sql(INSERT INTO SECMES(MES_PK, MES_Inspection_FK, MES_Type, MES_Method, MES_Date) VALUES ("m", "i", "3DGS", "forward", "2024_03_09_12_05_07"))sql";
    QTest::newRow("running: read points")
        << MeasurementStatements::readPoints("m")
        << R"(SELECT MP_X_Value, MP_Y_Value, MP_Z_Value, MP_SortOrder from SECMP WHERE MP_Measurement_FK="m")";
    QTest::newRow("running: make room")
        << MeasurementStatements::makeRoom(3, "m")
        << R"(UPDATE SECMP SET MP_SortOrder = MP_SortOrder +1 WHERE MP_SortOrder>=3 AND MP_Measurement_FK="m")";
    QTest::newRow("running: add point")
        << MeasurementStatements::addPoint("p", "m", point, 4, noon)
        << R"sql(INSERT INTO SECMP(MP_PK, MP_Measurement_FK, MP_X_Value, MP_Y_Value, MP_Z_Value, MP_SortOrder, MP_TimeStamp) VALUES ("p", "m", 1.5, -2, 0.25, 4, "2024-03-09 12:05:07.042"))sql";
    QTest::newRow("running: store line")
        << MeasurementStatements::storeLine("1 2 3 160", "m")
        << R"sql(UPDATE SECMES SET MES_TxtValues = "LINESTRING ZM(1 2 3 160)" WHERE MES_PK = "m")sql";
    QTest::newRow("running: delete points")
        << MeasurementStatements::deletePoints(2, 5, "m")
        << R"(DELETE FROM SECMP WHERE MP_SortOrder>=2 AND MP_SortOrder<5 AND MP_Measurement_FK="m")";
    QTest::newRow("running: close gap")
        << MeasurementStatements::closeGap(3, 5, "m")
        << R"(UPDATE SECMP SET MP_SortOrder = MP_SortOrder - 3 WHERE MP_SortOrder>=5 AND MP_Measurement_FK="m")";

    QTest::newRow("whole: read line") << PointsStatements::readLine("i")
                                      << R"(SELECT MES_TxtValues FROM SECMES WHERE MES_Inspection_FK = "i" )";
    QTest::newRow("whole: write line") << PointsStatements::writeLine("text", "m")
                                       << R"(UPDATE SECMES SET MES_TxtValues = "text" WHERE MES_PK = "m" )";
    QTest::newRow("whole: find measurement")
        << PointsStatements::findMeasurement("i") << R"(SELECT MES_PK FROM SECMES WHERE MES_Inspection_FK="i" LIMIT 1)";
    QTest::newRow("whole: add point")
        << PointsStatements::addPoint("p", "m", point, 4, noon)
        << R"sql(INSERT INTO SECMP(MP_PK, MP_Measurement_FK, MP_X_Value,MP_Y_Value, MP_Z_Value, MP_SortOrder, MP_TimeStamp) VALUES ("p", "m", 1.5,"-2", 0.25, 4, "2024-03-09 12:05:07.042"))sql";
    QTest::newRow("whole: remove points")
        << PointsStatements::removePoints("m") << R"(DELETE FROM SECMP WHERE MP_Measurement_FK="m")";
    QTest::newRow("whole: create measurement")
        << PointsStatements::createMeasurement("m", "j", "i", noon)
        << R"sql(INSERT INTO SECMES(MES_PK, MES_JOB_FK, MES_Inspection_FK, MES_Type, MES_Method, MES_Date) VALUES ("m", "j", "i", "forward", "3DGS", "2024_03_09_12_05_07"))sql";
    QTest::newRow("whole: read shape") << PointsStatements::readShape("i")
                                       << R"(SELECT INS_Shape_WKT FROM SECINSP WHERE INS_PK = "i" )";
    QTest::newRow("whole: write shape") << PointsStatements::writeShape("text", "i")
                                        << R"(UPDATE SECINSP SET INS_Shape_WKT = "text" WHERE INS_PK = "i" )";
}

void tst_MeasurementStatements::aStatementHasItsText()
{
    QFETCH(QString, statement);
    QFETCH(QString, text);

    QCOMPARE(statement, text);
}

void tst_MeasurementStatements::aValueIsNoPlaceholder()
{
    QCOMPARE(PointsStatements::writeLine("%2 %1", "m"),
             QString(R"(UPDATE SECMES SET MES_TxtValues = "%2 %1" WHERE MES_PK = "m" )"));
}

void tst_MeasurementStatements::anOrdinateHasSixDigits_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 3.0F << "3";
    QTest::newRow("short") << 0.25F << "0.25";
    QTest::newRow("rounded") << 1234.5678F << "1234.57";
    QTest::newRow("negative") << -0.1F << "-0.1";
    QTest::newRow("large") << 12345678.0F << "1.23457e+07";
    QTest::newRow("small") << 0.000012F << "1.2e-05";
}

void tst_MeasurementStatements::anOrdinateHasSixDigits()
{
    QFETCH(float, value);
    QFETCH(QString, text);

    QCOMPARE(ordinateText(value), text);
}

void tst_MeasurementStatements::theLineJoinsItsPoints_data()
{
    QTest::addColumn<QVector<QVector3D>>("points");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QVector<QVector3D> {} << "";
    QTest::newRow("one") << QVector<QVector3D> {{1, 2, 3}} << "1 2 3 160";
    QTest::newRow("two") << QVector<QVector3D> {{1, 2, 3}, {-1.5F, 0, 100.25F}} << "1 2 3 160, -1.5 0 100.25 160";
}

void tst_MeasurementStatements::theLineJoinsItsPoints()
{
    QFETCH(QVector<QVector3D>, points);
    QFETCH(QString, text);

    QCOMPARE(lineOf(points).text(), text);
}

void tst_MeasurementStatements::aPointIsInsertedWhereItFits_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("line");
    QTest::newRow("first") << 0 << "9 9 9 160, 1 1 1 160, 2 2 2 160";
    QTest::newRow("between") << 1 << "1 1 1 160, 9 9 9 160, 2 2 2 160";
    QTest::newRow("one past the end") << 2 << "1 1 1 160, 2 2 2 160, 9 9 9 160";
    QTest::newRow("further") << 3 << "1 1 1 160, 2 2 2 160";
    QTest::newRow("before the begin") << -1 << "1 1 1 160, 2 2 2 160";
}

void tst_MeasurementStatements::aPointIsInsertedWhereItFits()
{
    QFETCH(int, index);
    MeasuredLine line = lineOf({{1, 1, 1}, {2, 2, 2}});

    line.insert(index, {9, 9, 9});

    QTEST(line.text(), "line");
}

void tst_MeasurementStatements::aRangeIsRemovedAsFarAsItIsThere_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("line");
    QTest::newRow("one") << 1 << 2 << "0 0 0 160, 2 0 0 160";
    QTest::newRow("all") << 0 << 3 << "";
    QTest::newRow("none") << 1 << 1 << "0 0 0 160, 1 0 0 160, 2 0 0 160";
    QTest::newRow("one past the end") << 1 << 4 << "0 0 0 160";
    QTest::newRow("behind the end") << 4 << 4 << "0 0 0 160, 1 0 0 160, 2 0 0 160";
    QTest::newRow("before the begin") << -2 << 1 << "1 0 0 160, 2 0 0 160";
    QTest::newRow("backwards") << 2 << 1 << "0 0 0 160, 1 0 0 160, 2 0 0 160";
}

void tst_MeasurementStatements::aRangeIsRemovedAsFarAsItIsThere()
{
    QFETCH(int, first);
    QFETCH(int, last);
    MeasuredLine line = lineOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});

    line.remove(first, last);

    QTEST(line.text(), "line");
}

void tst_MeasurementStatements::anEmptiedLineBeginsAnew()
{
    MeasuredLine line = lineOf({{0, 0, 0}, {1, 0, 0}});

    line.remove(0, 2);
    QCOMPARE(line.count(), 0);
    line.insert(0, {5, 0, 0});
    line.insert(0, {4, 0, 0});
    line.insert(2, {6, 0, 0});
    QCOMPARE(line.text(), QStringLiteral("4 0 0 160, 5 0 0 160, 6 0 0 160"));
    line.clear();
    QCOMPARE(line.text(), QString());
    line.insert(0, {7, 0, 0});
    QCOMPARE(line.text(), QStringLiteral("7 0 0 160"));
}

void tst_MeasurementStatements::roomServesAgainWhenNobodyHoldsIt()
{
    TextPool pool;
    QVERIFY(pool.room().isEmpty());
    const QChar* const room = pool.room().append(QString(1000, QLatin1Char('a'))).constData();
    QString& again = pool.room();
    QVERIFY(again.isEmpty());
    QString held = again.append(QString(800, QLatin1Char('b')));
    QCOMPARE(held.constData(), room);

    pool.room().append(QString(10, QLatin1Char('c')));

    QCOMPARE(held, QString(800, QLatin1Char('b')));
    held.clear();
    QCOMPARE(pool.room().append(QLatin1Char('d')).constData(), room);
}

void tst_MeasurementStatements::aRangeMayEndOnePastTheEnd()
{
    const MeasuredLine line = lineOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});

    QVERIFY(line.mayRemove(3));
    QVERIFY(line.mayRemove(4));
    QVERIFY(!line.mayRemove(5));
    QVERIFY(MeasuredLine().mayRemove(1));
    QVERIFY(!MeasuredLine().mayRemove(2));
}

QTEST_GUILESS_MAIN(tst_MeasurementStatements)
#include "tst_MeasurementStatements.moc"
