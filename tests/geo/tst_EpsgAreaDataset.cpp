#include "geo/EpsgAreaDataset.h"

#include <QtTest>

namespace {

QVector<int> codesOf(const QVector<EpsgBounds>& entries)
{
    QVector<int> codes;
    for (const EpsgBounds& bounds : entries)
        codes.append(bounds.code());
    return codes;
}

QVector<int> codesOf(const QVariantList& entries)
{
    QVector<int> codes;
    for (const QVariant& entry : entries)
        codes.append(entry.value<EpsgBounds>().code());
    return codes;
}

} // namespace

class tst_EpsgAreaDataset : public QObject {
    Q_OBJECT

private slots:
    void theListHoldsTheSystemsWithTheirLimits_data();
    void theListHoldsTheSystemsWithTheirLimits();
    void namesAreThoseOfTheProduct();
    void anUnknownCodeGivesAnEmptyValue();
    void theFirstOfTwoEntriesOfACodeCounts();
    void aPlaceIsLatitudeThenLongitude();
    void limitsAreInside();
    void justOutsideALimitIsOutside();
    void countriesAreComparedExactly();
    void anEntryComesOnceForEachMentionOfTheCountry();
    void theDetailedSearchTestsItsFirstArgumentAgainstLatitudes();
    void theDetailedSearchIsInvokable();
    void aSystemThatGdalDoesNotKnowIsLeftOut();
    void aValueShowsItsPropertiesToQml();
};

void tst_EpsgAreaDataset::theListHoldsTheSystemsWithTheirLimits_data()
{
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("north");
    QTest::addColumn<QStringList>("countries");
    QTest::newRow("25832") << 6.0 << 38.76 << 12.0 << 84.33 << QStringList {"DE", "ES", "AT", "DK", "NO", "BE"};
    QTest::newRow("31466") << 5.86 << 49.11 << 7.5 << 53.81 << QStringList {"DE"};
    QTest::newRow("31467") << 7.5 << 47.27 << 10.51 << 55.09 << QStringList {"DE"};
    QTest::newRow("31468") << 10.5 << 47.39 << 13.51 << 54.59 << QStringList {"DE"};
    QTest::newRow("31469") << 13.5 << 48.51 << 13.84 << 48.98 << QStringList {"DE"};
    QTest::newRow("25831") << 0.0 << 37.0 << 6.01 << 82.45 << QStringList {"AD", "ES", "BE", "DE", "DK", "NO"};
    QTest::newRow("25833") << 12.0 << 46.4 << 18.0 << 84.42 << QStringList {"DK", "AT", "DE", "NO"};
}

void tst_EpsgAreaDataset::theListHoldsTheSystemsWithTheirLimits()
{
    QFETCH(double, west);
    QFETCH(double, south);
    QFETCH(double, east);
    QFETCH(double, north);
    QFETCH(QStringList, countries);
    const int code = QString::fromLatin1(QTest::currentDataTag()).toInt();

    const EpsgBounds bounds = EpsgAreaDataset().getBoundsByEpsgCode(code);

    QCOMPARE(bounds.code(), code);
    QCOMPARE(bounds.leftLongitude(), west);
    QCOMPARE(bounds.leftLatitude(), south);
    QCOMPARE(bounds.rightLongitude(), east);
    QCOMPARE(bounds.rightLatitude(), north);
    QCOMPARE(bounds.countries(), countries);
}

void tst_EpsgAreaDataset::namesAreThoseOfTheProduct()
{
    const EpsgAreaDataset dataset;

    QCOMPARE(dataset.getBoundsByEpsgCode(31469).shortName(), QStringLiteral("DHDN / 3-degree Gauss-Kruger zone 5"));
    QCOMPARE(dataset.getBoundsByEpsgCode(31469).longName(),
             QStringLiteral("Germany - former West Germany onshore east of 13°30'E - state of Bayern."));
    QCOMPARE(dataset.getBoundsByEpsgCode(25833).longName(),
             QStringLiteral("Europe between 12°E and 18°E: Austria; Denmark - offshore and offshore; Germany - onshore "
                            "and offshore; Norway including Svalbard - onshore and offshore."));
    QVERIFY(dataset.getBoundsByEpsgCode(31467).longName().contains(QStringLiteral("Bremen, Hamberg, Hessen")));
}

void tst_EpsgAreaDataset::anUnknownCodeGivesAnEmptyValue()
{
    const EpsgBounds bounds = EpsgAreaDataset().getBoundsByEpsgCode(3857);

    QCOMPARE(bounds.code(), 0);
    QVERIFY(bounds.shortName().isEmpty() && bounds.longName().isEmpty() && bounds.countries().isEmpty());
    QVERIFY(bounds.contains(0.0, 0.0));
    QVERIFY(!bounds.contains(0.0, 1e-9));
    QVERIFY(!bounds.contains(-1e-9, 0.0));
}

void tst_EpsgAreaDataset::theFirstOfTwoEntriesOfACodeCounts()
{
    EpsgAreaDataset dataset;
    dataset.addBounds({25832, "again", {"XX"}, 1, 2, 3, 4, "again"});

    QCOMPARE(dataset.getBoundsByEpsgCode(25832).shortName(), QStringLiteral("ETRS89 / UTM zone 32N"));
    QCOMPARE(dataset.getProjections("XX").size(), 1);
}

