#include "host/vehicle/Replay.h"

#include <QSignalSpy>
#include <QtTest>

using namespace Torvik::Vehicle;

namespace {

/** A reading every second from 100 s on, each a metre further. */
QVector<Reading> metresASecond(int count)
{
    QVector<Reading> readings;
    for (int i = 0; i < count; ++i)
        readings << Reading {100.0 + i, double(i), std::nullopt};
    return readings;
}

/** A replay whose time goes by when the test says so. */
struct Player {
    Player()
    {
        QObject::connect(&replay, &Replay::reading, [this](const Reading& reading) { counters << reading.counter; });
        replay.load(metresASecond(11));
    }

    void pass(int ms)
    {
        now += ms;
        replay.tick();
    }
    /** What was handed out since the last call. */
    QVector<double> taken() { return std::exchange(counters, {}); }

    qint64 now = 5000;
    QVector<double> counters;
    Replay replay {nullptr, [this] { return now; }};
};

} // namespace

class tst_Replay : public QObject {
    Q_OBJECT

private slots:
    void nothingIsHandedOutBeforeItPlays();
    void readingsComeWhenTheirTimeHasCome();
    void tenTimesAsFast();
    void asFastAsPossibleWaitsForNoClock();
    void theTimeOfAPauseDoesNotCount();
    void goingBackGivesTheReadingThatWasTrueThere();
    void goingForwardLeavesOutWhatLiesBetween();
    void goingElsewhereWhilePlayingGoesOnFromThere();
    void positionsOutsideAreTheEnds();
    void theEndComesOnceAndPlayingAgainBeginsAnew();
    void aChangeOfSpeedCountsFromNowOn();
    void theSameSpeedTwiceIsToldOnce();
    void aWrongSpeedChangesNothing();
    void aListenerMayPauseOrLoadAnother();
    void withoutARecordingItDoesNotPlay();
    void readingsOfTheSameTimeComeTogether();
    void itsOwnTimerPlaysIt();
};

void tst_Replay::nothingIsHandedOutBeforeItPlays()
{
    Player player;

    player.pass(5000);

    QVERIFY(player.taken().isEmpty());
    QVERIFY(!player.replay.isPlaying());
    QCOMPARE(player.replay.position(), 0.0);
    QCOMPARE(player.replay.duration(), 10.0);
}

void tst_Replay::readingsComeWhenTheirTimeHasCome()
{
    Player player;
    player.replay.play();

    player.pass(0);
    QCOMPARE(player.taken(), QVector<double>({0}));
    player.pass(999);
    QVERIFY(player.taken().isEmpty());
    player.pass(1);
    QCOMPARE(player.taken(), QVector<double>({1}));
    player.pass(2500);
    QCOMPARE(player.taken(), QVector<double>({2, 3}));
    QCOMPARE(player.replay.position(), 3.5);
}

void tst_Replay::tenTimesAsFast()
{
    Player player;
    player.replay.setSpeed(10);
    player.replay.play();

    player.pass(300);

    QCOMPARE(player.taken(), QVector<double>({0, 1, 2, 3}));
}

void tst_Replay::asFastAsPossibleWaitsForNoClock()
{
    Player player;
    player.replay.setSpeed(Replay::fastest);
    player.replay.play();

    for (int i = 0; i < 5; ++i)
        player.pass(0);

    QCOMPARE(player.taken(), QVector<double>({0, 1, 2, 3, 4}));
    QCOMPARE(player.replay.position(), 4.0);
}

void tst_Replay::theTimeOfAPauseDoesNotCount()
{
    Player player;
    player.replay.play();
    player.pass(1500);
    player.taken();

    player.replay.pause();
    player.pass(100000);
    QVERIFY(player.taken().isEmpty());
    player.replay.play();
    player.pass(499);
    QVERIFY(player.taken().isEmpty());
    player.pass(1);

    QCOMPARE(player.taken(), QVector<double>({2}));
}

void tst_Replay::goingBackGivesTheReadingThatWasTrueThere()
{
    Player player;
    player.replay.play();
    player.pass(8000);
    player.replay.pause();
    player.taken();

    player.replay.seek(3.7);

    QCOMPARE(player.taken(), QVector<double>({3}));
    QCOMPARE(player.replay.position(), 3.7);
    QVERIFY(!player.replay.isPlaying());
    player.replay.play();
    player.pass(300);
    QCOMPARE(player.taken(), QVector<double>({4}));
}

