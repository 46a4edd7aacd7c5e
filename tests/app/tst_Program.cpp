#include "common/TestProject.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

using Kx::Test::TestProject;

namespace {

/** Metres of this system are metres of the scene. */
const QString utm32 = QStringLiteral(
    R"(PROJCS["ETRS89 / UTM zone 32N",GEOGCS["ETRS89",DATUM["European_Terrestrial_Reference_System_1989",SPHEROID["GRS 1980",6378137,298.257222101]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",9],PARAMETER["scale_factor",0.9996],PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1],AUTHORITY["EPSG","25832"]])");

struct Outcome {
    int status = -1;
    QString out;
    QStringList errors;
};

/** A small town north and west of its first manhole, S1: pipes of 2 m, so that a picture of it has something to show.
 */
void fill(TestProject& project)
{
    const QVariantMap manhole {{"OBJ_Type", "MH"}, {"OBJ_DepthToInvert", 3.0}, {"OBJ_Size1", 4000.0}};
    const QVariantMap pipe {{"OBJ_Size1", 2000.0}};
    const auto a = project.addNode("S1", "POINT ZM(400000 5600000 100 16)", manhole);
    const auto b = project.addNode("S2", "POINT ZM(400000 5600060 100 16)", manhole);
    const auto c = project.addNode("S10", "POINT ZM(400060 5600060 100 16)", manhole);
    // A downstream inspection's course is stored from its end; 320 says that, and that a shape is known.
    project.addInspection(project.addSection("H1", a, b, pipe),
                          "LINESTRING ZM(400000 5600060 97 320,400000 5600000 97 0)");
    project.addInspection(project.addSection("H2", b, c, pipe),
                          "LINESTRING ZM(400060 5600060 97 320,400000 5600060 97 0)");
}

bool isPipe(const QColor& colour)
{
    return colour.green() > 60 && colour.green() > 2 * colour.red() && colour.green() > 2 * colour.blue();
}

bool isManhole(const QColor& colour)
{
    return colour.red() > colour.green() + 20 && colour.green() > colour.blue();
}

/** Whether any pixel near the point meets the condition. */
bool near(const QImage& picture, QPoint point, bool (*condition)(const QColor&), int reach = 6)
{
    for (int y = point.y() - reach; y <= point.y() + reach; ++y) {
        for (int x = point.x() - reach; x <= point.x() + reach; ++x) {
            if (picture.valid(x, y) && condition(picture.pixelColor(x, y)))
                return true;
        }
    }
    return false;
}

} // namespace

/** The program as its user meets it: as a process. */
class tst_Program : public QObject {
    Q_OBJECT

private slots:
    void timingTellsTheParts();
    void init();
    void helpGoesToTheOutput();
    void aWrongArgumentGivesOneLineAndStatus2();
    void aMissingProjectGivesOneLineAndStatus1_data();
    void aMissingProjectGivesOneLineAndStatus1();
    void infoCountsAsJsonAndAsText();
    void anImportOfNothingLeavesNothing();
    void findingsComeIntoAProject();
    void theDumpHoldsProjectorNodesAndSections();
    void theDumpHoldsObservationsAndConnections();
    void aPlanLiesUnderTheNetworkAndIsStoredNowhere_data();
    void aPlanLiesUnderTheNetworkAndIsStoredNowhere();
    void aPlanThatCannotBeLaidGivesOneLineAndStatus1_data();
    void aPlanThatCannotBeLaidGivesOneLineAndStatus1();
    void twoDumpsAreTheSame();
    void aPictureShowsPipesAndManholesWhereTheyAre();
    void aPictureIsTakenWithoutTheTilesAskedFor();
    void aPageIsPrintedTrueToScale();
    void aPictureLooksAtTheObjectAskedFor();
    void anUnknownKeyGivesOneLineAndStatus1();
    void theFrontViewShowsTheDepth();
    void theSampleNeedsNoProject();

private:
    Outcome run(const QStringList& arguments);

    QScopedPointer<QTemporaryDir> m_folder;
};

void tst_Program::init()
{
    m_folder.reset(new QTemporaryDir);
}

Outcome tst_Program::run(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_folder->path());
    environment.insert("XDG_CONFIG_HOME", m_folder->path());
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    process.start(QStringLiteral(KX_VIEWER), arguments);
    Outcome outcome;
    if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
        outcome.status = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError()).split('\n', Qt::SkipEmptyParts);
    return outcome;
}

