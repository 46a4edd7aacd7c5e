#include "host/domain/CsvText.h"
#include "host/domain/HostSettings.h"
#include "host/domain/ObservationCodes.h"
#include "host/domain/ProjectStore.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace Torvik::Database;
namespace Codes = ObservationCodes;

namespace {

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

/** Which codes bend, end and connect, and the files that add to them. */
class tst_ObservationCodes : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        Torvik::Base::HostSettings::setSettingsFile(m_dir.filePath(QStringLiteral("settings/kxviewer.ini")));
        QDir(m_dir.path()).mkpath(QStringLiteral("settings"));
        QFile::remove(Codes::settingsFile());
    }

    void cleanup() { Codes::useFiles({}); }

    void codesOfTheStandard_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("ch1");
        QTest::addColumn<QString>("ch2");
        QTest::addColumn<unsigned>("flags");
        QTest::newRow("bend") << "BCC"
                              << "A"
                              << "Y" << Codes::bend;
        QTest::newRow("connection") << "BCA"
                                    << "F"
                                    << "A" << Codes::connection;
        QTest::newRow("finish node") << "BCE"
                                     << "XP"
                                     << "" << Codes::endOfInspection;
        QTest::newRow("ended before") << "BDC"
                                      << "Y"
                                      << "A" << Codes::endOfInspection;
        QTest::newRow("start node") << "BCD"
                                    << "XP"
                                    << "" << 0U;
        QTest::newRow("defective connection") << "BAH"
                                              << "A"
                                              << "" << 0U;
        QTest::newRow("intruding connection") << "BAG"
                                              << ""
                                              << "" << 0U;
        QTest::newRow("with points") << "bcc.a.y"
                                     << ""
                                     << "" << Codes::bend;
        QTest::newRow("with blanks") << " BCA F A"
                                     << ""
                                     << "" << Codes::connection;
        QTest::newRow("characterisations alone") << ""
                                                 << "BCC"
                                                 << "" << 0U;
    }

    void codesOfTheStandard()
    {
        QFETCH(QString, code);
        QFETCH(QString, ch1);
        QFETCH(QString, ch2);

        QTEST(Codes::flags(code, ch1, ch2), "flags");
    }

    void aFileAddsCodes()
    {
        const QString file = m_dir.filePath("codes.csv");
        write(
            file,
            "code,kind\n# a comment, with a comma\nJN,connection\nbend 7;x\nBCA.B,plain\nBAF A,END\nXX,wall\n,bend\n");

        const QStringList problems = Codes::useFiles({file, m_dir.filePath("missing.csv")});

        QCOMPARE(Codes::flags("JN"), Codes::connection);
        QCOMPARE(Codes::flags("BCA", "B"), 0U);
        QCOMPARE(Codes::flags("BCA", "A"), Codes::connection);
        QCOMPARE(Codes::flags("BAF", "A", "C"), Codes::endOfInspection);
        QCOMPARE(Codes::flags("BAF", "B"), 0U);
        QCOMPARE(problems.size(), 3);
        QVERIFY2(problems[0].startsWith(file + ":4: "), qPrintable(problems[0]));
        QVERIFY2(problems[1].startsWith(file + ":7: ") && problems[1].contains("XX,wall"), qPrintable(problems[1]));
        QVERIFY2(problems[2].startsWith(file + ":8: "), qPrintable(problems[2]));
    }

    void otherFilesTakeTheirPlace()
    {
        const QString one = m_dir.filePath("one.csv");
        const QString two = m_dir.filePath("two.csv");
        write(one, "AA,bend\nBB,bend\n");
        write(two, "BB;connection\n");

        QVERIFY(Codes::useFiles({one, two}).isEmpty());
        QCOMPARE(Codes::flags("AA"), Codes::bend);
        QCOMPARE(Codes::flags("BB"), Codes::connection);
        QVERIFY(Codes::useFiles({two}).isEmpty());
        QCOMPARE(Codes::flags("AA"), 0U);
    }

    void anOpenedProjectBringsItsCodes()
    {
        const QString folder = m_dir.filePath("p");
        QVERIFY(ProjectStore::create(folder));
        write(Codes::settingsFile(), "SS,bend\nPP,bend\n");
        write(QDir(folder).filePath(Codes::fileName()), "PP,connection\n");

        const OpenedProject opened = ProjectStore::instance().open(folder);

        QVERIFY2(opened.project, qPrintable(opened.error));
        QCOMPARE(Codes::flags("SS"), Codes::bend);
        QCOMPARE(Codes::flags("PP"), Codes::connection);
        ProjectStore::instance().close(opened.project);
    }

    void textsBecomeRecords_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("records");
        const auto row = [](const char* name, const char* text, const QStringList& records) {
            QTest::newRow(name) << QByteArray(text) << records;
        };
        row("commas", "a,b\nc,d;e", {"1:a|b", "2:c|d;e"});
        row("semicolons", "a;b\r\n1,5;d\r\n", {"1:a|b", "2:1,5|d"});
        row("old line ends", "a,b\rc,d", {"1:a|b", "2:c|d"});
        row("byte order mark",
            "\xEF\xBB\xBFS\xC3\xBC"
            "d,b",
            {QString::fromUtf8("1:S\xC3\xBC"
                               "d|b")});
        row("quotes", "\"a,1\", b \n\"c \"\"d\"\" \",\"\"", {"1:a,1|b", "2:c \"d\" |"});
        row("a line break in quotes", "\"a\nb\",c\nd,e", {"1:a\nb|c", "3:d|e"});
        row("empty lines", "\na,b\n\n\nc,d\n", {"2:a|b", "5:c|d"});
        row("empty fields", "a,,\n,b", {"1:a||", "2:|b"});
        row("nothing", "", {});
        row("a quote inside", "5\" pipe,b", {"1:5\" pipe|b"});
    }

    void textsBecomeRecords()
    {
        QFETCH(QByteArray, text);

        const Csv::Table table = Csv::parse(text);

        QVERIFY2(table.error.isEmpty(), qPrintable(table.error));
        QStringList records;
        for (const Csv::Record& record : table.records)
            records << QStringLiteral("%1:%2").arg(record.line).arg(record.fields.join(QLatin1Char('|')));
        QTEST(records, "records");
    }

    void whatIsNoTextIsRefused()
    {
        QCOMPARE(Csv::parse("a,b\n\"c,d\ne,f").errorLine, 2);
        QVERIFY(Csv::parse("a,b\n\"c,d").error.contains("never closed"));
        QVERIFY(Csv::parse("S\xFC"
                           "d,b")
                    .error.contains("UTF-8"));
        QVERIFY(Csv::parse(QByteArray("a\0b", 3)).error.contains("UTF-8"));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(tst_ObservationCodes)
#include "tst_ObservationCodes.moc"
