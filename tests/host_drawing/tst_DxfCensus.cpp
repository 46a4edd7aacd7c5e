#include "host/drawing/DrawingLosses.h"
#include "host_drawing/DxfText.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::DXF;
using namespace Kx::Test;

namespace {

DxfCensus countOf(const QByteArray& text, int pieces = 1 << 20)
{
    DxfCounter counter;
    for (int from = 0; from < text.size(); from += pieces)
        counter.feed(text.constData() + from, std::size_t(std::min(pieces, text.size() - from)));
    return counter.finish();
}

int kindCount(const DxfCensus& census, const std::string& name)
{
    for (const auto& kind : census.kinds) {
        if (kind.name == name)
            return kind.inModel;
    }
    return 0;
}

} // namespace

class tst_DxfCensus : public QObject {
    Q_OBJECT

private slots:
    void itCountsEntitiesByKind();
    void pieces_data();
    void pieces();
    void lineEnds_data();
    void lineEnds();
    void partsOfOthersAndSheetsAreNoEntitiesOfTheModel();
    void headerTellsVersionAndUnit();
    void blocksAreUnfolded();
    void arraysAreUnfolded();
    void blocksThatHoldThemselvesEnd();
    void blocksNestedWithoutEndAreInfinite();
    void aCutFileHasNoEnd();
    void aBrokenLineIsTold();
    void rubbishIsNoDrawing_data();
    void rubbishIsNoDrawing();
    void lossesAreFoundByHandle();
    void lossesWithoutHandlesAreCounted();
};

void tst_DxfCensus::itCountsEntitiesByKind()
{
    const auto census = countOf(Dxf::drawing(Dxf::line(0x10, 0, 0, 1, 1) + Dxf::line(0x11, 0, 0, 1, 1) +
                                             Dxf::entity("POINT", 0x12, Dxf::at(10, 1, 1))));

    QVERIFY(census.isText);
    QVERIFY(census.hasEnd);
    QCOMPARE(census.inModel, 3);
    QCOMPARE(kindCount(census, "LINE"), 2);
    QCOMPARE(kindCount(census, "POINT"), 1);
    QCOMPARE(census.handles.size(), std::size_t(3));
    QCOMPARE(census.handles[0].first, 0x10ULL);
    QCOMPARE(census.unfolded, 3.0);
}

void tst_DxfCensus::pieces_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {1, 2, 3, 7, 64})
        QTest::newRow(qPrintable(QString::number(size))) << size;
}

void tst_DxfCensus::pieces()
{
    QFETCH(int, size);
    const QByteArray text = Dxf::drawing(Dxf::line(0x10, 0, 0, 1, 1) + Dxf::line(0x11, 0, 0, 1, 1));

    const auto census = countOf(text, size);

    QCOMPARE(census.inModel, 2);
    QVERIFY(census.hasEnd);
}

void tst_DxfCensus::lineEnds_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("LF") << QByteArray("\n");
    QTest::newRow("CR LF") << QByteArray("\r\n");
    QTest::newRow("CR") << QByteArray("\r");
    QTest::newRow("blanks") << QByteArray("  \n  ");
}

void tst_DxfCensus::lineEnds()
{
    QFETCH(QByteArray, end);
    QByteArray text = Dxf::drawing(Dxf::line(0x10, 0, 0, 1, 1));

    const auto census = countOf(text.replace('\n', end));

    QCOMPARE(census.inModel, 1);
    QVERIFY(census.hasEnd);
    QCOMPARE(census.version, std::string("AC1015"));
}

void tst_DxfCensus::partsOfOthersAndSheetsAreNoEntitiesOfTheModel()
{
    const auto census = countOf(
        Dxf::drawing(Dxf::entity("POLYLINE", 1, Dxf::pair(66, "1")) + Dxf::entity("VERTEX", 2, Dxf::at(10, 0, 0)) +
                     Dxf::entity("VERTEX", 3, Dxf::at(10, 1, 0)) + Dxf::entity("SEQEND", 4, {}) +
                     Dxf::entity("LINE", 5, Dxf::pair(67, "1") + Dxf::at(10, 0, 0) + Dxf::at(11, 1, 1))));

    QCOMPARE(census.inModel, 1);
    QCOMPARE(census.inPaper, 1);
    QCOMPARE(census.handles.size(), std::size_t(1));
}

void tst_DxfCensus::headerTellsVersionAndUnit()
{
    const auto census = countOf(Dxf::head({}, {}, "AC1032", Dxf::pair(9, "$INSUNITS") + Dxf::pair(70, "     4")) +
                                Dxf::section("ENTITIES", Dxf::line(1, 0, 0, 1, 1)) + Dxf::pair(0, "EOF"));

    QCOMPARE(census.version, std::string("AC1032"));
    QCOMPARE(census.unitCode, 4);
}

