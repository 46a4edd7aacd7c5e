#include "host/app/ObjectListModel.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace Torvik::Viewer;

namespace {

QVector<ListedObject> manholes()
{
    return {{QStringLiteral("a"), QStringLiteral("S10"), QStringLiteral("manhole, 2.1 m deep"), QStringLiteral("node")},
            {QStringLiteral("b"), QStringLiteral("S9"), QStringLiteral("manhole, 1.4 m deep"), QStringLiteral("node")},
            {QStringLiteral("c"), QStringLiteral("House 3"), QStringLiteral("building"), QStringLiteral("node")}};
}

QStringList keys(const ObjectListModel& model)
{
    QStringList keys;
    for (int row = 0; row < model.rowCount(); ++row)
        keys << model.data(model.index(row), ObjectListModel::KeyRole).toString();
    return keys;
}

} // namespace

class tst_ObjectListModel : public QObject {
    Q_OBJECT

private slots:
    void isEmptyAtFirst();
    void numbersInKeysSortByValue();
    void keysSort_data();
    void keysSort();
    void everyRoleHasAName();
    void theFilterFindsKeyAndDetailInAnyCase();
    void theSameFilterAgainEmitsNothing();
    void aNewListKeepsTheFilter();
    void keysAreFoundAlsoBehindTheFilter();
    void rowsOutsideGiveNothing();
    void anObjectIsFoundWhereItsLineShows();
};

void tst_ObjectListModel::isEmptyAtFirst()
{
    ObjectListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);

    QCOMPARE(model.count(), 0);
    QCOMPARE(model.total(), 0);
}

void tst_ObjectListModel::numbersInKeysSortByValue()
{
    ObjectListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy counted(&model, &ObjectListModel::countChanged);

    model.setObjects(manholes());

    QCOMPARE(keys(model), QStringList({QStringLiteral("House 3"), QStringLiteral("S9"), QStringLiteral("S10")}));
    QCOMPARE(counted.count(), 1);
}

void tst_ObjectListModel::keysSort_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::newRow("by value") << "S9"
                              << "S10";
    QTest::newRow("zeros in front count for nothing") << "S009"
                                                      << "S10";
    QTest::newRow("letters in any case") << "alpha"
                                         << "Beta";
    QTest::newRow("shorter first") << "S1"
                                   << "S1a";
    QTest::newRow("later parts") << "12-3"
                                 << "12-21";
    QTest::newRow("more digits than a number holds") << "99999999999999999998"
                                                     << "99999999999999999999";
}

void tst_ObjectListModel::keysSort()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    ObjectListModel model;

    model.setObjects({{{}, second, {}, {}}, {{}, first, {}, {}}});

    QCOMPARE(keys(model), QStringList({first, second}));
}

void tst_ObjectListModel::everyRoleHasAName()
{
    ObjectListModel model;
    model.setObjects(manholes());
    const auto names = model.roleNames();

    QCOMPARE(model.data(model.index(1), names.key("objectId")).toString(), QStringLiteral("b"));
    QCOMPARE(model.data(model.index(1), names.key("key")).toString(), QStringLiteral("S9"));
    QCOMPARE(model.data(model.index(1), names.key("detail")).toString(), QStringLiteral("manhole, 1.4 m deep"));
    QCOMPARE(model.data(model.index(1), names.key("kind")).toString(), QStringLiteral("node"));
}

void tst_ObjectListModel::theFilterFindsKeyAndDetailInAnyCase()
{
    ObjectListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setObjects(manholes());

    model.setFilter(QStringLiteral("s1"));
    QCOMPARE(keys(model), QStringList(QStringLiteral("S10")));

    model.setFilter(QStringLiteral(" MANHOLE "));
    QCOMPARE(keys(model), QStringList({QStringLiteral("S9"), QStringLiteral("S10")}));
    QCOMPARE(model.total(), 3);

    model.setFilter(QString());
    QCOMPARE(model.count(), 3);
}

void tst_ObjectListModel::theSameFilterAgainEmitsNothing()
{
    ObjectListModel model;
    QSignalSpy filtered(&model, &ObjectListModel::filterChanged);

    model.setFilter(QStringLiteral("x"));
    model.setFilter(QStringLiteral("x"));

    QCOMPARE(filtered.count(), 1);
}

void tst_ObjectListModel::aNewListKeepsTheFilter()
{
    ObjectListModel model;
    model.setFilter(QStringLiteral("house"));

    model.setObjects(manholes());

    QCOMPARE(keys(model), QStringList(QStringLiteral("House 3")));
}

void tst_ObjectListModel::keysAreFoundAlsoBehindTheFilter()
{
    ObjectListModel model;
    auto objects = manholes();
    objects << ListedObject {QStringLiteral("d"), QStringLiteral("s9"), {}, QStringLiteral("node")};
    model.setObjects(objects);
    model.setFilter(QStringLiteral("nothing like this"));

    QCOMPARE(model.idOfKey(QStringLiteral("S9")), QStringLiteral("b"));
    QCOMPARE(model.idOfKey(QStringLiteral("s9")), QStringLiteral("d"));
    QCOMPARE(model.idOfKey(QStringLiteral("HOUSE 3")), QStringLiteral("c"));
    QVERIFY(model.idOfKey(QStringLiteral("S")).isEmpty());
}

void tst_ObjectListModel::rowsOutsideGiveNothing()
{
    ObjectListModel model;
    model.setObjects(manholes());

    QVERIFY(!model.data(model.index(3)).isValid());
    QVERIFY(!model.data({}).isValid());
    QCOMPARE(model.rowCount(model.index(0)), 0);
}

void tst_ObjectListModel::anObjectIsFoundWhereItsLineShows()
{
    ObjectListModel model;
    model.setObjects(manholes());

    for (int row = 0; row < 3; ++row)
        QCOMPARE(model.rowOf(model.data(model.index(row), ObjectListModel::ObjectIdRole).toString()), row);
    QCOMPARE(model.rowOf(QStringLiteral("nobody")), -1);
    model.setFilter(QStringLiteral("house"));
    QCOMPARE(model.rowOf(QStringLiteral("c")), 0);
    QCOMPARE(model.rowOf(QStringLiteral("b")), -1);
}

QTEST_APPLESS_MAIN(tst_ObjectListModel)
#include "tst_ObjectListModel.moc"