void tst_EpsgAreaDataset::aPlaceIsLatitudeThenLongitude()
{
    const EpsgAreaDataset dataset;

    QCOMPARE(codesOf(dataset.findProjections(50.0, 8.0)), (QVector<int> {25832, 31467}));
    QVERIFY(dataset.findProjections(8.0, 50.0).isEmpty());
}

void tst_EpsgAreaDataset::limitsAreInside()
{
    const EpsgAreaDataset dataset;

    QCOMPARE(codesOf(dataset.findProjections(50.0, 7.5)), (QVector<int> {25832, 31466, 31467}));
    QCOMPARE(codesOf(dataset.findProjections(84.33, 6.0)), (QVector<int> {25832}));
    QCOMPARE(codesOf(dataset.findProjections(38.76, 6.0)), (QVector<int> {25832, 25831}));
    QCOMPARE(codesOf(dataset.findProjections(48.98, 13.84)), (QVector<int> {31469, 25833}));
}

void tst_EpsgAreaDataset::justOutsideALimitIsOutside()
{
    const EpsgAreaDataset dataset;

    QVERIFY(!codesOf(dataset.findProjections(84.3301, 6.0)).contains(25832));
    QVERIFY(!codesOf(dataset.findProjections(38.7599, 6.0)).contains(25832));
    QVERIFY(!codesOf(dataset.findProjections(50.0, 5.9999)).contains(25832));
    QVERIFY(!codesOf(dataset.findProjections(50.0, 12.0001)).contains(25832));
}

void tst_EpsgAreaDataset::countriesAreComparedExactly()
{
    const EpsgAreaDataset dataset;

    QCOMPARE(codesOf(dataset.getProjections("AT")), (QVector<int> {25832, 25833}));
    QCOMPARE(codesOf(dataset.getProjections("DE")), (QVector<int> {25832, 31466, 31467, 31468, 31469, 25831, 25833}));
    QVERIFY(dataset.getProjections("FR").isEmpty());
    QVERIFY(dataset.getProjections("at").isEmpty());
    QVERIFY(dataset.getProjections("").isEmpty());
}

void tst_EpsgAreaDataset::anEntryComesOnceForEachMentionOfTheCountry()
{
    EpsgAreaDataset dataset;
    dataset.addBounds({2154, "twice", {"FR", "MC", "FR"}, -9.86, 41.15, 10.38, 51.56, "France"});

    QCOMPARE(codesOf(dataset.getProjections("FR")), (QVector<int> {2154, 2154}));
    QCOMPARE(codesOf(dataset.getProjections("MC")), (QVector<int> {2154}));
}

void tst_EpsgAreaDataset::theDetailedSearchTestsItsFirstArgumentAgainstLatitudes()
{
    EpsgAreaDataset dataset;

    const QVariantList found = dataset.findProjectionsWithDetails(50.0, 8.0);

    QCOMPARE(codesOf(found), (QVector<int> {25832, 31467}));
    QCOMPARE(found.first().value<EpsgBounds>().shortName(), QStringLiteral("ETRS89 / UTM zone 32N"));
    QVERIFY(dataset.findProjectionsWithDetails(8.0, 50.0).isEmpty());
}

void tst_EpsgAreaDataset::theDetailedSearchIsInvokable()
{
    EpsgAreaDataset dataset;
    QVariantList found;

    QVERIFY(QMetaObject::invokeMethod(&dataset, "findProjectionsWithDetails", Q_RETURN_ARG(QVariantList, found),
                                      Q_ARG(double, 50.0), Q_ARG(double, 8.0)));

    QCOMPARE(found.size(), 2);
}

void tst_EpsgAreaDataset::aSystemThatGdalDoesNotKnowIsLeftOut()
{
    EpsgAreaDataset dataset;
    dataset.addBounds({999999, "nowhere", {"XX"}, 0, 0, 90, 90, "unknown to everyone"});
    dataset.addBounds({4258, "ETRS89", {"XX"}, 0, 0, 90, 90, "geographic, so it has no projected name"});

    QCOMPARE(codesOf(dataset.findProjections(50.0, 8.0)), (QVector<int> {25832, 31467, 999999, 4258}));
    QCOMPARE(codesOf(dataset.findProjectionsWithDetails(50.0, 8.0)), (QVector<int> {25832, 31467, 4258}));
}

void tst_EpsgAreaDataset::aValueShowsItsPropertiesToQml()
{
    const QVariant value = QVariant::fromValue(EpsgAreaDataset().getBoundsByEpsgCode(31466));
    const QMetaObject& meta = EpsgBounds::staticMetaObject;
    const auto read = [&](const char* name) {
        const QMetaProperty property = meta.property(meta.indexOfProperty(name));
        return property.isWritable() ? QVariant() : property.readOnGadget(value.constData());
    };

    QCOMPARE(read("leftLongitude").toDouble(), 5.86);
    QCOMPARE(read("leftLatitude").toDouble(), 49.11);
    QCOMPARE(read("rightLongitude").toDouble(), 7.5);
    QCOMPARE(read("rightLatitude").toDouble(), 53.81);
    QCOMPARE(read("code").toInt(), 31466);
    QCOMPARE(read("shortName").toString(), QStringLiteral("DHDN / 3-degree Gauss-Kruger zone 2"));
    QVERIFY(read("longName").toString().startsWith("Germany"));
    QCOMPARE(meta.indexOfProperty("countries"), -1);
}

QTEST_APPLESS_MAIN(tst_EpsgAreaDataset)
#include "tst_EpsgAreaDataset.moc"
