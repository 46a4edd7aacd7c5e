#include "plans/PlanXml.h"

#include <QFile>
#include <QtTest>

#include <cmath>
#include <limits>
#include <random>

namespace PlanXml = Torvik::View3d::PlanXml;
using PlanXml::Triple;

namespace {

QByteArray data(const QString& name)
{
    QFile file(QStringLiteral(KX_SOURCE_DIR "/tests/plans/data/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

/** What the files here hold that nothing is wrong with. */
PlanXml::Values expected()
{
    PlanXml::Values values;
    values.mqTranslation = {{-518367.8473, -5402474.229, -240}};
    values.translation = {{12.5, -30.25, 1.5}};
    values.scale = {{2, 3, 4}};
    values.rotation = {{0, 0, -35.5}};
    values.planData = QStringLiteral("Documentation\\Lageplan.png");
    return values;
}

bool same(const PlanXml::Values& a, const PlanXml::Values& b)
{
    return a.mqTranslation == b.mqTranslation && a.translation == b.translation && a.scale == b.scale &&
           a.rotation == b.rotation && a.planData == b.planData;
}

} // namespace

class tst_PlanXml : public QObject {
    Q_OBJECT

private slots:
    void theTextIsTheOneOfTheFormat() { QCOMPARE(PlanXml::write(expected()), data("as-written.xml")); }

    void filesOfOtherProgramsReadTheSame_data()
    {
        QTest::addColumn<QString>("plan");
        const QString plan = expected().planData;
        QTest::newRow("as-written.xml") << plan;
        QTest::newRow("bom-crlf-other-ids.xml") << plan;
        QTest::newRow("crlf.xml") << plan;
        QTest::newRow("utf16.xml") << plan;
        QTest::newRow("indented.xml") << plan;
        QTest::newRow("absolute-windows.xml") << "D:\\Projekte\\Straße\\Grünau\\Documentation\\Lageplan Süd & West.png";
        QTest::newRow("code-page.xml") << "Documentation\\Grünau €.png";
        QTest::newRow("declared-code-page.xml") << "Documentation\\Grünau.png";
    }

    void filesOfOtherProgramsReadTheSame()
    {
        QFETCH(QString, plan);
        PlanXml::Values values = expected();
        values.planData = plan;

        const PlanXml::Reading reading = PlanXml::read(data(QString::fromLatin1(QTest::currentDataTag())));

        QCOMPARE(reading.error, QString());
        QVERIFY(!reading.damaged());
        QCOMPARE(reading.values.planData, plan);
        QVERIFY(same(reading.values, values));
    }

    void aDamagedFileTellsWhyAndGivesTheDefaults_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("truncated.xml") << "line 9: ";
        QTest::newRow("zero-filled-end.xml") << "line 9: ";
        QTest::newRow("empty.xml") << "line 1: ";
        QTest::newRow("not-xml.xml") << "line 1: ";
        QTest::newRow("entities.xml") << "line ";
    }

    void aDamagedFileTellsWhyAndGivesTheDefaults()
    {
        QFETCH(QString, line);

        const PlanXml::Reading reading = PlanXml::read(data(QString::fromLatin1(QTest::currentDataTag())));

        QVERIFY(reading.damaged());
        QVERIFY2(reading.error.startsWith(line) && reading.error.size() > line.size(), qPrintable(reading.error));
        QVERIFY(same(reading.values, PlanXml::Values()));
    }

    void anEnormousFileIsRefused()
    {
        QByteArray text = PlanXml::write(expected());
        QVERIFY(PlanXml::read(text + QByteArray(int(PlanXml::largestFile) - text.size(), ' ')).error.isEmpty());

        QVERIFY(PlanXml::read(text + QByteArray(int(PlanXml::largestFile), ' ')).error.startsWith("larger than"));
    }

    void deepNestingIsNoHarm()
    {
        QByteArray text;
        while (text.size() < PlanXml::largestFile - 10)
            text += "<a>";

        QVERIFY(!PlanXml::read(text).error.isEmpty());
    }

    void whatIsNoThreeNumbersHasItsDefaultAndIsTold()
    {
        const PlanXml::Reading reading = PlanXml::read(data("two-and-four-numbers.xml"));

        QCOMPARE(reading.error, QString());
        QVERIFY(reading.badReference);
        QCOMPARE(reading.badVectors, QStringList({"1,2", "1,2,3,4", "", "0,0,north"}));
        PlanXml::Values values;
        values.planData = expected().planData;
        QVERIFY(same(reading.values, values));
    }

    void anElementCountsByItsDepthAndNotByItsParents()
    {
        const QByteArray right = "<a><b><c><PlanScale id='7'>1,2,3</PlanScale></c><PlanData>no</PlanData></b></a>";

        const PlanXml::Reading reading = PlanXml::read(right);
        const PlanXml::Reading deeper = PlanXml::read("<z>" + right + "</z>");

        QCOMPARE(reading.error, QString());
        QVERIFY((reading.values.scale == Triple {{1, 2, 3}}));
        QCOMPARE(reading.values.planData, QString());
        QVERIFY((deeper.values.scale == Triple {{1, 1, 1}}));
        QCOMPARE(deeper.values.planData, QStringLiteral("no"));
    }

    void threeNumbersAreTaken_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("taken");
        QTest::newRow("plain") << "1,-2.5,3e3" << true;
        QTest::newRow("blanks") << " 1, -2.5,\n3e3 " << true;
        QTest::newRow("two") << "1,2" << false;
        QTest::newRow("four") << "1,2,3,4" << false;
        QTest::newRow("none") << "" << false;
        QTest::newRow("a part empty") << "1,,3" << false;
        QTest::newRow("words") << "1,x,3" << false;
        QTest::newRow("no number") << "nan,1,1" << false;
        QTest::newRow("without end") << "1,inf,1" << false;
        QTest::newRow("beyond a float") << "1,1,1e39" << false;
        QTest::newRow("decimal commas") << "1,0,2,0,3,0" << false;
    }

    void threeNumbersAreTaken()
    {
        QFETCH(QString, text);
        QFETCH(bool, taken);
        Triple out {{7, 8, 9}};

        QCOMPARE(PlanXml::tripleFromText(text, out), taken);
        QVERIFY((out == (taken ? Triple {{1, -2.5, 3000}} : Triple {{7, 8, 9}})));
    }

    void numbersKeepTheirDigits()
    {
        QCOMPARE(PlanXml::textFromTriple({{-5402474.22912345, 0.1, 1e-20}}, 15),
                 QStringLiteral("-5402474.22912345,0.1,1e-20"));
        QCOMPARE(PlanXml::textFromTriple({{123.456789123, -0.0, 180}}, 8), QStringLiteral("123.45679,0,180"));
    }

    void aNameWithSignsOfXmlComesBack()
    {
        PlanXml::Values values = expected();
        values.planData = QStringLiteral("Documentation\\<Süd> & \"West\" 'Ost' ]]> 图 %1.png");

        const PlanXml::Reading reading = PlanXml::read(PlanXml::write(values));

        QCOMPARE(reading.error, QString());
        QVERIFY(same(reading.values, values));
    }

    void aFileCutAnywhereGivesNothingByHalves()
    {
        const QByteArray whole = data("as-written.xml");
        for (int length = 0; length < whole.size() - 1; ++length) { // the last byte is the line end
            const PlanXml::Reading reading = PlanXml::read(whole.left(length));
            QVERIFY2(!reading.error.isEmpty(), qPrintable(QString::number(length)));
            QVERIFY(same(reading.values, PlanXml::Values()));
        }
        QVERIFY(same(PlanXml::read(whole.left(whole.size() - 1)).values, expected()));
    }

    void spoiltBytesNeverGiveMoreThanFiniteNumbers()
    {
        std::mt19937 random(20);
        for (const char* name : {"as-written.xml", "utf16.xml", "entities.xml", "code-page.xml"}) {
            const QByteArray whole = data(QString::fromLatin1(name));
            for (int round = 0; round < 3000; ++round) {
                QByteArray bytes = whole;
                for (int i = int(random() % 4); i >= 0; --i)
                    bytes[int(random() % uint(bytes.size()))] = char(random());
                const PlanXml::Values values = PlanXml::read(bytes).values;
                for (const Triple& t : {values.mqTranslation, values.translation, values.scale, values.rotation}) {
                    for (const double value : t)
                        QVERIFY(std::isfinite(value));
                }
            }
        }
    }
};

QTEST_APPLESS_MAIN(tst_PlanXml)
#include "tst_PlanXml.moc"
