#include "network/LowestCandidates.h"

#include <QtTest>

#include <cmath>

using Torvik::View3d::LowestCandidates;

class tst_LowestCandidates : public QObject {
    Q_OBJECT

private slots:
    void withoutAnyTheLowestIsTheLargestFloat();
    void theLowestWins();
    void anOwnerThatRisesGivesWayToTheNext();
    void equalHeightsOfTwoOwnersStayApart();
    void removingAnUnknownOwnerDoesNothing();
    void aHeightThatIsNoNumberDoesNotCount();
    void aHeightAboveEverythingDoesNotCount();
};

void tst_LowestCandidates::withoutAnyTheLowestIsTheLargestFloat()
{
    LowestCandidates<int> heights;
    QCOMPARE(heights.lowest(), std::numeric_limits<float>::max());

    heights.set(1, -1.0F);
    heights.clear();

    QCOMPARE(heights.lowest(), 3.4028235e38F);
}

void tst_LowestCandidates::theLowestWins()
{
    LowestCandidates<int> heights;
    heights.set(1, 2.0F);
    heights.set(2, -3.0F);
    heights.set(3, -1.0F);

    QCOMPARE(heights.lowest(), -3.0F);
}

void tst_LowestCandidates::anOwnerThatRisesGivesWayToTheNext()
{
    LowestCandidates<int> heights;
    heights.set(1, -1.0F);
    heights.set(2, -3.0F);

    heights.set(2, 5.0F);

    QCOMPARE(heights.lowest(), -1.0F);
}

void tst_LowestCandidates::equalHeightsOfTwoOwnersStayApart()
{
    LowestCandidates<int> heights;
    heights.set(1, -1.0F);
    heights.set(2, -1.0F);

    heights.remove(1);
    QCOMPARE(heights.lowest(), -1.0F);

    heights.remove(2);
    QCOMPARE(heights.lowest(), std::numeric_limits<float>::max());
}

void tst_LowestCandidates::removingAnUnknownOwnerDoesNothing()
{
    LowestCandidates<int> heights;
    heights.set(1, -1.0F);

    heights.remove(2);

    QCOMPARE(heights.lowest(), -1.0F);
}

void tst_LowestCandidates::aHeightThatIsNoNumberDoesNotCount()
{
    LowestCandidates<int> heights;
    heights.set(1, -1.0F);
    heights.set(2, -2.0F);

    heights.set(2, std::nanf(""));

    QCOMPARE(heights.lowest(), -1.0F);
}

void tst_LowestCandidates::aHeightAboveEverythingDoesNotCount()
{
    LowestCandidates<int> heights;
    heights.set(1, std::numeric_limits<float>::infinity());

    QCOMPARE(heights.lowest(), std::numeric_limits<float>::max());
}

QTEST_APPLESS_MAIN(tst_LowestCandidates)
#include "tst_LowestCandidates.moc"
