#include "host/vehicle/Recording.h"

#include <QtTest>

using namespace Torvik::Vehicle;

namespace {

QStringList texts(const QVector<LineProblem>& problems)
{
    QStringList lines;
    for (const LineProblem& problem : problems)
        lines << toText(problem);
    return lines;
}

} // namespace

class tst_Recording : public QObject {
    Q_OBJECT

private slots:
    void aLineIsAReading_data();
    void aLineIsAReading();
    void aHeaderOrABlankLineIsNothing_data();
    void aHeaderOrABlankLineIsNothing();
    void aMalformedLineTellsWhy_data();
    void aMalformedLineTellsWhy();
    void theRestOfARecordingGoesOnBehindAMalformedLine();
    void timeGoesForward();
    void aLastLineNeedsNoBreak();
    void whatIsWrittenReadsBack();
    void withoutASensorThereAreTwoColumns();
    void aLineComesInPieces();
    void anEndlessLineIsOneProblemAndTheNextLineCounts();
};

void tst_Recording::aLineIsAReading_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("hasSensor");
    QTest::newRow("commas") << QByteArray("1.5,2.25,-3,4,5e-1") << true;
    QTest::newRow("semicolons") << QByteArray("1.5;2.25;-3;4;0.5") << true;
    QTest::newRow("decimal commas") << QByteArray("1,5;2,25;-3,0;4;0,5") << true;
    QTest::newRow("blanks and a carriage return") << QByteArray("  1.5 , 2.25 ,-3, 4,\t0.5 \r") << true;
    QTest::newRow("no sensor") << QByteArray("1.5,2.25") << false;
    QTest::newRow("an empty sensor") << QByteArray("1.5,2.25,,,") << false;
}

void tst_Recording::aLineIsAReading()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, hasSensor);

    const ReadLine read = readLine(line);

    QVERIFY2(read.reading, qPrintable(read.error));
    QCOMPARE(read.reading->seconds, 1.5);
    QCOMPARE(read.reading->counter, 2.25);
    QCOMPARE(read.reading->sensor.has_value(), hasSensor);
    if (hasSensor)
        QVERIFY(*read.reading->sensor == (SensorPlace {-3, 4, 0.5}));
}

void tst_Recording::aHeaderOrABlankLineIsNothing_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char* line : {"", " \r", "time,counter", "Time;Counter;X;Y;Z", "time, counter, x, y, z"})
        QTest::newRow(line) << QByteArray(line);
}

void tst_Recording::aHeaderOrABlankLineIsNothing()
{
    QFETCH(QByteArray, line);

    const ReadLine read = readLine(line);

    QVERIFY(!read.reading);
    QVERIFY2(read.error.isEmpty(), qPrintable(read.error));
}

void tst_Recording::aMalformedLineTellsWhy_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("named");
    QTest::newRow("one value") << QByteArray("1") << "not 1";
    QTest::newRow("half a sensor") << QByteArray("1,2,3,4") << "not 4";
    QTest::newRow("too many") << QByteArray("1,2,3,4,5,6") << "not 6";
    QTest::newRow("a word") << QByteArray("1,two") << "counter \"two\"";
    QTest::newRow("a gap") << QByteArray("1,,3,4,5") << "counter \"\"";
    QTest::newRow("no number") << QByteArray("nan,2") << "time \"nan\"";
    QTest::newRow("infinite") << QByteArray("1,inf") << "counter \"inf\"";
    QTest::newRow("behind the moon") << QByteArray("1,2,3,4,1e9") << "z 1e9 is out of reach";
    QTest::newRow("another header") << QByteArray("seconds,metres") << "time \"seconds\"";
    QTest::newRow("binary") << QByteArray("\0\xff,\x01", 4) << "time";
}

void tst_Recording::aMalformedLineTellsWhy()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, named);

    const ReadLine read = readLine(line);

    QVERIFY(!read.reading);
    QVERIFY2(read.error.contains(named), qPrintable(read.error));
}

