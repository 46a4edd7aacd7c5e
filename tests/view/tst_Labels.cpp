#include "common/SceneTest.h"
#include "view/SceneWindow.h"

#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "labels/LabelFace.h"
#include "labels/LabelsPositionsLoader.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <QFile>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;

/** Labels as the user sees and touches them: a real project in a rendered window, read by its pixels. */
class tst_Labels : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { m_view = std::make_unique<SceneWindow>(); }
    void cleanupTestCase() { m_view.reset(); }
    void init();
    void cleanup();

    void aLabelIsReadAtEveryDistance_data();
    void aLabelIsReadAtEveryDistance();
    void thePointerRunsFromTheLabelToItsObject();
    void noPipeHidesALabel();
    void aFingerDragsALabelAndTheCameraStays();
    void aTouchDragsALabelAsAMouseDoes();
    void aDragSurvivesClosingAndOpening();
    void aTapThatTremblesMovesNothing();
    void aSecondTapPutsTheLabelBack();
    void aTapOnALabelSelectsNothingAndDeselectsNothing();
    void aPressThroughThePointerReachesTheManhole();
    void labelsAreGoneWhileTheViewMovesAndComeBack();
    void theSwitchTakesAllLabelsAway();
    void aFaceThatServesAnotherNameShowsThatName();
    void severalLinesCanBeRead();
    void aFileThatIsNoneCostsThePositionsOnly_data();
    void aFileThatIsNoneCostsThePositionsOnly();

private:
    Node* node(const CDomainObjectPointer& record) const
    {
        return SceneEntities::instance().getNodes().value(record->id());
    }
    ImageLabel* labelOf(const CDomainObjectPointer& record) const
    {
        return node(record)->findChild<ImageLabel*>({}, Qt::FindDirectChildrenOnly);
    }
    void open()
    {
        m_project->activate();
        QTRY_VERIFY(node(m_a));
    }
    void rest()
    {
        QTRY_VERIFY(!LabelBoard::instance().isBusy());
        m_view->frames(4);
    }
    void lookDown(float height)
    {
        m_view->lookDown({0, 0, 0}, height);
        rest();
    }
    static QRect areaOf(const ImageLabel* label) { return label->coverage().toAlignedRect(); }
    static bool like(QRgb pixel, const QColor& colour, int tolerance = 40)
    {
        return std::abs(qRed(pixel) - colour.red()) <= tolerance &&
               std::abs(qGreen(pixel) - colour.green()) <= tolerance &&
               std::abs(qBlue(pixel) - colour.blue()) <= tolerance;
    }
    static int count(const QImage& picture, const QRect& area, const QColor& colour, int tolerance = 40)
    {
        int found = 0;
        const QRect inside = area & picture.rect();
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x)
                found += like(picture.pixel(x, y), colour, tolerance) ? 1 : 0;
        }
        return found;
    }
    /** Where the background's colour is around a place: the label as it was drawn. */
    static QRect drawnArea(const QImage& picture, const QRect& around, const QColor& background)
    {
        QRect found;
        const QRect inside = around.adjusted(-12, -12, 12, 12) & picture.rect();
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x) {
                if (like(picture.pixel(x, y), background, 24))
                    found |= QRect(x, y, 1, 1);
            }
        }
        return found;
    }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_a;
    CDomainObjectPointer m_b;
};

namespace {

const QColor background(64, 135, 249);

} // namespace