void tst_Program::helpGoesToTheOutput()
{
    const Outcome outcome = run({"--help"});

    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.out.contains("--screenshot"));
    QVERIFY(outcome.errors.isEmpty());
}

void tst_Program::aWrongArgumentGivesOneLineAndStatus2()
{
    const Outcome outcome = run({"town", "--wrong"});

    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors.size(), 1);
    QVERIFY(outcome.errors.first().contains("--wrong"));
}

void tst_Program::aMissingProjectGivesOneLineAndStatus1_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("info") << QStringList({"info", "no-such-town"});
    QTest::newRow("dump") << QStringList({"no-such-town", "--dump", "scene.json"});
    QTest::newRow("picture") << QStringList({"no-such-town", "--screenshot", "picture.png"});
    QTest::newRow("window") << QStringList({"no-such-town"});
}

void tst_Program::aMissingProjectGivesOneLineAndStatus1()
{
    QFETCH(QStringList, arguments);

    const Outcome outcome = run(arguments);

    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors.size(), 1);
    QVERIFY2(outcome.errors.first().contains("no-such-town"), qPrintable(outcome.errors.first()));
    QVERIFY(QDir(m_folder->path()).entryList(QDir::Files).isEmpty());
}

void tst_Program::infoCountsAsJsonAndAsText()
{
    TestProject project(utm32);
    fill(project);
    project.close();

    const Outcome json = run({"info", project.path(), "--json"});
    const Outcome text = run({"info", project.path()});

    QCOMPARE(json.status, 0);
    const QJsonObject counts = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(counts.value("nodes").toInt(), 3);
    QCOMPARE(counts.value("sections").toInt(), 2);
    QCOMPARE(counts.value("inspections").toInt(), 2);
    QCOMPARE(counts.value("nodeTypes").toObject().value("MH").toInt(), 3);
    QCOMPARE(text.status, 0);
    QVERIFY(text.out.contains("nodes         3"));
}

void tst_Program::anImportOfNothingLeavesNothing()
{
    const Outcome outcome = run({"import", "no-such-file.xml", "town"});

    QCOMPARE(outcome.status, 1);
    QVERIFY(!outcome.errors.isEmpty());
    QVERIFY(!QDir(m_folder->filePath("town")).exists());
}

void tst_Program::findingsComeIntoAProject()
{
    const QString source = QStringLiteral(KX_SOURCE_DIR "/tests/host_import/data/");
    QFile file(m_folder->filePath("codes.csv"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("pipe,distance,code\nSURVEYED,7,BAB\nNOWHERE,1,BAB\n");
    file.close();

    const Outcome imported = run({"import", source + "findings_2017.xml", "town", "--findings", "codes.csv"});
    const Outcome added = run({"findings", "town", "codes.csv", "codes.csv", "--report", "r.json"});
    const Outcome failed = run({"findings", "village", "codes.csv"});

    QCOMPARE(imported.status, 0);
    QVERIFY2(imported.out.contains("observations: 25 read, 21 taken, 4 left out"), qPrintable(imported.out));
    QCOMPARE(added.status, 0);
    QVERIFY2(added.out.contains("observations: 4 read, 2 taken, 2 left out"), qPrintable(added.out));
    QCOMPARE(added.errors.size(), 2);
    QVERIFY(added.errors.first().startsWith("codes.csv:3: "));
    QVERIFY(QFile::exists(m_folder->filePath("r.json")));
    const Outcome info = run({"info", "town"});
    QVERIFY2(info.out.contains(QRegularExpression("observations\\s+23")), qPrintable(info.out));
    QCOMPARE(failed.status, 1);
    QCOMPARE(failed.errors.size(), 1);
}

void tst_Program::theDumpHoldsProjectorNodesAndSections()
{
    TestProject project(utm32);
    fill(project);
    project.close();
    const QString file = m_folder->filePath("scene.json");

    const Outcome outcome = run({project.path(), "--dump", file});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly));
    const QJsonObject scene = QJsonDocument::fromJson(written.readAll()).object();
    const QJsonArray nodes = scene.value("nodes").toArray();
    QStringList keys;
    for (const QJsonValue& node : nodes)
        keys << node.toObject().value("key").toString();
    QCOMPARE(keys, QStringList({"S1", "S10", "S2"}));
    QCOMPARE(nodes.at(1).toObject().value("position").toArray(), QJsonArray({-60, 0, 60}));
    QCOMPARE(nodes.at(1).toObject().value("flags").toInt(), 16);
    QCOMPARE(nodes.at(1).toObject().value("depth").toDouble(), 3.0);
    QCOMPARE(nodes.at(1).toObject().value("seaLevel").toDouble(), 100.0);
    const QJsonArray sections = scene.value("sections").toArray();
    QCOMPARE(sections.size(), 2);
    const QJsonObject first = sections.at(0).toObject();
    QCOMPARE(first.value("key").toString(), QString("H1"));
    QCOMPARE(first.value("radius").toDouble(), 1.0);
    QCOMPARE(first.value("startNode").toString(), nodes.at(0).toObject().value("guid").toString());
    QCOMPARE(first.value("projectedPoints").toArray().at(1).toArray().at(0).toDouble(), 400000.0);
    QCOMPARE(first.value("length").toDouble(), 60.0);
    QCOMPARE(scene.value("projector").toObject().value("origin").toArray(), QJsonArray({-400000, 100, 5600000}));
}

