#include "architecture/SourceRules.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

using namespace SourceRules;

namespace {

constexpr int longestFile = 450;

const QStringList libraryFolders {
    QStringLiteral("scene"),       QStringLiteral("domain"), QStringLiteral("network"),
    QStringLiteral("measurement"), QStringLiteral("geo"),    QStringLiteral("interaction"),
    QStringLiteral("labels"),      QStringLiteral("plans"),  QStringLiteral("resources")};

QString read(const QString& path)
{
    QFile file(QStringLiteral(KX_SOURCE_DIR "/") + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList filesBelow(const QStringList& folders, const QStringList& endings)
{
    const QDir top(QStringLiteral(KX_SOURCE_DIR));
    QStringList found;
    for (const QString& folder : folders) {
        QDirIterator files(top.filePath(folder), endings, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            found << top.relativeFilePath(files.next());
    }
    found.sort();
    return found;
}

QStringList sources(const QStringList& folders)
{
    return filesBelow(folders, {QStringLiteral("*.h"), QStringLiteral("*.cpp")});
}

LayerTable layers()
{
    return parseLayers(read(QStringLiteral("tests/architecture/layers.txt")));
}

QString listed(const QStringList& lines)
{
    return QStringLiteral("\n  ") + lines.join(QStringLiteral("\n  "));
}

} // namespace

class tst_Architecture : public QObject {
    Q_OBJECT

private slots:
    void theRulesFindAnUpwardInclude();
    void theRulesFindACrossingOfRooms_data();
    void theRulesFindACrossingOfRooms();
    void everyFileOfTheLibraryHasALayer();
    void includesGoDownOrAreAccepted();
    void theLibraryKnowsNothingOfTheHost();
    void theGroundKnowsNoSceneGraph();
    void includedFilesExist();
    void noFileIsLongerThanAReaderBears();
    void theHostsPageNamesWhatTheViewAsksFor();
};

void tst_Architecture::theRulesFindAnUpwardInclude()
{
    const LayerTable table = parseLayers(QStringLiteral("# comment\n1 a/*\n\n4 b/*\n1 b/Ground.h\n"));

    QVERIFY(goesUp({QStringLiteral("a/X.h"), QStringLiteral("b/Y.h")}, table));
    QVERIFY(!goesUp({QStringLiteral("b/Y.h"), QStringLiteral("a/X.h")}, table));
    QVERIFY(!goesUp({QStringLiteral("a/X.h"), QStringLiteral("b/Ground.h")}, table));
    QVERIFY(!goesUp({QStringLiteral("b/X.h"), QStringLiteral("b/Y.h")}, table));
    QCOMPARE(quotedIncludes(QStringLiteral("#include \"a/X.h\"\n#  include <QSet>\n// #include \"c/Z.h\"\n")),
             QStringList(QStringLiteral("a/X.h")));
}

void tst_Architecture::theRulesFindACrossingOfRooms_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("crosses");
    QTest::newRow("view to host") << "scene/A.h"
                                  << "host/domain/B.h" << true;
    QTest::newRow("boundary to host") << "domain/boundary/A.h"
                                      << "host/domain/B.h" << true;
    QTest::newRow("boundary to view") << "domain/boundary/A.h"
                                      << "scene/B.h" << true;
    QTest::newRow("host's domain to view") << "host/domain/A.cpp"
                                           << "network/B.h" << true;
    QTest::newRow("host's domain to reader") << "host/domain/A.cpp"
                                             << "domain/B.h" << true;
    QTest::newRow("host's domain to boundary") << "host/domain/A.cpp"
                                               << "domain/boundary/B.h" << false;
    QTest::newRow("drawing reader to view") << "host/drawing/A.cpp"
                                            << "plans/B.h" << true;
    QTest::newRow("drawing reader to boundary") << "host/drawing/A.cpp"
                                                << "domain/boundary/B.h" << false;
    QTest::newRow("import to domain") << "host/import/A.cpp"
                                      << "host/domain/B.h" << false;
    QTest::newRow("import to program") << "host/import/A.cpp"
                                       << "host/app/B.h" << true;
    QTest::newRow("program to view") << "host/app/A.cpp"
                                     << "scene/B.h" << false;
    QTest::newRow("view to view") << "scene/A.cpp"
                                  << "network/B.h" << false;
    QTest::newRow("tests to host") << "tests/A.cpp"
                                   << "host/app/B.h" << false;
}

void tst_Architecture::theRulesFindACrossingOfRooms()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, crosses);

    QCOMPARE(crossesRooms({from, to}), crosses);
}

void tst_Architecture::everyFileOfTheLibraryHasALayer()
{
    const LayerTable table = layers();
    QStringList without;
    for (const QString& file : sources(libraryFolders)) {
        if (table.layerOf(file) == 0)
            without << file;
    }

    QVERIFY2(without.isEmpty(), qPrintable(listed(without)));
}

