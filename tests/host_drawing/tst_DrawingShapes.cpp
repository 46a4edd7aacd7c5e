#include "host/drawing/DrawingStyle.h"
#include "host/drawing/StrokeFont.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace Torvik::DXF;

namespace {

constexpr DrawingColour red = colourOf(255, 0, 0);

/** Area covered by triangles that do not overlap. */
double filledArea(const Drawing& drawing)
{
    double sum = 0.0;
    for (std::size_t i = 0; i + 2 < drawing.fills.size(); i += 3) {
        const DrawingPoint& a = drawing.fills[i].at;
        const DrawingPoint& b = drawing.fills[i + 1].at;
        const DrawingPoint& c = drawing.fills[i + 2].at;
        sum += std::abs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y)) / 2.0;
    }
    return sum;
}

struct Box {
    double left = 1e9;
    double right = -1e9;
    double bottom = 1e9;
    double top = -1e9;
};

Box boxOf(const Drawing& drawing)
{
    Box box;
    for (const DrawingVertex& vertex : drawing.lines) {
        box.left = std::min(box.left, vertex.at.x);
        box.right = std::max(box.right, vertex.at.x);
        box.bottom = std::min(box.bottom, vertex.at.y);
        box.top = std::max(box.top, vertex.at.y);
    }
    return box;
}

} // namespace

class tst_DrawingShapes : public QObject {
    Q_OBJECT

private slots:
    void aCourseBecomesASegmentBetweenEachTwoPoints();
    void segmentsThatNobodyCouldSeeAreLeftOut();
    void aFillCoversWhatLiesInsideAnOddNumberOfRings_data();
    void aFillCoversWhatLiesInsideAnOddNumberOfRings();
    void aFigureOfVeryManyCornersIsDrawnByItsRing();
    void emptyRingsAreNoTrouble();
    void aStyleTellsToolColourAndLabel();
    void aLayerThatIsFrozenShowsAsNoOpacity();
    void brokenStylesGiveWhatCanBeRead_data();
    void brokenStylesGiveWhatCanBeRead();
    void textStandsWhereItsAnchorSays_data();
    void textStandsWhereItsAnchorSays();
    void textTurnsWithItsAngle();
    void lettersWithMarksAndUnknownOnesAreDrawn();
    void signsThatAreToldByTheirNumberStandInTheirPlaces();
};

void tst_DrawingShapes::aCourseBecomesASegmentBetweenEachTwoPoints()
{
    Drawing drawing;

    addCourse(drawing, {{0, 0, 1}, {1, 0, 1}, {1, 2, 1}}, red);

    QCOMPARE(drawing.lines.size(), std::size_t(4));
    QCOMPARE(drawing.lines[3].at.y, 2.0);
    QCOMPARE(drawing.lines[3].at.z, 1.0);
    QCOMPARE(drawing.lines[3].colour, 0xff0000ffU);
}

void tst_DrawingShapes::segmentsThatNobodyCouldSeeAreLeftOut()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    Drawing drawing;

    addCourse(drawing, {{0, 0, 0}, {nan, 0, 0}, {1, 0, 0}, {1, 0, 0}, {2, 0, 0}}, red);
    addCourse(drawing, {{0, infinity, 0}, {0, 0, 0}}, red);
    addCourse(drawing, {{1e300, 0, 0}, {0, 0, 0}}, red);
    addCourse(drawing, {}, red);
    addPoint(drawing, {0, 0, nan}, red);

    QCOMPARE(drawing.lines.size(), std::size_t(2));
    QCOMPARE(drawing.lines[0].at.x, 1.0);
    QVERIFY(drawing.points.empty());
}

