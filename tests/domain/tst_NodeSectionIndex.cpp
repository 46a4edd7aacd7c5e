#include "domain/NodeSectionIndex.h"

#include <QElapsedTimer>
#include <QtTest>

using Torvik::View3d::NodeSectionIndex;

class tst_NodeSectionIndex : public QObject {
    Q_OBJECT

private slots:
    void aSectionIsFoundAtBothItsEnds()
    {
        NodeSectionIndex index;
        index.setEnds(QStringLiteral("s"), QStringLiteral("a"), QStringLiteral("b"));
        QCOMPARE(index.sectionsAt(QStringLiteral("a")), QList<QString> {QStringLiteral("s")});
        QCOMPARE(index.sectionsAt(QStringLiteral("b")), QList<QString> {QStringLiteral("s")});
        QCOMPARE(index.entries().size(), 2);
    }

    void aSectionWhoseEndsChangeIsFoundUnderTheNewNodesOnly()
    {
        NodeSectionIndex index;
        index.setEnds(QStringLiteral("s"), QStringLiteral("a"), QStringLiteral("b"));
        index.setEnds(QStringLiteral("t"), QStringLiteral("a"), QStringLiteral("b"));
        index.setEnds(QStringLiteral("s"), QStringLiteral("c"), QStringLiteral("d"));
        QCOMPARE(index.sectionsAt(QStringLiteral("a")), QList<QString> {QStringLiteral("t")});
        QCOMPARE(index.sectionsAt(QStringLiteral("b")), QList<QString> {QStringLiteral("t")});
        QCOMPARE(index.sectionsAt(QStringLiteral("c")), QList<QString> {QStringLiteral("s")});
        QCOMPARE(index.entries().size(), 4);
    }

    void aSectionThatReturnsToItsNodeIsNamedOnce()
    {
        NodeSectionIndex index;
        index.setEnds(QStringLiteral("s"), QStringLiteral("a"), QStringLiteral("a"));
        QCOMPARE(index.sectionsAt(QStringLiteral("a")), QList<QString> {QStringLiteral("s")});
        QCOMPARE(index.entries().count(QStringLiteral("a")), 2);
        index.setEnds(QStringLiteral("s"), QStringLiteral("a"), QStringLiteral("b"));
        QCOMPARE(index.entries().count(QStringLiteral("a")), 1);
    }

    void anEmptyReferenceStandsUnderTheEmptyKeyAndTheOtherEnd()
    {
        NodeSectionIndex index;
        index.setEnds(QStringLiteral("s"), QString(), QStringLiteral("b"));
        QVERIFY(index.entries().contains(QString(), QStringLiteral("s")));
        QCOMPARE(index.sectionsAt(QStringLiteral("b")), QList<QString> {QStringLiteral("s")});
    }

    void anUnknownNodeHasNoSections()
    {
        NodeSectionIndex index;
        index.setEnds(QStringLiteral("s"), QStringLiteral("a"), QStringLiteral("b"));
        QVERIFY(index.sectionsAt(QStringLiteral("x")).isEmpty());
        index.clear();
        QVERIFY(index.sectionsAt(QStringLiteral("a")).isEmpty());
    }

    void changingEachOfFiftyThousandSectionsTakesAMoment()
    {
        NodeSectionIndex index;
        QElapsedTimer clock;
        clock.start();
        for (int round = 0; round < 2; ++round) {
            for (int i = 0; i < 50000; ++i)
                index.setEnds(QString::number(i), QString::number(i + round), QString::number(i + 1 + round));
        }
        // A walk over the index in each change would be 2.5 thousand million steps.
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(index.entries().size(), 100000);
    }
};

QTEST_GUILESS_MAIN(tst_NodeSectionIndex)
#include "tst_NodeSectionIndex.moc"