void tst_Program::theDumpHoldsObservationsAndConnections()
{
    TestProject project(utm32);
    fill(project);
    const auto pipe = project.project()->section(0);
    const auto lateral = project.addLateral("L1", pipe, {{"OBJ_Size1", 150}});
    const auto joint = project.addObservation(
        pipe->inspection(0), "BCAAA", 20,
        {{"OBS_ClockPos1", 3}, {"OBS_JointAngle", 45}, {"OBS_LateralSection_REF", lateral->id()}});
    const auto crack = project.addObservation(pipe->inspection(0), "BABBA", 7.25, {{"OBS_ClockPos1", 10}});
    const QString pipeId = pipe->id();
    const QString ids[] = {crack->id(), joint->id(), lateral->id()};
    project.close();
    const QString file = m_folder->filePath("scene.json");

    QCOMPARE(run({project.path(), "--dump", file}).status, 0);

    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly));
    const QJsonObject scene = QJsonDocument::fromJson(written.readAll()).object();
    const QJsonArray observations = scene.value("observations").toArray();
    QCOMPARE(observations.size(), 2);
    const QJsonObject first = observations.at(0).toObject();
    QCOMPARE(first.value("id").toString(), ids[0]);
    QCOMPARE(first.value("code").toString(), QString("BABBA"));
    QCOMPARE(first.value("kind").toString(), QString("plain"));
    QCOMPARE(first.value("section").toString(), pipeId);
    QCOMPARE(first.value("distance").toDouble(), 7.25);
    QCOMPARE(first.value("clock").toInt(), 10);
    const QJsonArray begin =
        scene.value("sections").toArray().at(0).toObject().value("points").toArray().at(0).toArray();
    QCOMPARE(first.value("position").toArray(), QJsonArray({0, begin.at(1), 7.25}));
    const QJsonObject second = observations.at(1).toObject();
    QCOMPARE(second.value("kind").toString(), QString("connection"));
    QCOMPARE(second.value("angle").toDouble(), 45.0);
    QCOMPARE(second.value("lateral").toString(), ids[2]);
    QCOMPARE(scene.value("connections").toArray(),
             QJsonArray({QJsonObject({{"lateral", ids[2]},
                                      {"observation", ids[1]},
                                      {"section", pipeId},
                                      {"point", QJsonArray({0, begin.at(1), 20})}})}));
}

void tst_Program::aPlanLiesUnderTheNetworkAndIsStoredNowhere_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kind");
    QTest::newRow("picture") << "plan.png"
                             << "imagebackground";
    QTest::newRow("pdf") << "plan.pdf"
                         << "pdfimagebackground";
}