void tst_DrawingShapes::aFillCoversWhatLiesInsideAnOddNumberOfRings_data()
{
    QTest::addColumn<QVector<QVector<QPointF>>>("rings");
    QTest::addColumn<double>("area");
    using Rings = QVector<QVector<QPointF>>;
    const QVector<QPointF> square {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
    const QVector<QPointF> hole {{1, 1}, {1, 3}, {3, 3}, {3, 1}};
    const QVector<QPointF> island {{1.5, 1.5}, {2.5, 1.5}, {2.5, 2.5}, {1.5, 2.5}};
    QTest::newRow("square") << Rings {square} << 16.0;
    QTest::newRow("closed by a repeated point") << Rings {square + QVector<QPointF> {{0, 0}}} << 16.0;
    QTest::newRow("hole") << Rings {square, hole} << 12.0;
    QTest::newRow("island in the hole") << Rings {square, hole, island} << 13.0;
    QTest::newRow("notched") << Rings {{{0, 0}, {4, 0}, {4, 4}, {2, 1}, {0, 4}}} << 10.0;
    QTest::newRow("line") << Rings {{{0, 0}, {4, 4}}} << 0.0;
    QTest::newRow("flat") << Rings {{{0, 0}, {4, 0}, {2, 0}}} << 0.0;
}

void tst_DrawingShapes::aFillCoversWhatLiesInsideAnOddNumberOfRings()
{
    QFETCH(QVector<QVector<QPointF>>, rings);
    QFETCH(double, area);
    std::vector<DrawingCourse> courses;
    for (const auto& ring : rings) {
        courses.emplace_back();
        for (const QPointF& point : ring)
            courses.back().push_back({point.x(), point.y(), 7.0});
    }
    Drawing drawing;

    addFill(drawing, courses, red);

    QVERIFY(std::abs(filledArea(drawing) - area) < 1e-9);
    for (const DrawingVertex& vertex : drawing.fills)
        QCOMPARE(vertex.at.z, 7.0);
}

void tst_DrawingShapes::aFigureOfVeryManyCornersIsDrawnByItsRing()
{
    DrawingCourse ring;
    for (int i = 0; i < 5000; ++i)
        ring.push_back({std::cos(i * 0.001256), std::sin(i * 0.001256), 0.0});
    Drawing drawing;

    addFill(drawing, {ring}, red);

    QVERIFY(drawing.fills.empty());
    QVERIFY(drawing.lines.size() >= 2 * 4999);
}

void tst_DrawingShapes::emptyRingsAreNoTrouble()
{
    Drawing drawing;

    addFill(drawing, {}, red);
    addFill(drawing, {{}, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}, red);

    QVERIFY(std::abs(filledArea(drawing) - 0.5) < 1e-9);
}

void tst_DrawingShapes::aStyleTellsToolColourAndLabel()
{
    const DrawingStyle style =
        parseStyle("LABEL(f:\"Arial\",t:\"a \\\"b\\\", (c)\",p:5,a:90,s:6.95g,w:85,dx:-2.5g,dy:6.5g,c:#00ffff)");

    QCOMPARE(int(style.tool), int(DrawingStyle::Label));
    QCOMPARE(style.text, std::string("a \"b\", (c)"));
    QCOMPARE(style.anchor, 5);
    QCOMPARE(style.angleDeg, 90.0);
    QCOMPARE(style.height, 6.95);
    QCOMPARE(style.width, 85.0);
    QCOMPARE(style.dx, -2.5);
    QCOMPARE(style.dy, 6.5);
    QCOMPARE(style.colour, colourOf(0, 255, 255));
    QVERIFY(!style.hidden);
    QCOMPARE(parseStyle("BRUSH(fc:#102030)").colour, colourOf(0x10, 0x20, 0x30));
}

void tst_DrawingShapes::aLayerThatIsFrozenShowsAsNoOpacity()
{
    QVERIFY(parseStyle("PEN(c:#ff000000)").hidden);
    QVERIFY(!parseStyle("PEN(c:#ff0000ff,w:5px)").hidden);
    QVERIFY(!parseStyle("PEN(c:#000000)").hidden);
}

void tst_DrawingShapes::brokenStylesGiveWhatCanBeRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("tool");
    QTest::newRow("empty") << QByteArray("") << int(DrawingStyle::None);
    QTest::newRow("no bracket") << QByteArray("PEN") << int(DrawingStyle::None);
    QTest::newRow("unknown tool") << QByteArray("SYMBOL(id:1)") << int(DrawingStyle::None);
    QTest::newRow("cut in a text") << QByteArray("LABEL(t:\"abc") << int(DrawingStyle::Label);
    QTest::newRow("cut after an escape") << QByteArray("LABEL(t:\"abc\\") << int(DrawingStyle::Label);
    QTest::newRow("cut after a key") << QByteArray("PEN(c") << int(DrawingStyle::Pen);
    QTest::newRow("short colour") << QByteArray("PEN(c:#ff)") << int(DrawingStyle::Pen);
    QTest::newRow("commas") << QByteArray("BRUSH(,,,)") << int(DrawingStyle::Brush);
}

