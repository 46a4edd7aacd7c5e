#include "host/app/FloorFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Torvik::Viewer;

class tst_FloorFile : public QObject {
    Q_OBJECT

private slots:
    void whatIsWrittenIsReadBack();
    void aPlanWithoutAPlaceIsStillAPlan();
    void whatIsNoneOfOursGivesNothing_data();
    void whatIsNoneOfOursGivesNothing();
    void aBadEntryCostsItsFloorOnly_data();
    void aBadEntryCostsItsFloorOnly();
    void withoutAFileNothingIsWrong();
    void ofADamagedFileTheFirstIsKept();
    void aFolderThatCannotBeWrittenToIsTold();

private:
    static QByteArray around(const QByteArray& plan)
    {
        return R"({"version": 1, "heights": [1, 2, 3, 4], "plans": [{"floor": 3, "file": "good.png", "place": [1, 2],)"
               R"("turn": 0, "scale": [1, 1, 1]},)" +
               plan + "]}";
    }
};

void tst_FloorFile::whatIsWrittenIsReadBack()
{
    Floors floors;
    floors.heights = {-0.1, 3.25, 2.9000000000000004, 0.0};
    floors.plans[0] = {"Erdgeschoß \"1\".png", FloorPlace {400000.12345678901, 5600000.1, -35.5, {2.5F, 1.0F, 0.1F}}};
    floors.plans[2] = {"upper.dxf", FloorPlace {-1e-7, 0.0, 180.0, {0.001F, 1.0F, 0.001F}}};

    const FloorFile::Reading reading = FloorFile::read(FloorFile::write(floors), "floors.json");

    QCOMPARE(reading.problems, QStringList());
    QCOMPARE(reading.floors.heights, floors.heights);
    QCOMPARE(reading.floors.plans.keys(), floors.plans.keys());
    for (const int floor : {0, 2}) {
        const FloorPlan& read = reading.floors.plans[floor];
        const FloorPlan& written = floors.plans[floor];
        QCOMPARE(read.file, written.file);
        QVERIFY(read.place);
        // To the last digit: what nobody has moved must not creep.
        QVERIFY(read.place->east == written.place->east);
        QVERIFY(read.place->north == written.place->north);
        QVERIFY(read.place->turnDeg == written.place->turnDeg);
        QVERIFY(read.place->scale == written.place->scale);
    }
}

void tst_FloorFile::aPlanWithoutAPlaceIsStillAPlan()
{
    const auto reading =
        FloorFile::read(around(R"({"floor": 0, "file": "a.png", "place": [1], "turn": 0, "scale": [1, 1, 1]})"), "f");

    QCOMPARE(reading.floors.plans.value(0).file, QString("a.png"));
    QVERIFY(!reading.floors.plans.value(0).place);
    QCOMPARE(reading.problems.size(), 1);
    QVERIFY2(reading.problems.first().contains("a.png lies on floor 1"), qPrintable(reading.problems.first()));
}

void tst_FloorFile::whatIsNoneOfOursGivesNothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("<xml/>");
    QTest::newRow("cut off") << around(R"({"floor": 0, "file": "a.png"})").left(60);
    QTest::newRow("a list") << QByteArray("[1, 2]");
    QTest::newRow("another's") << QByteArray(R"({"plans": "all"})");
    QTest::newRow("newer") << QByteArray(R"({"version": 2, "plans": []})");
    QTest::newRow("zeros") << QByteArray(300, '\0');
}

void tst_FloorFile::whatIsNoneOfOursGivesNothing()
{
    QFETCH(QByteArray, bytes);

    const auto reading = FloorFile::read(bytes, "/p/floors.json");

    QVERIFY(reading.floors.plans.isEmpty() && reading.floors.heights.isEmpty());
    QCOMPARE(reading.problems.size(), 1);
    QVERIFY2(reading.problems.first().contains("/p/floors.json"), qPrintable(reading.problems.first()));
}

void tst_FloorFile::aBadEntryCostsItsFloorOnly_data()
{
    QTest::addColumn<QByteArray>("plan");
    const auto file = [](const QByteArray& name) { return R"({"floor": 0, "file": ")" + name + "\"}"; };
    QTest::newRow("no object") << QByteArray("7");
    QTest::newRow("no floor") << QByteArray(R"({"file": "a.png"})");
    QTest::newRow("a fifth floor") << QByteArray(R"({"floor": 4, "file": "a.png"})");
    QTest::newRow("half a floor") << QByteArray(R"({"floor": 0.5, "file": "a.png"})");
    QTest::newRow("a floor twice") << QByteArray(R"({"floor": 3, "file": "a.png"})");
    QTest::newRow("no name") << file("");
    QTest::newRow("out of the project") << file("../../a.png");
    QTest::newRow("another folder") << file("/home/a.png");
    QTest::newRow("in a folder") << file("Graphics3D/a.png");
    QTest::newRow("backwards") << file(R"(..\\a.png)");
    QTest::newRow("above") << file("..");
    // It would be used up.
    QTest::newRow("a PDF") << file("a.pdf");
    QTest::newRow("a number") << QByteArray(R"({"floor": 0, "file": 8})");
}

void tst_FloorFile::aBadEntryCostsItsFloorOnly()
{
    QFETCH(QByteArray, plan);

    const auto reading = FloorFile::read(around(plan), "floors.json");

    QCOMPARE(reading.problems.size(), 1);
    QCOMPARE(reading.floors.plans.keys(), QList<int> {3});
    QCOMPARE(reading.floors.plans.value(3).file, QString("good.png"));
    QCOMPARE(reading.floors.heights, (QVector<double> {1, 2, 3, 4}));
}

void tst_FloorFile::withoutAFileNothingIsWrong()
{
    const QTemporaryDir project;

    const auto reading = FloorFile::load(project.path() + '/');

    QCOMPARE(reading.problems, QStringList());
    QVERIFY(reading.floors.plans.isEmpty());
}

void tst_FloorFile::ofADamagedFileTheFirstIsKept()
{
    const QTemporaryDir folder;
    const QString project = folder.path() + '/';
    const QString path = FloorFile::path(project);
    const auto content = [](const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    };
    QCOMPARE(FloorFile::save({}, project, false), QString());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("precious") == 8);
    file.close();

    QCOMPARE(FloorFile::save({}, project, true), QString());
    QCOMPARE(FloorFile::save({{1, 2, 3, 4}, {}}, project, true), QString());

    QCOMPARE(content(path + ".damaged"), QByteArray("precious"));
    QCOMPARE(FloorFile::load(project).floors.heights, (QVector<double> {1, 2, 3, 4}));
}

void tst_FloorFile::aFolderThatCannotBeWrittenToIsTold()
{
    const QTemporaryDir folder;
    // Where the folder should be there is a file.
    QFile file(folder.filePath("Documentation"));
    QVERIFY(file.open(QIODevice::WriteOnly));

    QVERIFY(!FloorFile::save({}, folder.path() + '/', false).isEmpty());
}

QTEST_GUILESS_MAIN(tst_FloorFile)
#include "tst_FloorFile.moc"
