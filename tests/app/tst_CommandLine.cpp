#include "host/app/CommandLine.h"

#include <QtTest>

using namespace Torvik::Viewer;

namespace {

QStringList words(const QString& line)
{
    return line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

Options understood(const char* line)
{
    const ParsedArguments parsed = parseArguments(words(QString::fromLatin1(line)));
    if (parsed.options)
        return *parsed.options;
    qWarning("refused: %s", qPrintable(parsed.error));
    Options none;
    none.project = parsed.error;
    none.command = Command::Version;
    return none;
}

} // namespace

class tst_CommandLine : public QObject {
    Q_OBJECT

private slots:
    void nothingOpensTheSampleInAWindow();
    void aBareWordIsTheProject();
    void aPageIsPrinted();
    void theLanguageIsEnglishOrGerman();
    void aPictureTakesSizeViewDistanceAndObject();
    void aPictureOfTheSampleNeedsNoProject();
    void theValueMayStandBehindAnEqualsSign();
    void importTakesSeveralFiles();
    void findingsGoIntoAProject();
    void recordTakesStepSpeedNoiseAndSeed();
    void replayTakesAnInspection();
    void aReplayMayBeWatchedInAWindow();
    void listeningIsForThisMachineUnlessToldOtherwise();
    void infoTakesJson();
    void dumpTakesAFile();
    void aPlanTakesScaleAndPlace();
    void helpWinsOverEverythingElse();
    void wordsBehindTwoDashesAreNoOptions();
    void aFolderNamedLikeACommandIsReachable();
    void wrongArgumentsGiveOneLine_data();
    void wrongArgumentsGiveOneLine();
    void helpTellsEveryOption_data();
    void helpTellsEveryOption();
};

void tst_CommandLine::nothingOpensTheSampleInAWindow()
{
    const Options options = understood("");

    QCOMPARE(options.command, Command::Window);
    QVERIFY(options.project.isEmpty());
    QCOMPARE(options.size, QSize(1280, 800));
    QCOMPARE(options.view, StandardView::Top);
    QVERIFY(!options.distance);
}

void tst_CommandLine::aBareWordIsTheProject()
{
    const Options options = understood("some/where");

    QCOMPARE(options.command, Command::Window);
    QCOMPARE(options.project, QStringLiteral("some/where"));
}

void tst_CommandLine::aPageIsPrinted()
{
    const Options options = understood("town --print page.pdf --view 3d --go-to S1 --language de");

    QCOMPARE(options.command, Command::Screenshot);
    QVERIFY(options.print);
    QCOMPARE(options.outputFile, QStringLiteral("page.pdf"));
    QCOMPARE(options.view, StandardView::Perspective);
    QCOMPARE(options.size, QSize(613, 637));
    QCOMPARE(understood("town --print page.pdf --size 800x600").size, QSize(800, 600));
    QVERIFY(!understood("town --screenshot out.png").print);
    QVERIFY(parseArguments({"town", "--print", "a.pdf", "--screenshot", "a.png"}).error.contains("exclude"));
    QVERIFY(parseArguments({"town", "--print", "a.pdf", "--whole-window"}).error.contains("--screenshot"));
}

void tst_CommandLine::theLanguageIsEnglishOrGerman()
{
    QVERIFY(understood("town").language.isEmpty());
    QCOMPARE(understood("town --language de").language, QStringLiteral("de"));
    QCOMPARE(understood("--screenshot out.png --language=en").language, QStringLiteral("en"));
    QVERIFY(parseArguments({"town", "--language", "fr"}).error.contains("--language is en or de"));
}

void tst_CommandLine::aPictureTakesSizeViewDistanceAndObject()
{
    const Options options =
        understood("town --screenshot out.png --size 640x480 --view 3d --distance 120.5 --go-to 4711-a");

    QCOMPARE(options.command, Command::Screenshot);
    QCOMPARE(options.outputFile, QStringLiteral("out.png"));
    QCOMPARE(options.size, QSize(640, 480));
    QCOMPARE(options.view, StandardView::Perspective);
    QCOMPARE(options.distance.value(), 120.5);
    QCOMPARE(options.goToKey, QStringLiteral("4711-a"));
    QVERIFY(!options.fit);
    QVERIFY(!options.wholeWindow);
    QVERIFY(understood("--screenshot out.png --whole-window").wholeWindow);
    QVERIFY(understood("--screenshot out.png --window").wholeWindow);
    QCOMPARE(understood("--screenshot out.png --window").command, Command::Screenshot);
    QVERIFY(!understood("--screenshot out.png").wholeWindow);
}

void tst_CommandLine::aPictureOfTheSampleNeedsNoProject()
{
    QCOMPARE(understood("town --tiles /maps").tiles, QStringLiteral("/maps"));
    QVERIFY(understood("town --no-map --screenshot out.png").noMap);
    QCOMPARE(understood("town --gps 2d").gps, QStringLiteral("2d"));
    QCOMPARE(understood("town --gps -33.8,151.2 --screenshot out.png").gps, QStringLiteral("-33.8,151.2"));
    QVERIFY(understood("town --timing").timing && !understood("town").timing);
    QVERIFY(understood("town").tiles.isEmpty() && !understood("town").noMap);
    const Options options = understood("--screenshot out.png --view front --fit");

    QCOMPARE(options.command, Command::Screenshot);
    QVERIFY(options.project.isEmpty());
    QCOMPARE(options.view, StandardView::Front);
    QVERIFY(options.fit);
}

void tst_CommandLine::theValueMayStandBehindAnEqualsSign()
{
    const Options options = understood("town --screenshot=a=b.png --go-to=--odd");

    QCOMPARE(options.outputFile, QStringLiteral("a=b.png"));
    QCOMPARE(options.goToKey, QStringLiteral("--odd"));
}

void tst_CommandLine::findingsGoIntoAProject()
{
    const Options added = understood("findings town one.csv two.csv --report r.json");
    const Options imported = understood("import net.xml town --findings one.csv --findings two.csv");

    QCOMPARE(added.command, Command::Findings);
    QCOMPARE(added.project, QStringLiteral("town"));
    QCOMPARE(added.findingsFiles, (QStringList {"one.csv", "two.csv"}));
    QCOMPARE(added.reportFile, QStringLiteral("r.json"));
    QCOMPARE(imported.command, Command::Import);
    QCOMPARE(imported.findingsFiles, added.findingsFiles);
    QCOMPARE(understood("./findings").command, Command::Window);
}

void tst_CommandLine::importTakesSeveralFiles()
{
    const Options options = understood(
        "import net.xml town --crs epsg:25832 --mapping m.json --with one.xml --with two.xml --report r.json");

    QCOMPARE(options.command, Command::Import);
    QCOMPARE(options.source, QStringLiteral("net.xml"));
    QCOMPARE(options.project, QStringLiteral("town"));
    QCOMPARE(options.crs, QStringLiteral("EPSG:25832"));
    QCOMPARE(options.mappingFile, QStringLiteral("m.json"));
    QCOMPARE(options.furtherSources, QStringList({QStringLiteral("one.xml"), QStringLiteral("two.xml")}));
    QCOMPARE(options.reportFile, QStringLiteral("r.json"));
}

void tst_CommandLine::recordTakesStepSpeedNoiseAndSeed()
{
    const Options plain = understood("record town H1 run.csv");
    const Options full = understood("record town H1 run.csv --noise 0.005 --seed 7 --step 0.1 --speed 0.3");

    QCOMPARE(plain.command, Command::Record);
    QCOMPARE(plain.project, QStringLiteral("town"));
    QCOMPARE(plain.inspectKey, QStringLiteral("H1"));
    QCOMPARE(plain.outputFile, QStringLiteral("run.csv"));
    QCOMPARE(plain.run.step, 0.25);
    QCOMPARE(plain.run.noise, 0.0);
    QCOMPARE(full.run.noise, 0.005);
    QCOMPARE(full.run.seed, 7U);
    QCOMPARE(full.run.step, 0.1);
    QCOMPARE(full.run.speed, 0.3);
    QCOMPARE(understood("./record").command, Command::Window);
}

void tst_CommandLine::replayTakesAnInspection()
{
    const Options plain = understood("town --inspect H1 --replay run.csv");
    const Options full = understood("town --inspect H1 --replay run.csv --real-time --speed 10 --screenshot p.png");

    QCOMPARE(plain.command, Command::Replay);
    QCOMPARE(plain.inspectKey, QStringLiteral("H1"));
    QCOMPARE(plain.replayFile, QStringLiteral("run.csv"));
    QVERIFY(!plain.realTime);
    QVERIFY(!plain.speed);
    QCOMPARE(full.command, Command::Screenshot);
    QCOMPARE(full.replayFile, QStringLiteral("run.csv"));
    QVERIFY(full.realTime);
    QCOMPARE(full.speed.value(), 10.0);
    QCOMPARE(understood("town --inspect H1 --replay run.csv --speed max").speed.value(), 0.0);
}

void tst_CommandLine::aReplayMayBeWatchedInAWindow()
{
    const Options options = understood("town --inspect H1 --replay run.csv --window --speed 10");

    QCOMPARE(options.command, Command::Window);
    QCOMPARE(options.replayFile, QStringLiteral("run.csv"));
    QCOMPARE(understood("town --inspect H1").command, Command::Window);
    QCOMPARE(understood("town --inspect H1").inspectKey, QStringLiteral("H1"));
}

void tst_CommandLine::listeningIsForThisMachineUnlessToldOtherwise()
{
    const Options local = understood("town --inspect H1 --listen 4711");
    const Options all = understood("town --inspect H1 --listen 0 --address 0.0.0.0 --real-time");

    QCOMPARE(local.command, Command::Window);
    QCOMPARE(int(local.listenPort.value()), 4711);
    QCOMPARE(local.listenAddress, QStringLiteral("127.0.0.1"));
    QCOMPARE(int(all.listenPort.value()), 0);
    QCOMPARE(all.listenAddress, QStringLiteral("0.0.0.0"));
    QVERIFY(all.realTime);
    QVERIFY(!understood("town").listenPort);
}

void tst_CommandLine::infoTakesJson()
{
    QVERIFY(!understood("info town").infoAsJson);

    const Options options = understood("info town --json");

    QCOMPARE(options.command, Command::Info);
    QCOMPARE(options.project, QStringLiteral("town"));
    QVERIFY(options.infoAsJson);
}

void tst_CommandLine::dumpTakesAFile()
{
    const Options options = understood("town --dump scene.json");

    QCOMPARE(options.command, Command::Dump);
    QCOMPARE(options.project, QStringLiteral("town"));
    QCOMPARE(options.outputFile, QStringLiteral("scene.json"));
}

void tst_CommandLine::aPlanTakesScaleAndPlace()
{
    const Options placed =
        understood("town --screenshot town.png --plan site.pdf --plan-scale 2.5 --plan-at -570000.5,5830000");
    const Options plain = understood("--plan site.png");
    const Options dumped = understood("town --dump town.json --plan site.dxf");

    QCOMPARE(placed.planFile, QStringLiteral("site.pdf"));
    QCOMPARE(placed.planScale, 2.5);
    QCOMPARE(placed.planPlace.value_or(QPointF()), QPointF(-570000.5, 5830000));
    QCOMPARE(plain.command, Command::Window);
    QCOMPARE(plain.planScale, 1.0);
    QVERIFY(!plain.planPlace);
    QCOMPARE(dumped.command, Command::Dump);
    QCOMPARE(dumped.planFile, QStringLiteral("site.dxf"));
}

void tst_CommandLine::helpWinsOverEverythingElse()
{
    QCOMPARE(understood("--help").command, Command::Help);
    QCOMPARE(understood("-h").command, Command::Help);
    QCOMPARE(understood("import --help").command, Command::Help);
    QCOMPARE(understood("--version").command, Command::Version);
}

void tst_CommandLine::wordsBehindTwoDashesAreNoOptions()
{
    QCOMPARE(understood("-- --fit").project, QStringLiteral("--fit"));
}

void tst_CommandLine::aFolderNamedLikeACommandIsReachable()
{
    QCOMPARE(understood("./import").command, Command::Window);
    QCOMPARE(understood("-- import").command, Command::Window);
    QCOMPARE(understood("-- info").project, QStringLiteral("info"));
}

void tst_CommandLine::wrongArgumentsGiveOneLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("named");
    const auto row = [](const char* line, const char* named) {
        QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(named);
    };
    row("--nonsense", "--nonsense");
    row("--plan-scale 2", "--plan");
    row("--plan-at 1,2", "--plan");
    row("--plan a.png --plan-scale 0", "--plan-scale");
    row("--plan a.png --plan-at 1", "--plan-at");
    row("--plan a.png --plan-at 1,2,3", "--plan-at");
    row("--plan a.png --plan-at east,2", "--plan-at");
    row("import a b --plan a.png", "--plan");
    row("-x", "-x");
    row("one two", "two");
    row("findings", "PROJECT");
    row("findings town", "FILE");
    row("findings town f.csv --crs EPSG:25832", "--crs");
    row("town --findings f.csv", "--findings");
    row("import", "SOURCE");
    row("import net.xml", "PROJECT");
    row("import net.xml a b", "PROJECT");
    row("import net.xml a --fit", "--fit");
    row("import net.xml a --crs 25832", "25832");
    row("import net.xml a --crs EPSG:", "EPSG:");
    row("info", "PROJECT");
    row("info a b", "PROJECT");
    row("info a --fit", "--fit");
    row("record town H1", "FILE");
    row("record town H1 a.csv b.csv", "FILE");
    row("record town H1 a.csv --noise -1", "\"-1\"");
    row("record town H1 a.csv --noise nan", "nan");
    row("record town H1 a.csv --step 0", "\"0\"");
    row("record town H1 a.csv --speed fast", "fast");
    row("record town H1 a.csv --seed -1", "\"-1\"");
    row("record town H1 a.csv --seed 1.5", "\"1.5\"");
    row("record town H1 a.csv --fit", "--fit");
    row("town --noise 1", "--noise");
    row("town --inspect H1 --window", "--replay");
    row("town --window", "--screenshot");
    row("town --inspect H1 --replay a.csv --window --screenshot b.png", "--window");
    row("town --listen 4711", "--inspect");
    row("town --inspect H1 --listen 65536", "65536");
    row("town --inspect H1 --listen -1", "\"-1\"");
    row("town --inspect H1 --listen http", "http");
    row("town --inspect H1 --listen 1 --address here", "here");
    row("town --inspect H1 --address 127.0.0.1", "--listen");
    row("town --inspect H1 --listen 1 --replay a.csv", "--replay");
    row("town --inspect H1 --listen 1 --speed 2", "--speed");
    row("town --inspect H1 --listen 1 --screenshot a.png", "--screenshot");
    row("town --replay run.csv", "--inspect");
    row("town --inspect H1 --real-time", "--replay");
    row("town --inspect H1 --speed 10", "--replay");
    row("town --inspect H1 --replay run.csv --speed 0", "\"0\"");
    row("town --inspect H1 --replay run.csv --speed fast", "fast");
    row("town --dump a.json --replay run.csv", "--replay");
    row("import net.xml town --inspect H1", "--inspect");
    row("town --json", "--json");
    row("town --crs EPSG:25832", "--crs");
    row("town --screenshot", "--screenshot");
    row("town --screenshot --fit", "--screenshot");
    row("town --screenshot= --fit", "--screenshot");
    row("town --screenshot a.png --screenshot b.png", "twice");
    row("town --screenshot a.png --dump b.json", "--screenshot");
    row("town --dump b.json --view top", "--view");
    row("town --view side", "side");
    row("town --size 800", "800");
    row("town --size 0x600", "0x600");
    row("town --size 99999x600", "99999x600");
    row("town --size 800x600x2", "800x600x2");
    row("town --distance 0", "\"0\"");
    row("town --distance -5", "\"-5\"");
    row("town --distance nan", "nan");
    row("town --distance inf", "inf");
    row("town --distance far", "far");
    row("town --fit --go-to a", "--go-to");
    row("town --fit=yes", "--fit");
    row("town --whole-window", "--screenshot");
    row("town --tiles", "--tiles");
    row("town --gps", "--gps");
    row("info town --gps off", "--gps");
    row("town --dump out.json --timing", "--timing");
    row("town --tiles maps --no-map", "--no-map");
    row("town --no-map=yes", "--no-map");
    row("import net.xml a --tiles maps", "--tiles");
    row("town --dump a.json --no-map", "--no-map");
}

