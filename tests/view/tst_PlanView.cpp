#include "common/SceneTest.h"
#include "host/drawing/DrawingTask.h"
#include "host_drawing/DxfText.h"
#include "plans/BackgroundDxf.h"
#include "plans/PlanLoader.h"
#include "scene/SceneEntities.h"
#include "view/SceneWindow.h"

#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

bool isRed(const QColor& colour)
{
    return colour.red() > 200 && colour.green() < 60 && colour.blue() < 60;
}

bool isBlue(const QColor& colour)
{
    return colour.blue() > 200 && colour.red() < 60 && colour.green() < 60;
}

bool same(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue()) < 12;
}

/** Around all red pixels. */
QRect redOf(const QImage& image)
{
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (isRed(image.pixelColor(x, y)))
                all |= QRect(x, y, 1, 1);
        }
    }
    return all;
}

int difference(const QImage& a, const QImage& b, const QRect& where)
{
    int count = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x)
            count += same(a.pixelColor(x, y), b.pixelColor(x, y)) ? 0 : 1;
    }
    return count;
}

/** A page that is red in the west and blue in the east. */
QString halvedPage(const QString& path)
{
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(QPageLayout::Landscape);
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    painter.fillRect(0, 0, writer.width() / 2, writer.height(), Qt::red);
    painter.fillRect(writer.width() / 2, 0, writer.width(), writer.height(), Qt::blue);
    return path;
}

} // namespace

