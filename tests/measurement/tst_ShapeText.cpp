#include "measurement/InspectionDir.h"
#include "measurement/ShapeColumns.h"
#include "measurement/ShapeText.h"
#include "scene/TransformFlags.h"

#include <QtTest>

using namespace Torvik::View3d;
using Torvik::Database::ObjectType;
using Torvik::Database::ShapeWKTHelper;
using Torvik::Database::WktParser;
using Torvik::Database::WktPoint;

class tst_ShapeText : public QObject {
    Q_OBJECT

private slots:
    void everyTypeWithAShapeHasItsColumn();
    void otherTypesHaveNoShape();
    void theFlagsWordIsTheFirstPointsMeasure_data();
    void theFlagsWordIsTheFirstPointsMeasure();
    void noPointsHaveNoFlags();
    void theFirstDirectionWinsOverThePresentOne();
    void theTwoSetsOfBitsDoNotOverlap();
    void reversingTurnsTheOrderOnly();
    void onlyTheFirstPointGetsTheFlags();
    void onePolylineStandsByItself();
    void severalPolylinesMakeOneText();
    void anEmptyPolylineIsLeftOut();
    void nothingGivesWhatTheParserMakesOfNothing();
    void aShapeThatComesBackNearlyIsTheSameOne_data();
    void aShapeThatComesBackNearlyIsTheSameOne();
};

void tst_ShapeText::everyTypeWithAShapeHasItsColumn()
{
    QCOMPARE(shapeColumns().size(), 5);
    QCOMPARE(shapeColumns().value(ObjectType(3)), QStringLiteral("OBJ_Shape_WKT"));
    QCOMPARE(shapeColumns().value(ObjectType(4)), QStringLiteral("OBJ_Shape_WKT"));
    QCOMPARE(shapeColumns().value(ObjectType(5)), QStringLiteral("INS_Shape_WKT"));
    QCOMPARE(shapeColumns().value(ObjectType(6)), QStringLiteral("OBS_Shape_WKT"));
    QCOMPARE(shapeColumns().value(ObjectType(7)), QStringLiteral("OBJ_Shape_WKT"));
    QCOMPARE(&shapeColumns(), &shapeColumns());
}

void tst_ShapeText::otherTypesHaveNoShape()
{
    QVERIFY(!shapeColumns().contains(ObjectType(1)));
    QVERIFY(!shapeColumns().contains(ObjectType(2)));
    QVERIFY(!shapeColumns().contains(ObjectType(8)));
}

void tst_ShapeText::theFlagsWordIsTheFirstPointsMeasure_data()
{
    QTest::addColumn<QString>("m");
    QTest::addColumn<int>("flags");
    QTest::newRow("flags") << "260" << 260;
    QTest::newRow("decimals are cut off") << "4.99" << 4;
    QTest::newRow("negative decimals too") << "-0.99" << 0;
    QTest::newRow("exponent") << "1.28e2" << 128;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("no number") << "far" << 0;
    QTest::newRow("not a number") << "nan" << 0;
    QTest::newRow("too great") << "1e300" << 0;
    QTest::newRow("infinite") << "-inf" << 0;
    QTest::newRow("greatest") << "2147483647.5" << 2147483647;
}

void tst_ShapeText::theFlagsWordIsTheFirstPointsMeasure()
{
    QFETCH(QString, m);
    QFETCH(int, flags);

    QCOMPARE(ShapeText::flagsWord({WktPoint("1", "2", "3", m), WktPoint("1", "2", "3", "77")}), flags);
}

void tst_ShapeText::noPointsHaveNoFlags()
{
    QCOMPARE(ShapeText::flagsWord({}), 0);
}

void tst_ShapeText::theFirstDirectionWinsOverThePresentOne()
{
    QCOMPARE(ShapeText::flagsWordOfSection(4, 128, 256), 132);
    QCOMPARE(ShapeText::flagsWordOfSection(4, 0, 256), 260);
    QCOMPARE(ShapeText::flagsWordOfSection(4, 0, 0), 4);
    QCOMPARE(ShapeText::flagsWordOfSection(0, 256, 128), 256);
}

void tst_ShapeText::theTwoSetsOfBitsDoNotOverlap()
{
    QCOMPARE(InspectionDir::allInspectionDirFlags() & TransformFlags::allTransformFlags(), 0);
}

void tst_ShapeText::reversingTurnsTheOrderOnly()
{
    const auto points =
        ShapeText::reversed({WktPoint("1", "2", "3", "4"), WktPoint("5", "6", "7", "8"), WktPoint("9", "0", "1", "2")});

    QCOMPARE(ShapeWKTHelper::toWktShape(points, "LINESTRING ZM"),
             QStringLiteral("LINESTRING ZM(9 0 1 2,5 6 7 8,1 2 3 4)"));
    QVERIFY(ShapeText::reversed({}).isEmpty());
}