void tst_Recording::theRestOfARecordingGoesOnBehindAMalformedLine()
{
    const Recording recording = parseRecording("\xEF\xBB\xBFtime;counter\r\n0;0\r\nwhat\r\n\r\n1;0,5\r\n2;x\r\n3;1,5");

    QCOMPARE(recording.readings.size(), 3);
    QCOMPARE(recording.readings.last().counter, 1.5);
    QCOMPARE(texts(recording.problems),
             QStringList({"line 3: 2 or 5 values make a reading, not 1", "line 6: the counter \"x\" is no number"}));
}

void tst_Recording::timeGoesForward()
{
    const Recording recording = parseRecording("0,0\n2,1\n1,2\n2,3\n");

    QCOMPARE(recording.readings.size(), 3);
    QCOMPARE(texts(recording.problems), QStringList("line 3: the time lies before that of the line before"));
}

void tst_Recording::aLastLineNeedsNoBreak()
{
    QCOMPARE(parseRecording("0,0\n1,1").readings.size(), 2);
    QCOMPARE(parseRecording("0,0\n1,1\n").readings.size(), 2);
    QCOMPARE(parseRecording("").readings.size(), 0);
    QCOMPARE(parseRecording("").problems.size(), 0);
}

void tst_Recording::whatIsWrittenReadsBack()
{
    const QVector<Reading> readings {{0, 0, SensorPlace {0, 0, 0}}, {1.25, 0.3333, SensorPlace {-12.3456, 7, -0.0001}}};

    const QByteArray text = writeRecording(readings);
    const Recording read = parseRecording(text);

    QCOMPARE(text, QByteArray("time,counter,x,y,z\n0.000,0.0000,0.0000,0.0000,0.0000\n"
                              "1.250,0.3333,-12.3456,7.0000,-0.0001\n"));
    QVERIFY(read.problems.isEmpty());
    QCOMPARE(read.readings.size(), 2);
    QCOMPARE(read.readings[1].seconds, 1.25);
    QCOMPARE(read.readings[1].counter, 0.3333);
    QVERIFY(*read.readings[1].sensor == *readings[1].sensor);
}

void tst_Recording::withoutASensorThereAreTwoColumns()
{
    QCOMPARE(writeRecording({{0.5, 2, std::nullopt}}), QByteArray("time,counter\n0.500,2.0000\n"));
}

void tst_Recording::aLineComesInPieces()
{
    QVector<Reading> readings;
    QVector<LineProblem> problems;
    ReadingLines lines([&](const Reading& reading) { readings << reading; },
                       [&](const LineProblem& problem) { problems << problem; });

    for (const char c : QByteArray("1,2\nwrong\n3,4"))
        lines.feed(QByteArray(1, c));

    QCOMPARE(readings.size(), 1);
    QCOMPARE(lines.lineCount(), 2);
    lines.finish();
    QCOMPARE(readings.size(), 2);
    QCOMPARE(readings.last().counter, 4.0);
    QCOMPARE(problems.size(), 1);
    QCOMPARE(problems.first().line, 2);
    lines.finish();
    QCOMPARE(readings.size(), 2);
}

void tst_Recording::anEndlessLineIsOneProblemAndTheNextLineCounts()
{
    QVector<Reading> readings;
    QVector<LineProblem> problems;
    ReadingLines lines([&](const Reading& reading) { readings << reading; },
                       [&](const LineProblem& problem) { problems << problem; });

    lines.feed("0,0\n");
    for (int i = 0; i < 100; ++i)
        lines.feed(QByteArray(700, '1'));
    lines.feed("\n1,1\n");

    QCOMPARE(readings.size(), 2);
    QCOMPARE(texts(problems), QStringList("line 2: longer than 1000 bytes"));
}

QTEST_APPLESS_MAIN(tst_Recording)
#include "tst_Recording.moc"