/** Plans on the screen, under a network. */
class tst_PlanView : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_project = std::make_unique<TestProject>(QStringLiteral("EPSG:25832"));
        m_project->addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"));
        m_project->activate();
        QTRY_VERIFY(m_window.root()->sceneHasNodesWithPosition());
        m_folder = std::make_unique<QTemporaryDir>();
    }

    void cleanup()
    {
        m_project.reset();
        QTRY_VERIFY(!SceneEntities::instance().planLoaded());
    }

    void aPdfLiesUnderTheNetwork()
    {
        // The node, at the origin, lies in the western half.
        m_window.lookDown({-20.0F, 0.0F, 0.0F}, 1500.0F);
        QTest::qWait(300);
        const QImage before = m_window.grab();
        lay(halvedPage(m_folder->filePath("page.pdf")));

        const QImage after = m_window.grab();
        m_window.keep("pdf");

        const QPoint node = at({0, 0, 0});
        QVERIFY(isRed(after.pixelColor(at({10.0F, 0.0F, 10.0F}))));
        QVERIFY(isRed(after.pixelColor(at({-10.0F, 0.0F, -10.0F}))));
        QVERIFY(isBlue(after.pixelColor(at({-30.0F, 0.0F, 10.0F}))));
        QVERIFY(isBlue(after.pixelColor(at({-50.0F, 0.0F, -10.0F}))));
        QVERIFY(!same(before.pixelColor(node), before.pixelColor(at({10.0F, 0.0F, 10.0F}))));
        QVERIFY(!isRed(after.pixelColor(node)));
        QCOMPARE(SceneEntities::instance().getBackgroundPlan()->fileName(), QStringLiteral("page.png"));
    }

    void aDwgLiesUnderTheNetwork_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("entities") << "dwg/entities-2d_AC1015.dwg";
        QTest::newRow("sample") << "dwg/sample_2000_AC1015.dwg";
    }

    void aDwgLiesUnderTheNetwork()
    {
        QFETCH(QString, name);
        const QString real = realFile(name);
        if (real.isEmpty())
            QSKIP("the folder of real drawings is not there");
        const QString path = m_folder->filePath("plan.dwg");
        QVERIFY(QFile::copy(real, path));
        const auto read = Torvik::DXF::readToMeshes(path, std::make_shared<std::atomic<bool>>(false));
        QVERIFY(!read.meshes.meshes.isEmpty());
        QVector3D least = read.meshes.meshes.first().smallest;
        QVector3D most = read.meshes.meshes.first().largest;
        for (const auto& mesh : read.meshes.meshes) {
            least = {std::min(least.x(), mesh.smallest.x()), 0.0F, std::min(least.z(), mesh.smallest.z())};
            most = {std::max(most.x(), mesh.largest.x()), 0.0F, std::max(most.z(), mesh.largest.z())};
        }
        const float side = std::max(most.x() - least.x(), most.z() - least.z());
        m_window.lookDown({0.0F, 0.0F, 0.0F}, 1500.0F);
        QTest::qWait(300);
        const QImage before = m_window.grab();

        lay(path);
        // To 60 m, its middle under the node.
        auto* const plan = SceneEntities::instance().getBackgroundPlan();
        const float scale = 60.0F / side / float(GdalGeoProjector::instance()->scale());
        plan->transform()->setScale3D({scale, 1.0F, scale});
        const float shrunk = scale * float(GdalGeoProjector::instance()->scale());
        const QVector3D crop = read.meshes.cropOffset.value_or(QVector3D());
        plan->setPosition(-((least + most) / 2.0F + crop) * shrunk, 0);
        plan->setElevation(-0.5F);
        QTest::qWait(500);
        const QImage after = m_window.grab();
        m_window.keep("dwg-" + QFileInfo(name).baseName());

        const QRect frame(at({30.0F, 0.0F, 30.0F}), at({-30.0F, 0.0F, -30.0F}));
        const int drawn = difference(before, after, frame);
        QVERIFY2(drawn > 300, qPrintable(QString::number(drawn)));
        // Lines, and nothing beyond them.
        QVERIFY(drawn < frame.width() * frame.height() / 2);
        QCOMPARE(difference(before, after, QRect(0, 0, frame.left() - 10, after.height())), 0);
        QVERIFY(same(before.pixelColor(at({0, 0, 0})), after.pixelColor(at({0, 0, 0}))));
    }

    void aLockedDrawingOfACountryStandsStillOnTheScreen()
    {
        m_window.lookDown({0.0F, 0.0F, 0.0F}, 1000.0F);
        QByteArray cross;
        for (const double y : {-6.0, 6.0})
            cross += Dxf::entity("LINE", 0,
                                 Dxf::pair(62, "1") + Dxf::at(10, 499990.0, 5600000.0 - y) +
                                     Dxf::at(11, 500010.0, 5600000.0 + y));
        lay(written(*m_folder, "far.dxf", Dxf::drawing(cross)));
        SceneEntities::instance().getBackgroundPlan()->setLock(true);
        QTest::qWait(300);
        const QRect stands = redOf(m_window.grab());
        m_window.keep("far");
        QVERIFY(stands.width() > 100 && stands.height() > 50);

        for (int step = 0; step < 12; ++step) {
            for (int small = 0; small < 8; ++small)
                m_window.camera()->translateWorld({0.013F, 0.0F, 0.021F}, Qt3DRender::QCamera::TranslateViewCenter);
            const QRect now = redOf(m_window.grab());
            QVERIFY2((now.center() - stands.center()).manhattanLength() <= 2, qPrintable(QString::number(step)));
        }
        // It is held by its middle, which is an end of a line here: that stays, and the rest turns about it.
        const QRect end(stands.bottomLeft() - QPoint(4, 4), QSize(9, 9));
        for (int step = 0; step < 12; ++step) {
            m_window.camera()->rotateAboutViewCenter(QQuaternion::fromAxisAndAngle(0, 1, 0, 30.0F));
            const QImage now = m_window.grab();
            QVERIFY2(redOf(now).intersects(end), qPrintable(QString::number(step)));
            QVERIFY(!redOf(now.copy(end)).isNull());
        }
        QVERIFY((redOf(m_window.grab()).center() - stands.center()).manhattanLength() <= 2);
    }

private:
    QPoint at(const QVector3D& place) const { return m_window.inWindow(m_window.pixelOf(place)); }

    /** As a host does: loaded, its file moved into the project, and laid. */
    void lay(const QString& path)
    {
        PlanLoader& loader = *m_window.root()->planLoader();
        QDir().mkpath(m_project->project()->projectPath() + Torvik::Base::CFileSystemNames::documentationPathPart());
        const QObject here;
        connect(&loader, &PlanLoader::planLoaded, &here, [&loader](Renderable* loaded) {
            auto* const plan = qobject_cast<IBackgroundPlan*>(loaded);
            loader.swapPlan(plan);
            SceneEntities::instance().setBackgroundPlan(plan);
        });
        loader.loadPlan(path);
        QTRY_VERIFY_WITH_TIMEOUT(SceneEntities::instance().planLoaded(), 30000);
        QVERIFY(SceneEntities::instance().getBackgroundPlan()->isEnabled());
        QTest::qWait(500);
    }

    SceneWindow m_window;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<QTemporaryDir> m_folder;
};

KX_SCENE_TEST_MAIN(tst_PlanView)
#include "tst_PlanView.moc"