void tst_DxfCensus::blocksAreUnfolded()
{
    const auto census = countOf(Dxf::drawing(
        Dxf::insert(1, "outer", 0, 0) + Dxf::insert(2, "outer", 5, 0) + Dxf::insert(3, "unknown", 5, 0), {},
        Dxf::block("inner", Dxf::line(10, 0, 0, 1, 1) + Dxf::line(11, 0, 0, 1, 1)) +
            Dxf::block("outer", Dxf::insert(12, "inner", 0, 0) + Dxf::insert(13, "inner", 1, 0))));

    // Three in the model, two in each of two outer ones, two in each of their four inner ones.
    QCOMPARE(census.unfolded, 3.0 + 4.0 + 8.0);
}

void tst_DxfCensus::arraysAreUnfolded()
{
    const auto census = countOf(Dxf::drawing(Dxf::insert(1, "b", 0, 0, Dxf::pair(70, "2000") + Dxf::pair(71, "3000")),
                                             {}, Dxf::block("b", Dxf::line(10, 0, 0, 1, 1))));

    QCOMPARE(census.unfolded, 1.0 + 6e6);
}

void tst_DxfCensus::blocksThatHoldThemselvesEnd()
{
    const auto census = countOf(Dxf::drawing(Dxf::insert(1, "a", 0, 0), {},
                                             Dxf::block("a", Dxf::insert(2, "b", 0, 0) + Dxf::line(3, 0, 0, 1, 1)) +
                                                 Dxf::block("b", Dxf::insert(4, "a", 0, 0))));

    QCOMPARE(census.unfolded, 4.0);
}

void tst_DxfCensus::blocksNestedWithoutEndAreInfinite()
{
    QByteArray blocks = Dxf::block("b0", Dxf::line(1, 0, 0, 1, 1));
    for (int i = 1; i < 500; ++i)
        blocks += Dxf::block("b" + QByteArray::number(i), Dxf::insert(2, "b" + QByteArray::number(i - 1), 0, 0));

    const auto census = countOf(Dxf::drawing(Dxf::insert(3, "b499", 0, 0), {}, blocks));

    QVERIFY(std::isinf(census.unfolded));
}

void tst_DxfCensus::aCutFileHasNoEnd()
{
    const QByteArray whole = Dxf::drawing(Dxf::line(0x10, 0, 0, 1, 1) + Dxf::line(0x11, 0, 0, 1, 1));

    const auto census = countOf(whole.left(whole.size() - 40));

    QVERIFY(!census.hasEnd);
    QVERIFY(census.entitiesOpen);
}

void tst_DxfCensus::aBrokenLineIsTold()
{
    QByteArray text = Dxf::drawing(Dxf::line(0x10, 0, 0, 1, 1));
    text.replace("\nLINE\n5\n", "\nLINE\nxyz\n");

    const auto census = countOf(text);

    QCOMPARE(census.brokenLine, qlonglong(text.left(text.indexOf("xyz")).count('\n') + 1));
}

void tst_DxfCensus::rubbishIsNoDrawing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("prose") << QByteArray("It was a dark and stormy night.\nThe rain fell.\n");
    QTest::newRow("one line") << QByteArray(3 << 20, 'x');
    QTest::newRow("numbers") << QByteArray("0\n1\n0\n1\n");
    QTest::newRow("zeros") << QByteArray(1000, '\0');
}

void tst_DxfCensus::rubbishIsNoDrawing()
{
    QFETCH(QByteArray, text);

    QVERIFY(!countOf(text).isText);
}

void tst_DxfCensus::lossesAreFoundByHandle()
{
    const auto census = countOf(Dxf::drawing(Dxf::line(0x10, 0, 0, 1, 1) + Dxf::line(0x11, 0, 0, 1, 1) +
                                             Dxf::entity("RAY", 0x12, {}) + Dxf::insert(0x13, "none", 0, 0)));

    const DrawingLosses losses = findLosses(census, {0x11, 0x99, 0x99, 0x99}, 4);

    QCOMPARE(losses.lostAtLeast, 1);
    QCOMPARE(listed(losses.lost), QString("1 LINE"));
    QCOMPARE(listed(losses.passedOver), QString("1 INSERT, 1 RAY"));
}

void tst_DxfCensus::lossesWithoutHandlesAreCounted()
{
    const auto census = countOf(Dxf::drawing(Dxf::line(0, 0, 0, 1, 1) + Dxf::line(0, 0, 0, 1, 1) +
                                             Dxf::line(0, 0, 0, 1, 1) + Dxf::entity("RAY", 0, {})));

    const DrawingLosses losses = findLosses(census, {}, 1);

    QCOMPARE(losses.lostAtLeast, 2);
    QVERIFY(losses.lost.empty());
    QCOMPARE(listed(losses.passedOver), QString("1 RAY"));
}

QTEST_APPLESS_MAIN(tst_DxfCensus)
#include "tst_DxfCensus.moc"
