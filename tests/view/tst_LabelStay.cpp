#include "common/SceneTest.h"
#include "view/LabelWindow.h"

#include <QFile>

using namespace Torvik::View3d;

/** Where labels were put, from one opening of a project to the next: real files, a rendered window. */
class tst_LabelStay : public QObject, private Kx::Test::LabelWindow {
    Q_OBJECT

private slots:
    void initTestCase() { openWindow(); }
    void cleanupTestCase() { closeWindow(); }
    void init() { makeProject(); }
    void cleanup() { closeProject(); }

    void aDragSurvivesClosingAndOpening();
    void aFileThatIsNoneCostsThePositionsOnly_data();
    void aFileThatIsNoneCostsThePositionsOnly();
    void aResetPutsAllBackAndTakesTheFileAway();
    void moreMovedLabelsThanAreDrawnAreAllKept();
};

void tst_LabelStay::aDragSurvivesClosingAndOpening()
{
    const QRect place = areaOf(labelOf(m_a));
    m_view->drag(place.center(), place.center() + QPoint(-90, 70));
    const QImage before = m_view->grab();
    QVERIFY(!QFile::exists(m_project->path() + "/labelPosition.json"));

    reopen();
    QVERIFY(QFile::exists(m_project->path() + "/labelPosition.json"));

    const QImage after = m_view->grab();
    QVERIFY(labelOf(m_a)->hasCustomPosition());
    const int different = differing(before, after);
    QVERIFY2(different < 400, qPrintable(QString::number(different)));
}

void tst_LabelStay::aFileThatIsNoneCostsThePositionsOnly_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("damaged") << QByteArray("{\"a\": {\"x\": 1, ");
    QTest::newRow("wrong types") << QByteArray("{\"a\": [1, 2], \"b\": {\"x\": \"one\"}, \"c\": 5}");
    QTest::newRow("not UTF-8") << QByteArray("{\"\xff\xfe\": {\"x\": 1, \"y\": 2, \"z\": 3}}");
    QTest::newRow("50 MB of noise") << QByteArray(50 * 1024 * 1024, '\x9c');
}

void tst_LabelStay::aFileThatIsNoneCostsThePositionsOnly()
{
    QFETCH(QByteArray, content);
    const QString path = m_project->path() + "/labelPosition.json";
    const auto stored = [&path] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    // Nothing was moved: the project leaves it as it is.
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    reopen();
    QVERIFY(labelOf(m_a) && !labelOf(m_a)->hasCustomPosition());
    reopen();
    QVERIFY(stored() == content);

    const QPoint label = areaOf(labelOf(m_a)).center();
    m_view->drag(label, label + QPoint(50, 50));
    reopen();
    QVERIFY(stored() != content);
    QVERIFY(labelOf(m_a)->hasCustomPosition());
}

void tst_LabelStay::aResetPutsAllBackAndTakesTheFileAway()
{
    const QString path = m_project->path() + "/labelPosition.json";
    const QImage before = m_view->grab();
    const QPoint a = areaOf(labelOf(m_a)).center();
    const QPoint b = areaOf(labelOf(m_b)).center();
    m_view->drag(a, a + QPoint(-60, 90));
    m_view->drag(b, b + QPoint(40, 70));
    reopen();
    QVERIFY(QFile::exists(path));
    QVERIFY(differing(before, m_view->grab()) > 2000);

    GlobalNav::instance()->resetLabelsPositions();
    QVERIFY(!QFile::exists(path));
    rest();

    const int different = differing(before, m_view->grab());
    QVERIFY2(different < 100, qPrintable(QString::number(different)));
    reopen();
    QVERIFY(!QFile::exists(path));
    QVERIFY(!labelOf(m_a)->hasCustomPosition());
}

void tst_LabelStay::moreMovedLabelsThanAreDrawnAreAllKept()
{
    constexpr int labels = LabelBoard::maxDrawn + 1;
    QStringList ids;
    for (int i = 0; i < labels; ++i)
        ids.append(m_project
                       ->addNode(QString::number(i),
                                 QString("POINT ZM(%1 %2 100 16)").arg(400000 + i % 21).arg(5599985 - i / 21))
                       ->id());
    const auto manhole = [](const QString& id) { return SceneEntities::instance().getNodes().value(id); };
    QTRY_VERIFY(manhole(ids.last()));
    const QVector3D middle = (manhole(ids.first())->position() + manhole(ids.last())->position()) / 2;
    const auto lookThere = [&] {
        m_view->lookDown(middle, 600.0F);
        rest();
    };
    lookThere();
    // As a finger would, which does one of them.
    for (const QString& id : qAsConst(ids))
        qobject_cast<ImageLabel*>(manhole(id)->getLabel())->move({3, 30, 0}, TransformFlags::Manual);
    rest();
    const ImageLabel* const last = labelOf(manhole(ids.first()));
    m_view->drag(areaOf(last).center(), areaOf(last).center() + QPoint(-40, -30));
    rest();
    QHash<QString, QVector3D> offsets;
    for (const QString& id : qAsConst(ids))
        offsets.insert(id, labelOf(manhole(id))->storedOffset());
    QCOMPARE(LabelBoard::instance().drawnCount(), LabelBoard::maxDrawn);
    const QImage before = m_view->grab();
    m_view->keep("labels-401");

    reopen();
    QTRY_VERIFY(manhole(ids.last()));
    lookThere();

    QCOMPARE(LabelBoard::instance().drawnCount(), LabelBoard::maxDrawn);
    for (const QString& id : qAsConst(ids)) {
        const auto* const label = qobject_cast<ImageLabel*>(manhole(id)->getLabel());
        QVERIFY(label->hasCustomPosition());
        QVERIFY((label->storedOffset() - offsets.value(id)).length() < 1e-6F);
    }
    QVERIFY(count(m_view->grab(), before.rect(), background(), 12) > 20000);
}

KX_SCENE_TEST_MAIN(tst_LabelStay)
#include "tst_LabelStay.moc"