void tst_Labels::init()
{
    GlobalNav::instance()->setLabelsVisible(true);
    GlobalNav::instance()->setManholeFullInfoVisible(false);
    m_project = std::make_unique<TestProject>();
    m_a = m_project->addNode("MH-12", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    m_b = m_project->addNode("Łódź Ω", "POINT ZM(400008 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto pipe = m_project->addSection("P", m_a, m_b, {{"OBJ_Size1", 300}});
    m_project->addInspection(pipe, "LINESTRING ZM(400008 5600000 98 64,400000 5600000 98 0)");
    open();
    lookDown(350.0F);
}

void tst_Labels::cleanup()
{
    m_project.reset();
}

void tst_Labels::aLabelIsReadAtEveryDistance_data()
{
    QTest::addColumn<float>("viewed");
    QTest::addColumn<QVector3D>("back");
    QTest::addColumn<QVector3D>("up");
    QTest::addColumn<float>("nearPlane");

    const QVector3D above(0, 1, 0);
    const QVector3D north(0, 0, 1);
    QTest::newRow("50 m") << 50.0F << above << north << 1.0F;
    QTest::newRow("350 m") << 350.0F << above << north << 1.0F;
    QTest::newRow("2 km") << 2000.0F << above << north << 1.0F;
    QTest::newRow("9 km, a narrow range") << 9000.0F << above << north << 4000.0F;
    QTest::newRow("90 km, a narrow range") << 90000.0F << above << north << 45000.0F;
    QTest::newRow("350 m from the front") << 350.0F << QVector3D(0, 0, -1) << QVector3D(0, 1, 0) << 1.0F;
    QTest::newRow("350 m aslant") << 350.0F << QVector3D(0, 1, -1).normalized() << QVector3D(0, 1, 1).normalized()
                                  << 1.0F;
    QTest::newRow("350 m, near plane of 100 m") << 350.0F << above << north << 100.0F;
}

void tst_Labels::aLabelIsReadAtEveryDistance()
{
    QFETCH(float, viewed);
    QFETCH(QVector3D, back);
    QFETCH(QVector3D, up);
    QFETCH(float, nearPlane);
    auto* const camera = m_view->camera();
    camera->setFarPlane(std::max(10000.0F, viewed * 1.5F));
    camera->setNearPlane(nearPlane);
    m_view->look(back * viewed, {0, 0, 0}, up);
    rest();

    const QImage picture = m_view->grab();
    camera->setNearPlane(1.0F);
    camera->setFarPlane(10000.0F);

    const ImageLabel* const label = labelOf(m_a);
    QVERIFY(label);
    // Its place by the arithmetic of the view, apart from that of labels.
    const QPoint object = m_view->pixelOf(node(m_a)->position());
    const QSize size(60, 24);
    const QRect expected(QPoint(object.x() - size.width() / 2, object.y() - 51), size);
    const QRect drawn = drawnArea(picture, expected, background);
    QVERIFY2(std::abs(drawn.left() - expected.left()) <= 2 && std::abs(drawn.top() - expected.top()) <= 2,
             qPrintable(QString("%1 %2").arg(drawn.left() - expected.left()).arg(drawn.top() - expected.top())));
    QVERIFY(std::abs(drawn.height() - 24) <= 1);
    QVERIFY(std::abs(drawn.width() - size.width()) <= 3);
    // Letters on it, not more than letters are.
    const int area = drawn.width() * drawn.height();
    QVERIFY(count(picture, drawn, Qt::white) > area / 25);
    QVERIFY(count(picture, drawn, Qt::white) < area / 2);
    QVERIFY(count(picture, drawn, background) > area / 3);
}

void tst_Labels::thePointerRunsFromTheLabelToItsObject()
{
    labelOf(m_a)->move(QVector3D(-100, -60, 0), TransformFlags::Manual);
    const QImage picture = m_view->grab();
    m_view->keep("label-with-pointer");

    const QPointF from = labelOf(m_a)->coverage().center();
    const QPointF to = m_view->pixelOf(node(m_a)->position());
    int onTheWay = 0;
    int looked = 0;
    for (double part = 0.5; part < 0.95; part += 0.02) {
        const QPoint at = (from + (to - from) * part).toPoint();
        ++looked;
        onTheWay += count(picture, QRect(at - QPoint(1, 1), QSize(3, 3)), Qt::blue, 110) > 0 ? 1 : 0;
    }
    QVERIFY2(onTheWay > looked * 8 / 10, qPrintable(QString("%1 of %2").arg(onTheWay).arg(looked)));
    QVERIFY(count(picture, areaOf(labelOf(m_a)), Qt::blue, 30) < 8);
}

void tst_Labels::noPipeHidesALabel()
{
    // From below, the pipe and the manhole's body lie before the ground.
    m_view->look({0, -30, 0.1F}, {0, 0, 0}, {0, 0, 1});
    rest();
    ImageLabel* const label = labelOf(m_a);
    const QPointF object = m_view->pixelOf(node(m_a)->position());
    label->move(QVector3D(object - label->coverage().center()), TransformFlags::Manual);

    const QImage picture = m_view->grab();

    const QRect drawn = drawnArea(picture, areaOf(label), background);
    QVERIFY(std::abs(drawn.height() - 24) <= 1 && std::abs(drawn.width() - 60) <= 3);
    QVERIFY(count(picture, drawn, Qt::white) > 60);
}

void tst_Labels::aFingerDragsALabelAndTheCameraStays()
{
    const QRect before = areaOf(labelOf(m_a));
    const QVector3D camera = m_view->camera()->position();

    m_view->drag(before.center(), before.center() + QPoint(80, 120));

    const QPoint way = areaOf(labelOf(m_a)).topLeft() - before.topLeft();
    QVERIFY2((way - QPoint(80, 120)).manhattanLength() <= 2, qPrintable(QString("%1 %2").arg(way.x()).arg(way.y())));
    QCOMPARE(m_view->camera()->position(), camera);
    const QImage picture = m_view->grab();
    const QRect drawn = drawnArea(picture, before.translated(80, 120), background);
    QVERIFY((drawn.topLeft() - before.topLeft() - QPoint(80, 120)).manhattanLength() <= 3);
    QCOMPARE(count(picture, before, background), 0);
    // The camera moves again with the next finger.
    QVERIFY(m_view->controller()->property("enabled").toBool());
}

void tst_Labels::aTouchDragsALabelAsAMouseDoes()
{
    const QRect before = areaOf(labelOf(m_a));
    const QVector3D camera = m_view->camera()->position();
    const QPoint from = before.center();
    auto* const screen = QTest::createTouchDevice();

    QTest::touchEvent(m_view->window(), screen).press(0, m_view->inWindow(from));
    m_view->frames(4);
    for (int step = 1; step <= 4; ++step) {
        QTest::touchEvent(m_view->window(), screen).move(0, m_view->inWindow(from + QPoint(20, 30) * step));
        m_view->frames(3);
    }
    QTest::touchEvent(m_view->window(), screen).release(0, m_view->inWindow(from + QPoint(80, 120)));
    m_view->frames(4);

    const QPoint way = areaOf(labelOf(m_a)).topLeft() - before.topLeft();
    QVERIFY2((way - QPoint(80, 120)).manhattanLength() <= 3, qPrintable(QString("%1 %2").arg(way.x()).arg(way.y())));
    QCOMPARE(m_view->camera()->position(), camera);
    QVERIFY(labelOf(m_a)->hasCustomPosition());
}

void tst_Labels::aDragSurvivesClosingAndOpening()
{
    const QRect place = areaOf(labelOf(m_a));
    m_view->drag(place.center(), place.center() + QPoint(-90, 70));
    const QImage before = m_view->grab();
    QVERIFY(!QFile::exists(m_project->path() + "/labelPosition.json"));

    m_project->reopen();
    QVERIFY(QFile::exists(m_project->path() + "/labelPosition.json"));
    const QString a = m_a->id();
    m_a = m_project->project()->lookupObject(a);
    m_b.reset();
    open();
    lookDown(350.0F);

    const QImage after = m_view->grab();
    QVERIFY(labelOf(m_a)->hasCustomPosition());
    int different = 0;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x)
            different += like(before.pixel(x, y), after.pixelColor(x, y), 60) ? 0 : 1;
    }
    // Some letters' edges fall on other pixels.
    QVERIFY2(different < 400, qPrintable(QString::number(different)));
}

