#include "common/SceneTest.h"
#include "view/Finger.h"
#include "view/GridPicture.h"
#include "view/SceneWindow.h"

#include "host/app/PhotoDesk.h"
#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "network/Node.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::Finger;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;
using Torvik::Viewer::PhotoDesk;

/** The view where the screen has another number of pixels than the window: each run has the scale of QT_SCALE_FACTOR.
 */
class tst_ScaledView : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase() { m_view.reset(); }

    void theScreenHasThatScale();
    void aManholeIsDrawnWhereItIsPicked();
    void aTapSelectsWhatStandsThere_data();
    void aTapSelectsWhatStandsThere();
    void aFingerTakesTheGroundAlong();
    void aLabelIsAsLargeAndSharp();
    void theBarIsAsLongAsASquare();
    void aPhotoHasEveryPixelOfTheArea();

private:
    Node* node() const { return SceneEntities::instance().getNodes().value(m_node->id()); }
    Section* section() const
    {
        return SceneEntities::instance().getPipeEntities().getByInspectionId(m_inspection->id());
    }
    QPoint pixelOfNode() const { return m_view->pixelOf(node()->position()); }
    void open()
    {
        const auto pipe = m_project->addSection("P", nullptr, nullptr, {{"OBJ_Size1", 500}});
        m_inspection =
            m_project->addInspection(pipe, "LINESTRING ZM(399999 5600001.5 98 132,400001 5600001.5 98 0)", 2);
        m_project->activate();
        QTRY_VERIFY(node() && section());
        lookDown(150);
    }
    void lookDown(float height)
    {
        m_view->lookDown({0, 0, 0}, height);
        QTRY_VERIFY(!LabelBoard::instance().isBusy());
        m_view->frames(4);
    }
    /** Where the two differ, in pixels of the pictures. */
    static QRect difference(const QImage& before, const QImage& after)
    {
        QRect found;
        for (int y = 0; y < before.height(); ++y) {
            for (int x = 0; x < before.width(); ++x) {
                if (qAbs(qGray(before.pixel(x, y)) - qGray(after.pixel(x, y))) > 12)
                    found |= QRect(x, y, 1, 1);
            }
        }
        return found;
    }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_node;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_inspection;
    double m_scale = 1.0;
};

void tst_ScaledView::initTestCase()
{
    m_view = std::make_unique<SceneWindow>();
    m_scale = qEnvironmentVariableIsSet("QT_SCALE_FACTOR") ? qEnvironmentVariable("QT_SCALE_FACTOR").toDouble() : 1.0;
}

