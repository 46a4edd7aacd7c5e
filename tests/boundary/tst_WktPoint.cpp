#include "domain/boundary/Vector3D.h"
#include "domain/boundary/WktPoint.h"

#include <QtTest>

using namespace Torvik::Database;

class tst_WktPoint : public QObject {
    Q_OBJECT

private slots:
    void aPointIsTakenOutOfAnyText_data()
    {
        QTest::addColumn<QString>("wkt");
        QTest::addColumn<QStringList>("xyzm");
        QTest::addColumn<bool>("hasPosition");

        QTest::newRow("point zm") << "POINT ZM(1.5 -2 3 64)" << QStringList {"1.5", "-2", "3", "64"} << true;
        QTest::newRow("blanks") << "  POINT   ZM  (  1   2\t3 \n 4 ) " << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("lower case") << "point zm(1 2 3 4)" << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("stuck together") << "POINTZM(1 2 3 4)" << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("point z") << "POINT Z(1 2 3)" << QStringList {"1", "2", "3", ""} << true;
        QTest::newRow("point m") << "POINT M(1 2 5)" << QStringList {"1", "2", "", "5"} << true;
        QTest::newRow("plane point") << "POINT(1 2)" << QStringList {"1", "2", "", ""} << true;
        QTest::newRow("srid in front") << "SRID=25832;POINT Z(1 2 3)" << QStringList {"1", "2", "3", ""} << true;
        QTest::newRow("line string") << "LINESTRING ZM(1 2 3 4,5 6 7 8)" << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("nested collection")
            << "GEOMETRYCOLLECTION ZM(GEOMETRYCOLLECTION ZM(POINT ZM(1 2 3 4)),POINT ZM(9 9 9 9))"
            << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("multi line string")
            << "MULTILINESTRING ZM((1 2 3 4,5 6 7 8),(0 0 0 0,1 1 1 1))" << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("bare numbers") << "1 2 3 4" << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("bracket missing") << "POINT ZM(1 2 3 4" << QStringList {"1", "2", "3", "4"} << true;
        QTest::newRow("exponents") << "POINT(1e3 -2.5E-1)" << QStringList {"1e3", "-2.5E-1", "", ""} << true;
        QTest::newRow("one ordinate") << "POINT(1)" << QStringList {"1", "", "", ""} << false;
        QTest::newRow("empty") << "POINT ZM EMPTY" << QStringList {"", "", "", ""} << false;
        QTest::newRow("empty body") << "POINT ZM()" << QStringList {"", "", "", ""} << false;
        QTest::newRow("EMPTY alone") << "EMPTY" << QStringList {"", "", "", ""} << false;
        QTest::newRow("nothing") << "" << QStringList {"", "", "", ""} << false;
        QTest::newRow("words") << "POINT(a b)" << QStringList {"a", "b", "", ""} << false;
        QTest::newRow("not a number") << "POINT(nan 2)" << QStringList {"nan", "2", "", ""} << false;
    }

    void aPointIsTakenOutOfAnyText()
    {
        QFETCH(QString, wkt);
        QFETCH(QStringList, xyzm);

        const WktPoint point(wkt);

        QCOMPARE((QStringList {point.x(), point.y(), point.z(), point.m()}), xyzm);
        QTEST(ShapeWKTHelper::hasPosition(wkt), "hasPosition");
    }

    void ordinatesWithoutValueAreWrittenAsZero()
    {
        QCOMPARE(WktPoint("1", "2", "", "").toWktString(), QString("POINT ZM(1 2 0 0)"));
        QCOMPARE(WktPoint("1", "2", "3", "64").toWktString(), QString("POINT ZM(1 2 3 64)"));
    }

    void aShapeKeepsTheFlagsOfItsFirstPointThereAndBack()
    {
        const QString wkt = "LINESTRING ZM(400000.25 5600000.5 12.75 272,400001 5600001 12 0)";
        QVector<WktPoint> points;
        QString prefix;

        ShapeWKTHelper::wktStringToWktPoints(wkt, points, prefix);

        QCOMPARE(points.size(), 2);
        QCOMPARE(points[0].m(), QString("272"));
        QCOMPARE(prefix, ShapeWKTHelper::WKT_LINESTRING_PREFIX);
        QCOMPARE(ShapeWKTHelper::toWktShape(points, prefix), wkt);
    }

    void pointsAreAppendedToWhatIsThere()
    {
        QVector<WktPoint> points {WktPoint("9", "9", "9", "9")};
        QString prefix;

        ShapeWKTHelper::wktStringToWktPoints("point z (1 2 3)", points, prefix);

        QCOMPARE(points.size(), 2);
        QCOMPARE(points[1].x(), QString("1"));
        QCOMPARE(prefix, ShapeWKTHelper::WKT_POINT_PREFIX);
    }