void tst_Labels::aTapThatTremblesMovesNothing()
{
    const QRect before = areaOf(labelOf(m_a));

    m_view->drag(before.center(), before.center() + QPoint(2, 1));

    QVERIFY(!labelOf(m_a)->hasCustomPosition());
    QCOMPARE(areaOf(labelOf(m_a)), before);
    QVERIFY(m_view->controller()->property("enabled").toBool());
    m_project->reopen();
    QVERIFY(!QFile::exists(m_project->path() + "/labelPosition.json"));
    m_a.reset();
    m_b.reset();
}

void tst_Labels::aSecondTapPutsTheLabelBack()
{
    const QRect place = areaOf(labelOf(m_a));
    m_view->drag(place.center(), place.center() + QPoint(60, 110));
    QTest::qWait(450);
    const QPoint there = areaOf(labelOf(m_a)).center();

    QTest::mousePress(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there));
    m_view->frames(2);
    QTest::mouseRelease(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there));
    m_view->frames(2);
    // However far the finger slides before it leaves the screen.
    QTest::mousePress(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there));
    m_view->frames(2);
    QTest::mouseMove(m_view->window(), m_view->inWindow(there + QPoint(2, 1)));
    m_view->frames(2);
    QTest::mouseMove(m_view->window(), m_view->inWindow(there + QPoint(20, 15)));
    m_view->frames(2);
    QTest::mouseRelease(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(there + QPoint(20, 15)));
    m_view->frames(4);

    QVERIFY(!labelOf(m_a)->hasCustomPosition());
    QVERIFY(m_view->controller()->property("enabled").toBool());
    QCOMPARE(areaOf(labelOf(m_a)), place);
    const QString a = m_a->id();
    m_project->reopen();
    m_a = m_project->project()->lookupObject(a);
    m_b.reset();
    open();
    lookDown(350.0F);
    QVERIFY(!labelOf(m_a)->hasCustomPosition());
}