void tst_Replay::goingForwardLeavesOutWhatLiesBetween()
{
    Player player;

    player.replay.seek(7);

    QCOMPARE(player.taken(), QVector<double>({7}));
}

void tst_Replay::goingElsewhereWhilePlayingGoesOnFromThere()
{
    Player player;
    player.replay.play();
    player.pass(5000);
    player.taken();

    player.now += 700;
    player.replay.seek(1);
    player.pass(1000);

    QCOMPARE(player.taken(), QVector<double>({1, 2}));
    QVERIFY(player.replay.isPlaying());
}

void tst_Replay::positionsOutsideAreTheEnds()
{
    Player player;

    player.replay.seek(-5);
    player.replay.seek(1000);
    player.replay.seek(qQNaN());

    QCOMPARE(player.taken(), QVector<double>({0, 10}));
    QCOMPARE(player.replay.position(), 10.0);
}

void tst_Replay::theEndComesOnceAndPlayingAgainBeginsAnew()
{
    Player player;
    QSignalSpy finished(&player.replay, &Replay::finished);
    player.replay.play();

    player.pass(60000);
    player.pass(1000);

    QCOMPARE(player.taken().size(), 11);
    QCOMPARE(finished.size(), 1);
    QVERIFY(!player.replay.isPlaying());
    QVERIFY(player.replay.atEnd());
    QCOMPARE(player.replay.position(), 10.0);
    player.replay.play();
    player.pass(1000);
    QCOMPARE(player.taken(), QVector<double>({0, 1}));
}

void tst_Replay::aChangeOfSpeedCountsFromNowOn()
{
    Player player;
    player.replay.play();
    player.now += 2000;

    player.replay.setSpeed(10);

    QCOMPARE(player.taken(), QVector<double>({0, 1, 2}));
    player.pass(100);
    QCOMPARE(player.taken(), QVector<double>({3}));
}

void tst_Replay::theSameSpeedTwiceIsToldOnce()
{
    Player player;
    QSignalSpy changed(&player.replay, &Replay::speedChanged);

    player.replay.setSpeed(10);
    player.replay.setSpeed(10);

    QCOMPARE(changed.size(), 1);
}

void tst_Replay::aWrongSpeedChangesNothing()
{
    Player player;

    player.replay.setSpeed(-1);
    player.replay.setSpeed(qInf());
    player.replay.setSpeed(qQNaN());

    QCOMPARE(player.replay.speed(), 1.0);
}

void tst_Replay::aListenerMayPauseOrLoadAnother()
{
    Player player;
    QObject::connect(&player.replay, &Replay::reading, [&player](const Reading& reading) {
        if (reading.counter > 1.5 && reading.counter < 2.5)
            player.replay.pause();
        if (reading.counter > 4.5 && reading.counter < 5.5)
            player.replay.load(metresASecond(2));
    });
    player.replay.play();

    player.pass(60000);
    QCOMPARE(player.taken(), QVector<double>({0, 1, 2}));
    QCOMPARE(player.replay.position(), 2.0);
    player.replay.play();
    player.pass(60000);

    QCOMPARE(player.taken(), QVector<double>({3, 4, 5}));
    QVERIFY(!player.replay.isPlaying());
    QCOMPARE(player.replay.duration(), 1.0);
    QCOMPARE(player.replay.position(), 0.0);
}

void tst_Replay::withoutARecordingItDoesNotPlay()
{
    Replay replay;

    replay.play();
    replay.seek(5);
    replay.tick();

    QVERIFY(!replay.isPlaying());
    QVERIFY(!replay.isLoaded());
}

void tst_Replay::readingsOfTheSameTimeComeTogether()
{
    Player player;
    player.replay.load({{0, 1, std::nullopt}, {0, 2, std::nullopt}, {0, 3, std::nullopt}});
    QSignalSpy finished(&player.replay, &Replay::finished);
    player.replay.play();

    player.pass(0);

    QCOMPARE(player.taken(), QVector<double>({1, 2, 3}));
    QCOMPARE(finished.size(), 1);
}

void tst_Replay::itsOwnTimerPlaysIt()
{
    Replay replay;
    QVector<double> counters;
    connect(&replay, &Replay::reading, this, [&counters](const Reading& reading) { counters << reading.counter; });
    QSignalSpy finished(&replay, &Replay::finished);
    replay.load(metresASecond(11));
    replay.setSpeed(100);

    replay.play();

    QVERIFY(finished.wait());
    QCOMPARE(counters.size(), 11);
}

QTEST_GUILESS_MAIN(tst_Replay)
#include "tst_Replay.moc"