void tst_ShapeText::onlyTheFirstPointGetsTheFlags()
{
    ShapeText::Writer writer(ShapeWKTHelper::WKT_LINESTRING_PREFIX);

    writer.add({WktPoint("1", "2", "3", "0"), WktPoint("4", "5", "6", "7")}, 132);

    QVector<WktPoint> points;
    QString prefix;
    ShapeWKTHelper::wktStringToWktPoints(writer.text(), points, prefix);
    QCOMPARE(points.size(), 2);
    QCOMPARE(points.at(0).m(), QStringLiteral("132"));
    QCOMPARE(points.at(1).m(), QStringLiteral("7"));
    QCOMPARE(prefix, ShapeWKTHelper::WKT_LINESTRING_PREFIX);
    QCOMPARE(ShapeText::flagsWord(points), 132);
}

void tst_ShapeText::onePolylineStandsByItself()
{
    ShapeText::Writer writer(ShapeWKTHelper::WKT_POINT_PREFIX);

    writer.add({WktPoint("1", "2", "3", "0")}, 4);

    QCOMPARE(writer.text(), WktPoint("1", "2", "3", "4").toWktString());
}

void tst_ShapeText::severalPolylinesMakeOneText()
{
    ShapeText::Writer writer(ShapeWKTHelper::WKT_LINESTRING_PREFIX);
    writer.add({WktPoint("1", "2", "3", "0"), WktPoint("4", "5", "6", "0")}, 1);
    writer.add({WktPoint("7", "8", "9", "0"), WktPoint("1", "1", "1", "0")}, 1);

    const QVector<QString> parts = WktParser::parseWkt(writer.text());

    QCOMPARE(parts.size(), 2);
    QVector<WktPoint> second;
    QString prefix;
    ShapeWKTHelper::wktStringToWktPoints(parts.at(1), second, prefix);
    QCOMPARE(second.size(), 2);
    QCOMPARE(second.at(0).x(), QStringLiteral("7"));
    QCOMPARE(second.at(0).m(), QStringLiteral("1"));
}

void tst_ShapeText::anEmptyPolylineIsLeftOut()
{
    ShapeText::Writer alone(ShapeWKTHelper::WKT_LINESTRING_PREFIX);
    alone.add({WktPoint("1", "2", "3", "0")}, 4);
    ShapeText::Writer withEmpty(ShapeWKTHelper::WKT_LINESTRING_PREFIX);
    withEmpty.add({}, 4);
    withEmpty.add({WktPoint("1", "2", "3", "0")}, 4);
    withEmpty.add({}, 4);

    QCOMPARE(withEmpty.text(), alone.text());
}

void tst_ShapeText::nothingGivesWhatTheParserMakesOfNothing()
{
    ShapeText::Writer writer(ShapeWKTHelper::WKT_LINESTRING_PREFIX);
    writer.add({}, 4);

    QCOMPARE(writer.text(), WktParser::toMultiWkt({}));
    QVERIFY(writer.text().isEmpty());
}

void tst_ShapeText::aShapeThatComesBackNearlyIsTheSameOne_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("same");
    const QString line = QStringLiteral("LINESTRING ZM(570030 5830040 37 320,570000 5830000 37 0)");
    const auto row = [&line](const char* name, const QString& text, bool same) {
        QTest::newRow(name) << line << text << same;
    };
    row("equal", line, true);
    row("rounding of floats", QStringLiteral("LINESTRING ZM(570030 5830039.999996185 37 320,570000 5830000 37 0)"),
        true);
    row("another spelling", QStringLiteral("LINESTRING ZM (570030.0 5830040 37 320, 570000 5830000 37 0)"), true);
    row("a chain's whole centimetres",
        QStringLiteral("LINESTRING ZM(570030.003 5830040.004 37 320,570000 5830000 37 0)"), true);
    row("a centimetre", QStringLiteral("LINESTRING ZM(570030.01 5830040 37 320,570000 5830000 37 0)"), false);
    row("a height of a centimetre", QStringLiteral("LINESTRING ZM(570030 5830040 37.01 320,570000 5830000 37 0)"),
        false);
    row("another source", QStringLiteral("LINESTRING ZM(570030 5830040 37 260,570000 5830000 37 0)"), false);
    row("one point more", QStringLiteral("LINESTRING ZM(570030 5830040 37 320,570000 5830000 37 0,1 2 3 0)"), false);
    row("no numbers", QStringLiteral("LINESTRING ZM(a b c 320,d e f 0)"), false);
    QTest::newRow("a point by rounding of floats") << QStringLiteral("POINT ZM(570030 5830040 37 16)")
                                                   << QStringLiteral("POINT ZM(570030 5830039.9999 37 16)") << true;
    QTest::newRow("a point by a millimetre") << QStringLiteral("POINT ZM(570030 5830040 37 16)")
                                             << QStringLiteral("POINT ZM(570030.001 5830040 37 16)") << false;
    QTest::newRow("blanks stored and nothing to store") << QStringLiteral("  ") << QString() << false;
    QTest::newRow("nothing stored") << QString() << line << false;
}

void tst_ShapeText::aShapeThatComesBackNearlyIsTheSameOne()
{
    QFETCH(QString, stored);
    QFETCH(QString, text);
    QFETCH(bool, same);
    QCOMPARE(ShapeText::sameShape(stored, text), same);
}

QTEST_APPLESS_MAIN(tst_ShapeText)
#include "tst_ShapeText.moc"