void tst_Program::aPlanLiesUnderTheNetworkAndIsStoredNowhere()
{
    QFETCH(QString, name);
    TestProject project(utm32);
    fill(project);
    project.close();
    const QString plan = m_folder->filePath(name);
    if (name.endsWith("pdf")) {
        QPdfWriter writer(plan);
        QPainter(&writer).drawEllipse(QPoint(2000, 2000), 1000, 1000);
    } else {
        QVERIFY(QImage(20, 10, QImage::Format_RGB32).save(plan));
    }
    const QString file = m_folder->filePath("scene.json");

    const Outcome outcome =
        run({project.path(), "--dump", file, "--plan", plan, "--plan-scale", "2", "--plan-at", "570050,5830020"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly));
    const QJsonObject scene = QJsonDocument::fromJson(written.readAll()).object();
    const QJsonArray plans = scene.value("plans").toArray();
    QCOMPARE(plans.size(), 1);
    QTEST(plans.at(0).toObject().value("kind").toString(), "kind");
    QCOMPARE(plans.at(0).toObject().value("file").toString(), plan);
    QCOMPARE(plans.at(0).toObject().value("toConfirm").toBool(), true);
    QCOMPARE(plans.at(0).toObject().value("visible").toBool(), true);
    QVERIFY(plans.at(0).toObject().value("elevation").toDouble() < 0.0);
    const QJsonArray rows = plans.at(0).toObject().value("matrix").toArray();
    const QJsonArray origin = scene.value("projector").toObject().value("origin").toArray();
    QVERIFY(qAbs(rows.at(0).toArray().at(3).toDouble() - (-570050 - origin.at(0).toDouble())) < 0.01);
    QVERIFY(qAbs(rows.at(2).toArray().at(3).toDouble() - (5830020 - origin.at(2).toDouble())) < 0.01);
    QCOMPARE(rows.at(0).toArray().at(0).toDouble(), 2.0);
    QVERIFY(QFile::exists(plan));
    QDirIterator files(project.path(), {"plan.*"}, QDir::Files, QDirIterator::Subdirectories);
    QVERIFY(!files.hasNext());
}

void tst_Program::aPlanThatCannotBeLaidGivesOneLineAndStatus1_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("helps");
    QTest::newRow("missing") << "none.png" << QByteArray() << "no such file";
    QTest::newRow("broken picture") << "a.png" << QByteArray("rubbish") << "save it as PNG";
    QTest::newRow("broken pdf") << "a.pdf" << QByteArray("rubbish") << "damaged";
    QTest::newRow("no kind of plan") << "a.txt" << QByteArray("text") << "no kind of plan";
    QTest::newRow("large drawing") << "a.dwg" << QByteArray(10485761, 'x') << "10 MB";
}

void tst_Program::aPlanThatCannotBeLaidGivesOneLineAndStatus1()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, helps);
    TestProject project(utm32);
    project.close();
    const QString plan = m_folder->filePath(name);
    QFile file(plan);
    QVERIFY(content.isEmpty() || (file.open(QIODevice::WriteOnly) && file.write(content) == content.size()));
    file.close();

    const Outcome outcome = run({project.path(), "--dump", m_folder->filePath("scene.json"), "--plan", plan});

    QCOMPARE(outcome.status, 1);
    const QStringList lines = outcome.errors.filter("kxviewer: ");
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().contains(plan) && lines.first().contains(helps), qPrintable(lines.first()));
    QCOMPARE(QFile::exists(plan), !content.isEmpty());
}

void tst_Program::twoDumpsAreTheSame()
{
    TestProject project(utm32);
    fill(project);
    project.close();
    QByteArray contents[2];
    for (QByteArray& content : contents) {
        const QString file = m_folder->filePath("scene.json");
        QCOMPARE(run({project.path(), "--dump", file}).status, 0);
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        content = written.readAll();
    }

    QVERIFY(!contents[0].isEmpty());
    QCOMPARE(contents[0], contents[1]);
}