void tst_ScaledView::init()
{
    GlobalNav::instance()->setLabelsVisible(false);
    m_view->area()->setProperty("gridVisible", false);
    m_project = std::make_unique<TestProject>();
    m_node = m_project->addNode("MH-12", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
}

void tst_ScaledView::cleanup()
{
    m_view->root()->deselectAll();
    m_project.reset();
    m_view->frames(3);
}

void tst_ScaledView::theScreenHasThatScale()
{
    QCOMPARE(m_view->window()->devicePixelRatio(), m_scale);
    QCOMPARE(m_view->grab().size(), QSize(qRound(800 * m_scale), qRound(600 * m_scale)));
}

void tst_ScaledView::aManholeIsDrawnWhereItIsPicked()
{
    lookDown(150);
    const QImage empty = m_view->grab();
    m_project->activate();
    QTRY_VERIFY(node());
    lookDown(150);

    const QRect drawn = difference(empty, m_view->grab());

    m_view->keep(QStringLiteral("scaled-manhole-%1").arg(m_scale));
    QVERIFY(drawn.width() > 8 * m_scale && drawn.height() > 8 * m_scale);
    const QPointF middle = QRectF(drawn).center() / m_scale;
    const QPointF expected = m_view->inWindow(pixelOfNode());
    QVERIFY2(qAbs(middle.x() - expected.x()) <= 1.5 && qAbs(middle.y() - expected.y()) <= 1.5,
             qPrintable(QStringLiteral("%1 %2").arg(middle.x() - expected.x()).arg(middle.y() - expected.y())));
}

void tst_ScaledView::aTapSelectsWhatStandsThere_data()
{
    QTest::addColumn<bool>("byTouch");
    QTest::addColumn<bool>("pipe");
    QTest::newRow("manhole, mouse") << false << false;
    QTest::newRow("manhole, touch") << true << false;
    QTest::newRow("pipe, mouse") << false << true;
    QTest::newRow("pipe, touch") << true << true;
}

void tst_ScaledView::aTapSelectsWhatStandsThere()
{
    QFETCH(bool, byTouch);
    QFETCH(bool, pipe);
    open();
    const auto tap = [&](QPoint at) {
        QTest::qWait(400); // past the guard of an earlier selection
        if (!byTouch)
            return m_view->tap(at);
        Finger finger(*m_view);
        finger.press(at);
        finger.release(at);
    };
    const auto middleOfPipe = [this] {
        const auto* const course = section()->pipe();
        return m_view->pixelOf(course->getTransformMatrixAtDistance(course->length() / 2.0F).column(3).toVector3D());
    };
    Renderable* const object = pipe ? static_cast<Renderable*>(section()) : node();
    const QPoint at = pipe ? middleOfPipe() : pixelOfNode();

    tap(at);
    QTRY_VERIFY(m_view->root()->isSelected(object->guid()));
    QCOMPARE(m_view->root()->selectionsCount(), 1);

    tap({60, 300});
    QTRY_VERIFY(m_view->root()->nothingSelected());
}

void tst_ScaledView::aFingerTakesTheGroundAlong()
{
    open();
    const QPoint from(250, 450);
    const QPoint to(400, 350);
    const auto ground = [this](QPoint pixel) {
        return Utils3d::pointScreenToWorldGround(float(pixel.x()), float(pixel.y()), m_view->camera(), 800, 600);
    };
    const QVector3D under = ground(from);

    Finger(*m_view).drag(from, to);

    QVERIFY((ground(to) - under).length() < 0.05F);
}

void tst_ScaledView::aLabelIsAsLargeAndSharp()
{
    GlobalNav::instance()->setLabelsVisible(true);
    open();
    const auto* const label = node()->findChild<ImageLabel*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(label);
    const QRectF place = label->coverage();
    QCOMPARE(qRound(place.height()), 24);

    const QImage picture = m_view->grab();

    m_view->keep(QStringLiteral("scaled-label-%1").arg(m_scale));
    const QPointF corner = m_view->inWindow(place.topLeft().toPoint());
    const QRect around(QRectF(corner * m_scale, place.size() * m_scale).toRect().adjusted(-20, -20, 20, 20));
    QRect drawn;
    for (int y = around.top(); y <= around.bottom(); ++y) {
        for (int x = around.left(); x <= around.right(); ++x) {
            const QColor colour = picture.pixelColor(x, y);
            if (qAbs(colour.red() - 64) < 24 && qAbs(colour.green() - 135) < 24 && qAbs(colour.blue() - 249) < 24)
                drawn |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(qAbs(drawn.height() - 24 * m_scale) <= m_scale);
    QVERIFY(qAbs(drawn.width() - place.width() * m_scale) <= 3 * m_scale);
    QVERIFY((QPointF(drawn.topLeft()) / m_scale - corner).manhattanLength() <= 3);
    // Letters that were made for fewer pixels lose nothing when they are made smaller and larger again.
    const QImage letters = picture.copy(drawn).convertToFormat(QImage::Format_RGB32);
    const QImage blurred = letters.scaled(letters.size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                               .scaled(letters.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    double lost = 0.0;
    for (int y = 0; y < letters.height(); ++y) {
        for (int x = 0; x < letters.width(); ++x)
            lost += qAbs(qGray(letters.pixel(x, y)) - qGray(blurred.pixel(x, y)));
    }
    lost /= letters.width() * letters.height();
    QVERIFY2(lost > 5.0, qPrintable(QString::number(lost)));
}

void tst_ScaledView::theBarIsAsLongAsASquare()
{
    m_view->area()->setProperty("gridVisible", true);
    for (const float distance : {60.0F, 400.0F, 2400.0F}) {
        m_view->lookDown({0, 0, 0}, distance);
        const auto* const bar = m_view->window()->findChild<QQuickItem*>("rulerBody");

        const QVector<float> lines = Kx::Test::columnsOfLines(m_view->grab());

        QVERIFY2(lines.size() >= 3, qPrintable(QString::number(lines.size())));
        const double square = double(lines.last() - lines.first()) / (lines.size() - 1) / m_scale;
        QVERIFY2(qAbs(bar->width() - square) <= 1.0,
                 qPrintable(QStringLiteral("bar %1, square %2").arg(bar->width()).arg(square)));
    }
}

void tst_ScaledView::aPhotoHasEveryPixelOfTheArea()
{
    open();
    const QTemporaryDir folder;
    PhotoDesk desk;
    desk.setFolder(folder.path());
    QSignalSpy written(&desk, &PhotoDesk::written);

    desk.takePicture(m_view->area());

    QTRY_COMPARE_WITH_TIMEOUT(written.count(), 1, 10000);
    const QImage photo(written.first().first().toString());
    QCOMPARE(photo.size(), QSize(qRound(800 * m_scale), qRound(600 * m_scale)));
    const QPointF at = QPointF(pixelOfNode()) * m_scale;
    QVERIFY(photo.pixelColor(at.toPoint()) != QColor(Qt::white));
    QCOMPARE(photo.pixelColor(photo.width() - 40, photo.height() - 40), QColor(Qt::white));
    QCOMPARE(photo.pixelColor(photo.width() / 4, photo.height() / 4), QColor(Qt::white));
}

KX_SCENE_TEST_MAIN(tst_ScaledView)
#include "tst_ScaledView.moc"