    void verticesWithoutPositionAreLeftOut()
    {
        QVector<WktPoint> points;
        QString prefix;

        ShapeWKTHelper::wktStringToWktPoints("LINESTRING(1 2,,a b,3, 4 5 6)", points, prefix);

        QCOMPARE(points.size(), 2);
        QCOMPARE(points[1].x(), QString("4"));
    }

    void textsWithoutPointsGiveNone_data()
    {
        QTest::addColumn<QString>("wkt");
        for (const char* wkt : {"", " ", "EMPTY", "LINESTRING ZM EMPTY", "LINESTRING ZM()", "rubbish", ")(",
                                "GEOMETRYCOLLECTION EMPTY"}) {
            QTest::newRow(wkt) << wkt;
        }
    }

    void textsWithoutPointsGiveNone()
    {
        QFETCH(QString, wkt);
        QVector<WktPoint> points;
        QString prefix;

        ShapeWKTHelper::wktStringToWktPoints(wkt, points, prefix);

        QVERIFY(points.isEmpty());
    }

    void noPointsAreWrittenAsEmpty()
    {
        QCOMPARE(ShapeWKTHelper::toWktShape({}, ShapeWKTHelper::WKT_LINESTRING_PREFIX), QString("EMPTY"));
    }

    void partsOfAMultipleShape_data()
    {
        QTest::addColumn<QString>("wkt");
        QTest::addColumn<QVector<QString>>("parts");
        QTest::newRow("nothing") << "" << QVector<QString> {};
        QTest::newRow("blanks") << "  " << QVector<QString> {};
        QTest::newRow("single") << "POINT ZM(1 2 3 4)" << QVector<QString> {"POINT ZM(1 2 3 4)"};
        QTest::newRow("collection") << "GEOMETRYCOLLECTION ZM(LINESTRING ZM(1 2 3 4,5 6 7 8),POINT ZM(1 2 3 4))"
                                    << QVector<QString> {"LINESTRING ZM(1 2 3 4,5 6 7 8)", "POINT ZM(1 2 3 4)"};
        QTest::newRow("nested") << "GeometryCollection( POINT(1 2) , GEOMETRYCOLLECTION(POINT(3 4),POINT(5 6)))"
                                << QVector<QString> {"POINT(1 2)", "POINT(3 4)", "POINT(5 6)"};
        QTest::newRow("empty part kept") << "GEOMETRYCOLLECTION ZM(LINESTRING ZM EMPTY,POINT ZM(1 2 3 4))"
                                         << QVector<QString> {"LINESTRING ZM EMPTY", "POINT ZM(1 2 3 4)"};
        QTest::newRow("empty collection") << "GEOMETRYCOLLECTION EMPTY" << QVector<QString> {};
        QTest::newRow("multi line") << "MULTILINESTRING ZM((1 2 3 4,5 6 7 8),(1 1 1 1,2 2 2 2))"
                                    << QVector<QString> {"LINESTRING ZM(1 2 3 4,5 6 7 8)",
                                                         "LINESTRING ZM(1 1 1 1,2 2 2 2)"};
        QTest::newRow("multi point") << "MULTIPOINT Z(1 2 3,(4 5 6))"
                                     << QVector<QString> {"POINT Z(1 2 3)", "POINT Z(4 5 6)"};
    }

    void partsOfAMultipleShape()
    {
        QFETCH(QString, wkt);

        QTEST(WktParser::parseWkt(wkt), "parts");
    }

    void partsComeBackAsTheyWereJoined()
    {
        const QVector<QString> parts {"LINESTRING ZM(1 2 3 160,5 6 7 0)", "LINESTRING ZM(5 6 7 32,8 9 1 0)"};

        QCOMPARE(WktParser::parseWkt(WktParser::toMultiWkt(parts)), parts);
        QCOMPARE(WktParser::toMultiWkt({parts[0]}), parts[0]);
        QCOMPARE(WktParser::toMultiWkt({}), QString());
    }

    void aPositionSurvivesTheStoredForm()
    {
        const Torvik::View3d::Vector3D<double> position(-400000.123456789, 12.5, 5600000.987654321);

        const WktPoint stored = position.toWKTPoint(0.5, 16);

        QCOMPARE(stored.m(), QString("16"));
        const Torvik::View3d::Vector3D<double> back(stored, 0.5);
        QVERIFY(back == position);
    }

    void aPositionIsStoredEastNorthUp()
    {
        const Torvik::View3d::Vector3D<double> position(-8.0, 3.0, 6.0);

        const WktPoint stored = position.toWKTPoint(2.0, 16);
        QCOMPARE(stored.x(), QString("4"));
        QCOMPARE(stored.y(), QString("3"));
        QCOMPARE(stored.z(), QString("1.5"));

        QVERIFY(Torvik::View3d::Vector3D<double>(stored, 2.0) == position);
        QVERIFY(Torvik::View3d::Vector3D<double>(position, 2.0) == position * 2.0);
    }
};

QTEST_GUILESS_MAIN(tst_WktPoint)
#include "tst_WktPoint.moc"