void tst_CommandLine::wrongArgumentsGiveOneLine()
{
    QFETCH(QString, line);
    QFETCH(QString, named);

    const ParsedArguments parsed = parseArguments(words(line));

    QVERIFY(!parsed.options);
    QVERIFY(!parsed.error.isEmpty());
    QVERIFY(!parsed.error.contains(QLatin1Char('\n')));
    QVERIFY2(parsed.error.contains(named), qPrintable(parsed.error));
}

void tst_CommandLine::helpTellsEveryOption_data()
{
    QTest::addColumn<QString>("option");
    for (const char* option :
         {"import",       "findings",     "info",       "--findings", "--crs",        "--mapping",      "--with",
          "--report",     "--screenshot", "--size",     "--view",     "top|3d|front", "--distance",     "--fit",
          "--go-to",      "--json",       "--dump",     "record",     "--tiles",      "--no-map",       "--gps",
          "--timing",     "--noise",      "--seed",     "--step",     "--speed",      "--whole-window", "--plan FILE",
          "--plan-scale", "--plan-at",    "--language", "--print",    "--help"})
        QTest::newRow(option) << QString::fromLatin1(option);
}

void tst_CommandLine::helpTellsEveryOption()
{
    QFETCH(QString, option);

    QVERIFY(helpText().contains(option));
}

QTEST_APPLESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"
