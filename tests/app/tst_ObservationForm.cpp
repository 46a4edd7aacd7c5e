#include "host/app/ObservationForm.h"

#include <QtTest>

using namespace Torvik::Viewer;

namespace {

QVariantMap typed(const QVariantMap& other = {})
{
    QVariantMap texts {{"code", "BABBA"}, {"distance", "12.5"}, {"clock", "3"},
                       {"angle", ""},     {"quantity", "10"},   {"lateral", ""}};
    for (auto text = other.cbegin(); text != other.cend(); ++text)
        texts.insert(text.key(), *text);
    return texts;
}

ObservationForm::Surroundings town()
{
    ObservationForm::Surroundings town;
    town.pipe = "p";
    town.laterals = {{"free", "L1"}, {"used", "L2"}, {"p", "L3"}};
    town.taken = {{"used", "BCA at 4.00 m in S1"}};
    return town;
}

} // namespace

class tst_ObservationForm : public QObject {
    Q_OBJECT

private slots:
    void whatIsRightBecomesARecord();
    void emptyFieldsBecomeNoValue();
    void aBendHasItsHourInAColumnOfItsOwn();
    void numbersHaveAPointOrAComma();
    void whatIsWrongIsSaidAtItsField_data();
    void whatIsWrongIsSaidAtItsField();
    void allThatIsWrongIsSaidAtOnce();
    void theHoursHaveTheirEnds();
    void aRecordReadsBackAsItWasTyped();
    void numbersKeepAllTheirDigits();
    void codesHaveKinds();
};

void tst_ObservationForm::whatIsRightBecomesARecord()
{
    const auto checked =
        ObservationForm::check(typed({{"code", " BCAAA "}, {"angle", "45"}, {"lateral", "free"}}), town());

    QCOMPARE(checked.errors, QVariantMap());
    QCOMPARE(checked.values, QVariantMap({{"OBS_Code", "BCAAA"},
                                          {"OBS_Distance", 12.5},
                                          {"OBS_ClockPos1", 3},
                                          {"OBS_JointAngle", 45.0},
                                          {"OBS_Q1_Value", 10.0},
                                          {"OBS_LateralSection_REF", "free"}}));
}

void tst_ObservationForm::emptyFieldsBecomeNoValue()
{
    const auto checked = ObservationForm::check(typed({{"clock", " "}, {"quantity", ""}}), town());

    QCOMPARE(checked.errors, QVariantMap());
    for (const char* column : {"OBS_ClockPos1", "OBS_JointAngle", "OBS_Q1_Value", "OBS_LateralSection_REF"}) {
        QVERIFY(checked.values.contains(column));
        QVERIFY2(!checked.values.value(column).isValid(), column);
    }
}

void tst_ObservationForm::aBendHasItsHourInAColumnOfItsOwn()
{
    const auto checked = ObservationForm::check(typed({{"code", "bccaa"}, {"clock", "9"}, {"angle", "-15"}}), town());

    QCOMPARE(checked.errors, QVariantMap());
    QCOMPARE(checked.values.value("OBS_BendClkH"), QVariant(9));
    QCOMPARE(checked.values.value("OBS_JointAngle"), QVariant(-15.0));
    QVERIFY(!checked.values.contains("OBS_ClockPos1"));
}

void tst_ObservationForm::numbersHaveAPointOrAComma()
{
    QCOMPARE(ObservationForm::check(typed({{"distance", " 7,25"}}), town()).values.value("OBS_Distance"),
             QVariant(7.25));
    QCOMPARE(ObservationForm::check(typed({{"distance", "7.25"}}), town()).values.value("OBS_Distance"),
             QVariant(7.25));
}

