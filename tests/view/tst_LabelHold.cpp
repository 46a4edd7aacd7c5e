#include "common/SceneTest.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "view/LabelWindow.h"

using namespace Torvik::View3d;

/** Labels under a finger while their objects change, and on one another: a real project in a rendered window. */
class tst_LabelHold : public QObject, private Kx::Test::LabelWindow {
    Q_OBJECT

private slots:
    void initTestCase() { openWindow(); }
    void cleanupTestCase() { closeWindow(); }
    void init() { makeProject(); }
    void cleanup() { closeProject(); }

    void aFindingThatIsMadeAnewStaysUnderTheFinger_data();
    void aFindingThatIsMadeAnewStaysUnderTheFinger();
    void anObjectDeletedUnderTheFingerGivesTheCameraBack_data();
    void anObjectDeletedUnderTheFingerGivesTheCameraBack();
    void ofTwoLabelsOnOneAnotherThePressedOneIsSeen();

private:
    static Observation* findingOf(const QString& id) { return SceneEntities::instance().getObservations().value(id); }
    static QColor findingBackground() { return {63, 175, 249}; }
    /** Until it stands on the screen. */
    void waitForLabel(const CDomainObjectPointer& finding)
    {
        QTRY_VERIFY(labelOf(findingOf(finding->id())));
        rest();
    }
};

void tst_LabelHold::aFindingThatIsMadeAnewStaysUnderTheFinger_data()
{
    QTest::addColumn<bool>("byAnother");
    QTest::newRow("as its place is stored") << false;
    QTest::newRow("as somebody changes it") << true;
}

void tst_LabelHold::aFindingThatIsMadeAnewStaysUnderTheFinger()
{
    QFETCH(bool, byAnother);
    lookDown(230.0F);
    const QVector3D camera = m_view->camera()->position();
    const auto record = m_project->addObservation(m_inspection, "BAB", 2.0);
    const QString id = record->id();
    waitForLabel(record);
    const QPointer<Observation> first = findingOf(id);
    const QRect before = areaOf(labelOf(findingOf(id)));

    m_view->press(before.center());
    m_view->moveTo(before.center() + QPoint(-10, -40));
    m_view->moveTo(before.center() + QPoint(-20, -60));
    if (byAnother) {
        record->updateValue("OBS_Q1_Value", 12.0);
        Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(record, 1);
    }
    QTRY_VERIFY(findingOf(id) != first.data());
    m_view->frames(4);
    QVERIFY(!m_view->controller()->property("enabled").toBool());
    m_view->moveTo(before.center() + QPoint(-25, -80));
    m_view->moveTo(before.center() + QPoint(-30, -110));
    m_view->release(before.center() + QPoint(-30, -110));

    const ImageLabel* label = labelOf(findingOf(id));
    QVERIFY(label && label->face());
    QVERIFY((areaOf(label).topLeft() - before.topLeft() - QPoint(-30, -110)).manhattanLength() <= 2);
    QCOMPARE(m_view->camera()->position(), camera);
    QVERIFY(m_view->controller()->property("enabled").toBool());
    QVERIFY(count(m_view->grab(), before.translated(-30, -110), findingBackground(), 18) > 100);

    reopen();
    QTRY_VERIFY(findingOf(id));
    lookDown(230.0F);
    label = labelOf(findingOf(id));
    QVERIFY(label);
    QVERIFY((areaOf(label).topLeft() - before.topLeft() - QPoint(-30, -110)).manhattanLength() <= 2);
}

void tst_LabelHold::anObjectDeletedUnderTheFingerGivesTheCameraBack_data()
{
    QTest::addColumn<bool>("finding");
    QTest::newRow("manhole") << false;
    QTest::newRow("finding") << true;
}

void tst_LabelHold::anObjectDeletedUnderTheFingerGivesTheCameraBack()
{
    QFETCH(bool, finding);
    lookDown(230.0F);
    CDomainObjectPointer record = finding ? m_project->addObservation(m_inspection, "BAB", 2.0)
                                          : m_project->addNode("MH-3", "POINT ZM(400003 5599995 100 16)");
    const QString id = record->id();
    const auto object = [&]() -> Qt3DCore::QEntity* {
        auto& entities = SceneEntities::instance();
        return finding ? static_cast<Qt3DCore::QEntity*>(entities.getObservations().value(id))
                       : entities.getNodes().value(id);
    };
    QTRY_VERIFY(labelOf(object()));
    rest();
    const QPoint from = areaOf(labelOf(object())).center();
    const QVector3D camera = m_view->camera()->position();

    m_view->press(from);
    m_view->moveTo(from + QPoint(0, -50));
    m_view->moveTo(from + QPoint(0, -90));
    QVERIFY(!m_view->controller()->property("enabled").toBool());
    QVERIFY(Torvik::Database::ProjectStore::instance().deleteObject(record));
    record.reset();
    QTRY_VERIFY(!object());
    QTRY_VERIFY(m_view->controller()->property("enabled").toBool());
    m_view->moveTo(from + QPoint(30, -120));
    m_view->moveTo(from + QPoint(60, -140));
    m_view->release(from + QPoint(60, -140));

    QCOMPARE(m_view->camera()->position(), camera);
    QVERIFY(m_view->controller()->property("enabled").toBool());
    rest();
    for (const QPoint& place : {QPoint(0, -90), QPoint(60, -140)}) {
        const QRect area(from + place - QPoint(20, 10), QSize(40, 20));
        QCOMPARE(count(m_view->grab(), area, finding ? findingBackground() : background(), 18), 0);
    }
    // The next finger moves it.
    m_view->drag({600, 480}, {500, 440});
    QVERIFY(m_view->camera()->position() != camera);
}

void tst_LabelHold::ofTwoLabelsOnOneAnotherThePressedOneIsSeen()
{
    const auto record = m_project->addObservation(m_inspection, "BAB", 2.0);
    const QString id = record->id();
    reopen();
    QTRY_VERIFY(findingOf(id));
    lookDown(230.0F);
    const auto manhole = [this] { return areaOf(labelOf(m_a)); };
    const auto finding = [&] { return areaOf(labelOf(findingOf(id))); };
    const QPoint place(400, 470);
    m_view->drag(manhole().center(), place);
    m_view->drag(finding().center(), place + QPoint(15, 10));
    const QRect common = (manhole() & finding()).adjusted(1, 1, -1, -1);
    const int enough = common.width() * common.height() / 4;
    QVERIFY2(enough > 50, qPrintable(QString::number(enough)));
    const auto seen = [&](const QColor& colour) { return count(m_view->grab(), common, colour, 18); };
    m_view->keep("backgrounds");

    QVERIFY(seen(findingBackground()) > enough);
    QCOMPARE(seen(background()), 0);

    m_view->tap(manhole().topLeft() + QPoint(4, 4));
    QVERIFY(seen(background()) > enough);
    QCOMPARE(seen(findingBackground()), 0);

    m_view->tap(finding().bottomRight() - QPoint(4, 4));
    QVERIFY(seen(findingBackground()) > enough);
    QCOMPARE(seen(background()), 0);
}

KX_SCENE_TEST_MAIN(tst_LabelHold)
#include "tst_LabelHold.moc"