void tst_DrawingShapes::brokenStylesGiveWhatCanBeRead()
{
    QFETCH(QByteArray, text);
    QFETCH(int, tool);

    const DrawingStyle style = parseStyle(text.constData());

    QCOMPARE(int(style.tool), tool);
    QCOMPARE(style.colour, colourOf(0, 0, 0));
    QCOMPARE(int(parseStyle(nullptr).tool), int(DrawingStyle::None));
}

void tst_DrawingShapes::textStandsWhereItsAnchorSays_data()
{
    QTest::addColumn<int>("anchor");
    QTest::addColumn<double>("left");
    QTest::addColumn<double>("bottom");
    // "H" of height 6 is 4 wide on the font's grid, which starts at its left stroke.
    QTest::newRow("base line, left") << 1 << 10.0 << 20.0;
    QTest::newRow("base line, middle") << 2 << 8.0 << 20.0;
    QTest::newRow("base line, right") << 3 << 6.0 << 20.0;
    QTest::newRow("middle, middle") << 5 << 8.0 << 17.0;
    QTest::newRow("top, right") << 9 << 6.0 << 14.0;
    QTest::newRow("bottom, left") << 10 << 10.0 << 22.0;
}

void tst_DrawingShapes::textStandsWhereItsAnchorSays()
{
    QFETCH(int, anchor);
    QFETCH(double, left);
    QFETCH(double, bottom);
    Drawing drawing;

    addText(drawing, QStringLiteral("H"), {{10, 20, 0}, 6.0, 0.0, 1.0, anchor}, red);

    const Box box = boxOf(drawing);
    QCOMPARE(box.left, left);
    QCOMPARE(box.right, left + 4.0);
    QCOMPARE(box.bottom, bottom);
    QCOMPARE(box.top, bottom + 6.0);
}

void tst_DrawingShapes::textTurnsWithItsAngle()
{
    Drawing drawing;

    addText(drawing, QStringLiteral("H"), {{0, 0, 0}, 6.0, 90.0, 2.0, 1}, red);

    const Box box = boxOf(drawing);
    QVERIFY(std::abs(box.left + 6.0) < 1e-9);
    QVERIFY(std::abs(box.top - 8.0) < 1e-9); // twice as wide, upwards
}

void tst_DrawingShapes::lettersWithMarksAndUnknownOnesAreDrawn()
{
    Drawing plain;
    Drawing marked;
    Drawing unknown;
    Drawing lines;

    addText(plain, QStringLiteral("e"), {}, red);
    addText(marked, QString(QChar(0xe9)), {}, red);
    addText(unknown, QString(QChar(0x4e2d)), {}, red);
    addText(lines, QStringLiteral("a\na"), {}, red);

    QCOMPARE(marked.lines.size(), plain.lines.size());
    QCOMPARE(unknown.lines.size(), std::size_t(8));
    QVERIFY(boxOf(lines).bottom < -1.0 || boxOf(lines).top > 1.0);
    QVERIFY(widthOfText(QStringLiteral("WWW")) > widthOfText(QStringLiteral("ii")));
    QCOMPARE(widthOfText(QString()), 0.0);
}

void tst_DrawingShapes::signsThatAreToldByTheirNumberStandInTheirPlaces()
{
    QCOMPARE(withoutNumbers("M\\U+00FChle \\U+00e4\\U+00F6"), QString::fromUtf8("Mühle äö"));
    QCOMPARE(withoutNumbers("C:\\Users \\U+00F \\U"), QString("C:\\Users \\U+00F \\U"));
    QCOMPARE(withoutNumbers({}), QString());
}

QTEST_APPLESS_MAIN(tst_DrawingShapes)
#include "tst_DrawingShapes.moc"