void tst_Architecture::includesGoDownOrAreAccepted()
{
    const LayerTable table = layers();
    const auto accepted = parseAccepted(read(QStringLiteral("tests/architecture/accepted-includes.txt")), 2);
    QStringList upward;
    QStringList unused = accepted.keys();
    for (const QString& file : sources(libraryFolders)) {
        for (const QString& included : quotedIncludes(read(file))) {
            if (!goesUp({file, included}, table))
                continue;
            const QString knot = file + QLatin1Char(' ') + included;
            unused.removeAll(knot);
            if (accepted.value(knot).isEmpty())
                upward << knot;
        }
    }

    QVERIFY2(upward.isEmpty(), qPrintable(QStringLiteral("upward, without a reason:") + listed(upward)));
    QVERIFY2(unused.isEmpty(), qPrintable(QStringLiteral("accepted, but gone:") + listed(unused)));
}

void tst_Architecture::theLibraryKnowsNothingOfTheHost()
{
    QStringList crossings;
    for (const QString& file : sources(libraryFolders + QStringList(QStringLiteral("host")))) {
        for (const QString& included : quotedIncludes(read(file))) {
            if (crossesRooms({file, included}))
                crossings << file + QLatin1Char(' ') + included;
        }
    }

    QVERIFY2(crossings.isEmpty(), qPrintable(listed(crossings)));
}

void tst_Architecture::theGroundKnowsNoSceneGraph()
{
    const LayerTable table = layers();
    QStringList heavy;
    int seen = 0;
    for (const QString& file : sources(libraryFolders)) {
        if (table.layerOf(file) != 1)
            continue;
        ++seen;
        for (const QString& included : systemIncludes(read(file))) {
            const bool quick = included.startsWith(QLatin1String("QQ")) && included != QLatin1String("QQuaternion");
            if (quick || included.startsWith(QLatin1String("Qt3D")))
                heavy << file + QLatin1Char(' ') + included;
        }
    }

    QVERIFY(seen > 0);
    QVERIFY2(heavy.isEmpty(), qPrintable(listed(heavy)));
}

void tst_Architecture::includedFilesExist()
{
    QStringList missing;
    int seen = 0;
    for (const QString& file : sources(libraryFolders)) {
        for (const QString& included : quotedIncludes(read(file))) {
            ++seen;
            const bool generated = included.endsWith(QLatin1String(".moc"));
            if (!generated && !QFile::exists(QStringLiteral(KX_SOURCE_DIR "/") + included))
                missing << file + QLatin1Char(' ') + included;
        }
    }

    QVERIFY(seen > 0);
    QVERIFY2(missing.isEmpty(), qPrintable(listed(missing)));
}

void tst_Architecture::theHostsPageNamesWhatTheViewAsksFor()
{
    const QString page = read(QStringLiteral("docs/embedding.md"));
    const QVector<QRegularExpression> asked {
        QRegularExpression(QStringLiteral(
            "\\b((?:belmora|ostel|design|formatHelper|screenManager|pageStack|font_Regular|endpoints|MessageBox"
            "|MessageBoxUtils|WaitingBox|DomainObjectProvider|VideoCreationHandler|Raster)(?:\\.\\w+)+)")),
        QRegularExpression(QStringLiteral("^import ((?!Qt|com\\.torvik)[A-Za-z][\\w.]*) 1\\.0"),
                           QRegularExpression::MultilineOption),
        QRegularExpression(QStringLiteral("show\\(\"([\\w:]+)\""))};
    QStringList missing;
    int found = 0;
    for (const QString& file : filesBelow({QStringLiteral("resources/qml")}, {QStringLiteral("*.qml")})) {
        const QString text = read(file);
        for (const QRegularExpression& expression : asked) {
            for (auto matches = expression.globalMatch(text); matches.hasNext(); ++found) {
                const QString name = matches.next().captured(1);
                for (const QString& part : name.split(QLatin1Char('.'))) {
                    const QRegularExpression word(QStringLiteral("\\b%1\\b").arg(part));
                    if (part != QLatin1String("endpoints") && !page.contains(word))
                        missing << QStringLiteral("%1: %2").arg(file, name);
                }
            }
        }
    }

    QVERIFY(found > 100);
    QVERIFY2(missing.isEmpty(), qPrintable(listed(missing)));
}

void tst_Architecture::noFileIsLongerThanAReaderBears()
{
    const auto accepted = parseAccepted(read(QStringLiteral("tests/architecture/accepted-long-files.txt")), 1);
    const QStringList folders = libraryFolders + QStringList({QStringLiteral("host"), QStringLiteral("benchmarks")});
    QStringList tooLong;
    for (const QString& file :
         filesBelow(folders, {QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.qml")})) {
        const int lines = read(file).count(QLatin1Char('\n'));
        if (lines > longestFile && accepted.value(file).isEmpty())
            tooLong << QStringLiteral("%1: %2 lines").arg(file).arg(lines);
    }

    QVERIFY2(tooLong.isEmpty(), qPrintable(listed(tooLong)));
}

QTEST_APPLESS_MAIN(tst_Architecture)
#include "tst_Architecture.moc"