void tst_Labels::aTapOnALabelSelectsNothingAndDeselectsNothing()
{
    const QPoint label = areaOf(labelOf(m_a)).center();
    m_view->tap(label);
    QTest::qWait(400);
    QVERIFY(m_view->root()->nothingSelected());

    m_view->tap(m_view->pixelOf(node(m_a)->position()));
    QTRY_VERIFY(m_view->root()->isSelected(m_a->id()));
    QTest::qWait(400);
    m_view->tap(label);
    QTest::qWait(600);
    QVERIFY(m_view->root()->isSelected(m_a->id()));
    m_view->root()->deselectAll();
}

void tst_Labels::aPressThroughThePointerReachesTheManhole()
{
    node(m_a)->allowTouchControl(true);
    const QVector3D before = node(m_a)->position();
    const QPoint object = m_view->pixelOf(before);

    m_view->drag(object, object + QPoint(70, 40));

    QVERIFY((node(m_a)->position() - before).length() > 1.0F);
    rest();
    const QPoint moved = m_view->pixelOf(node(m_a)->position());
    QVERIFY((areaOf(labelOf(m_a)).center() - moved - QPoint(0, -39)).manhattanLength() <= 3);
    m_view->root()->deselectAll();
}

void tst_Labels::labelsAreGoneWhileTheViewMovesAndComeBack()
{
    const QRect place = areaOf(labelOf(m_a));
    QVERIFY(count(m_view->grab(), place, background) > 300);

    m_view->camera()->setPosition({0, 351, 0});
    m_view->frames(4);
    const QImage moving = m_view->window()->grabWindow();
    QVERIFY(LabelBoard::instance().isHidden());
    QCOMPARE(count(moving, moving.rect(), background, 12), 0);

    rest();
    QVERIFY(count(m_view->grab(), areaOf(labelOf(m_a)), background) > 300);
}

void tst_Labels::theSwitchTakesAllLabelsAway()
{
    GlobalNav::instance()->setLabelsVisible(false);
    rest();
    const QImage without = m_view->grab();
    QCOMPARE(count(without, without.rect(), background, 12), 0);

    GlobalNav::instance()->setLabelsVisible(true);
    rest();
    QVERIFY(count(m_view->grab(), areaOf(labelOf(m_a)), background) > 300);
}

void tst_Labels::aFaceThatServesAnotherNameShowsThatName()
{
    const auto far = m_project->addNode("A MUCH LONGER NAME", "POINT ZM(400500 5600000 100 16)");
    QTRY_VERIFY(node(far));
    const QVector3D there = node(far)->position();
    m_view->lookDown(there, 350.0F);
    rest();

    const QImage picture = m_view->grab();

    const QRect place = areaOf(labelOf(far));
    const QRect drawn = drawnArea(picture, place, background);
    QVERIFY(place.width() > 200);
    QVERIFY(std::abs(drawn.width() - place.width()) <= 3 && std::abs(drawn.height() - 24) <= 1);
    // To its end.
    QVERIFY(count(picture, QRect(place.right() - 40, place.top(), 40, 24), Qt::white) > 30);
}

void tst_Labels::severalLinesCanBeRead()
{
    GlobalNav::instance()->setManholeFullInfoVisible(true);
    rest();
    m_view->keep("label-lines");

    const QImage picture = m_view->grab();

    const QRect place = areaOf(labelOf(m_a));
    QVERIFY(place.height() >= 72 && place.height() <= 74);
    for (int line = 0; line < 4; ++line) {
        const QRect row(place.left(), place.top() + line * 18, place.width(), 18);
        QVERIFY2(count(picture, row, Qt::white, 90) > 12, qPrintable(QString::number(line)));
    }
}

void tst_Labels::aFileThatIsNoneCostsThePositionsOnly_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("damaged") << QByteArray("{\"a\": {\"x\": 1, ");
    QTest::newRow("wrong types") << QByteArray("{\"a\": [1, 2], \"b\": {\"x\": \"one\"}, \"c\": 5}");
    QTest::newRow("not UTF-8") << QByteArray("{\"\xff\xfe\": {\"x\": 1, \"y\": 2, \"z\": 3}}");
    QTest::newRow("50 MB of noise") << QByteArray(50 * 1024 * 1024, '\x9c');
}

void tst_Labels::aFileThatIsNoneCostsThePositionsOnly()
{
    QFETCH(QByteArray, content);
    const QString path = m_project->path() + "/labelPosition.json";
    const auto stored = [&path] {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QString a = m_a->id();
    const auto reopen = [&] {
        m_project->reopen();
        m_a = m_project->project()->lookupObject(a);
        open();
        lookDown(350.0F);
    };
    m_b.reset();
    m_a.reset();
    m_project->close();
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

KX_SCENE_TEST_MAIN(tst_Labels)
#include "tst_Labels.moc"