void tst_ObservationForm::whatIsWrongIsSaidAtItsField_data()
{
    QTest::addColumn<QVariantMap>("change");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const QVariantMap& change, const char* field, const char* words) {
        QTest::newRow(name) << change << QString(field) << QString(words);
    };

    row("no code", {{"code", "  "}}, "code", "needed");
    row("no distance", {{"distance", ""}}, "distance", "needed");
    row("distance no number", {{"distance", "far"}}, "distance", "not a number");
    row("distance with its unit", {{"distance", "12 m"}}, "distance", "not a number");
    row("distance not finite", {{"distance", "nan"}}, "distance", "not a number");
    row("distance without end", {{"distance", "inf"}}, "distance", "not a number");
    row("distance negative", {{"distance", "-0.1"}}, "distance", "not negative");
    row("clock no number", {{"clock", "noon"}}, "clock", "not a number");
    row("clock too high", {{"clock", "13"}}, "clock", "0 to 12");
    row("clock too low", {{"clock", "-1"}}, "clock", "0 to 12");
    row("clock half", {{"clock", "3.5"}}, "clock", "whole hour");
    row("angle no number", {{"angle", "flat"}}, "angle", "not a number");
    row("angle too wide", {{"angle", "181"}}, "angle", "180");
    row("quantity no number", {{"quantity", "much"}}, "quantity", "not a number");
    row("bend without hour", {{"code", "BCC"}, {"clock", ""}, {"angle", "10"}}, "clock", "bend");
    row("bend without angle", {{"code", "BCC"}}, "angle", "bend");
    row("lateral of no connection", {{"lateral", "free"}}, "lateral", "Only a connection");
    row("lateral taken", {{"code", "BCA"}, {"lateral", "used"}}, "lateral", "BCA at 4.00 m in S1");
    row("lateral unknown", {{"code", "BCA"}, {"lateral", "gone"}}, "lateral", "does not have");
    row("lateral is the pipe", {{"code", "BCA"}, {"lateral", "p"}}, "lateral", "its own");
}

void tst_ObservationForm::whatIsWrongIsSaidAtItsField()
{
    QFETCH(QVariantMap, change);
    QFETCH(QString, field);
    QFETCH(QString, words);

    const auto checked = ObservationForm::check(typed(change), town());

    QCOMPARE(checked.errors.keys(), QStringList(field));
    const QString line = checked.errors.value(field).toString();
    QVERIFY2(line.contains(words), qPrintable(line));
}

void tst_ObservationForm::allThatIsWrongIsSaidAtOnce()
{
    const auto checked = ObservationForm::check(
        {{"code", ""}, {"distance", "x"}, {"clock", "x"}, {"angle", "x"}, {"quantity", "x"}}, {});

    QCOMPARE(checked.errors.keys(), QStringList({"angle", "clock", "code", "distance", "quantity"}));
}

void tst_ObservationForm::theHoursHaveTheirEnds()
{
    for (const int hour : {0, 12}) {
        const auto checked = ObservationForm::check(typed({{"clock", QString::number(hour)}}), town());
        QCOMPARE(checked.errors, QVariantMap());
        QCOMPARE(checked.values.value("OBS_ClockPos1"), QVariant(hour));
    }
}

void tst_ObservationForm::aRecordReadsBackAsItWasTyped()
{
    for (const QVariantMap& texts :
         {typed(), typed({{"code", "BCCAA"}, {"angle", "-15"}}), typed({{"code", "BCA"}, {"lateral", "free"}}),
          typed({{"clock", ""}, {"quantity", ""}})})
        QCOMPARE(ObservationForm::textsOf(ObservationForm::check(texts, town()).values), texts);
    QCOMPARE(ObservationForm::textsOf({}), typed({{"code", ""}, {"distance", ""}, {"clock", ""}, {"quantity", ""}}));
}

void tst_ObservationForm::numbersKeepAllTheirDigits()
{
    const double third = 1.0 / 3.0;

    const QVariantMap texts = ObservationForm::textsOf({{"OBS_Code", "BAB"}, {"OBS_Distance", third}});

    QVERIFY(ObservationForm::check(texts, {}).values.value("OBS_Distance").toDouble() == third);
}

void tst_ObservationForm::codesHaveKinds()
{
    QCOMPARE(ObservationForm::kindOf("BCCAY"), QString("bend"));
    QCOMPARE(ObservationForm::kindOf("bca"), QString("connection"));
    QCOMPARE(ObservationForm::kindOf("BCEXP"), QString("end"));
    QCOMPARE(ObservationForm::kindOf("BABBA"), QString());
}

QTEST_APPLESS_MAIN(tst_ObservationForm)
#include "tst_ObservationForm.moc"