void tst_Program::aPictureShowsPipesAndManholesWhereTheyAre()
{
    TestProject project(utm32);
    fill(project);
    project.close();
    const QString file = m_folder->filePath("picture.png");

    // 1910 m through the lens of 3 degrees: 100 m from the lower to the upper edge, 5 pixels a metre.
    const Outcome outcome =
        run({project.path(), "--screenshot", file, "--size", "600x500", "--distance", "1909.4", "--view", "top"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    const QImage picture(file);
    QCOMPARE(picture.size(), QSize(600, 500));
    // The middle of the project is in the middle of the picture, north is up, east is right.
    const QPoint middle(300, 250);
    const int far = 150;
    QVERIFY(near(picture, middle + QPoint(-far, far), isManhole));
    QVERIFY(near(picture, middle + QPoint(-far, -far), isManhole));
    QVERIFY(near(picture, middle + QPoint(far, -far), isManhole));
    QVERIFY(near(picture, middle + QPoint(-far, 0), isPipe));
    QVERIFY(near(picture, middle + QPoint(0, -far), isPipe));
    QVERIFY(!near(picture, middle + QPoint(far, far), isManhole, 40));
    QVERIFY(!near(picture, middle, isPipe, 40));
}

void tst_Program::aPictureIsTakenWithoutTheTilesAskedFor()
{
    TestProject project(utm32);
    fill(project);
    project.close();
    const QString file = m_folder->filePath("picture.png");

    // Nobody listens on that port.
    const Outcome outcome = run({project.path(), "--screenshot", file, "--size", "600x500", "--distance", "1909.4",
                                 "--view", "top", "--tiles", "http://127.0.0.1:1"});

    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.errors.size() == 1 && outcome.errors[0].contains("no map"), qPrintable(outcome.errors.join('\n')));
    QVERIFY(near(QImage(file), QPoint(300 - 150, 250 + 150), isManhole));
}

void tst_Program::aPageIsPrintedTrueToScale()
{
    TestProject project;
    fill(project);
    project.close();
    const QString page = m_folder->filePath("page.pdf");

    const Outcome outcome = run({project.path(), "--print", page, "--language", "de", "--no-map"});

    QCOMPARE(outcome.status, 0);
    QProcess reader;
    reader.start("pdftotext", {"-layout", page, "-"});
    QVERIFY(reader.waitForFinished());
    const QString text = QString::fromUtf8(reader.readAllStandardOutput());
    QVERIFY2(text.contains("Ansicht") && text.contains("von oben"), qPrintable(text));
    QVERIFY2(text.contains(QRegularExpression("1 : \\d+")), qPrintable(text));
}

void tst_Program::aPictureLooksAtTheObjectAskedFor()
{
    TestProject project(utm32);
    fill(project);
    project.close();
    const QString file = m_folder->filePath("picture.png");

    const Outcome outcome = run({project.path(), "--screenshot", file, "--size", "400x400", "--go-to", "S10"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    const QImage picture(file);
    QVERIFY(near(picture, {200, 200}, isManhole));
    QVERIFY(near(picture, {60, 200}, isPipe, 20));
    QVERIFY(!near(picture, {340, 200}, isPipe, 20));
}

void tst_Program::anUnknownKeyGivesOneLineAndStatus1()
{
    TestProject project(utm32);
    fill(project);
    project.close();

    const Outcome outcome = run({project.path(), "--screenshot", "picture.png", "--go-to", "S11"});

    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors.size(), 1);
    QVERIFY(outcome.errors.first().contains("S11"));
}

void tst_Program::theFrontViewShowsTheDepth()
{
    TestProject project(utm32);
    fill(project);
    project.close();
    const QString file = m_folder->filePath("picture.png");

    const Outcome outcome = run({project.path(), "--screenshot", file, "--size", "400x400", "--view", "front",
                                 "--go-to", "S1", "--distance", "382"});

    // 20 m in 400 pixels. The manhole reaches 3 m down from its cover; the centre is in its middle.
    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    const QImage picture(file);
    QVERIFY(near(picture, {200, 200}, isManhole));
    QVERIFY(!near(picture, {200, 120}, isManhole, 10));
    QVERIFY(!near(picture, {200, 290}, isManhole, 10));
}

void tst_Program::theSampleNeedsNoProject()
{
    const QString file = m_folder->filePath("sample.png");

    const Outcome outcome = run({"--screenshot", file, "--view", "3d"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    const QImage picture(file);
    int pipes = 0;
    int manholes = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            pipes += isPipe(picture.pixelColor(x, y));
            manholes += isManhole(picture.pixelColor(x, y));
        }
    }
    QVERIFY2(pipes > 500, qPrintable(QString::number(pipes)));
    QVERIFY2(manholes > 50, qPrintable(QString::number(manholes)));
}

void tst_Program::timingTellsTheParts()
{
    const Outcome outcome =
        run({"--screenshot", m_folder->filePath("picture.png"), "--size", "300x200", "--no-map", "--timing"});

    QCOMPARE(outcome.status, 0);
    static const QRegularExpression part("^ +(\\d+) +(\\d+)  (\\w.*)$", QRegularExpression::MultilineOption);
    QStringList names;
    int sum = 0;
    for (auto found = part.globalMatch(outcome.errors.join('\n')); found.hasNext();) {
        const auto match = found.next();
        sum += match.captured(1).toInt();
        QCOMPARE(match.captured(2).toInt(), sum);
        names << match.captured(3);
    }
    QCOMPARE(names.value(0), QString("application and window"));
    QVERIFY(names.contains("reading the project") && names.contains("building the scene"));
    QCOMPARE(names.last(), QString("painting the network"));
    QVERIFY(sum > 0);
}

QTEST_GUILESS_MAIN(tst_Program)
#include "tst_Program.moc"
