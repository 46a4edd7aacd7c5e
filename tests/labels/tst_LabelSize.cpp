#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "labels/LabelFace.h"
#include "network/ObservationScene.h"
#include "scene/GlobalNav.h"

#include <Qt3DRender/QCamera>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;

/** How large labels are on the screen, whatever changes around them. */
class tst_LabelSize : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        GlobalNav::instance()->setLabelsVisible(true);
        GlobalNav::instance()->setManholeFullInfoVisible(false);
        GlobalNav::instance()->setLabelLineHeight(10.0F);
        m_scene = std::make_unique<ObservationScene>();
        m_camera = std::make_unique<Qt3DRender::QCamera>();
        m_camera->lens()->setPerspectiveProjection(3.0F, 1000.0F / 700.0F, 1.0F, 10000.0F);
        m_scene->root->setSceneWidth(1000.0);
        m_scene->root->setSceneHeight(700.0);
        m_scene->root->setCamera(m_camera.get());
        m_camera->setUpVector({0, 0, 1});
        m_camera->setPosition({0, 350, 0});
        m_camera->setViewCenter({0, 0, 0});
        rest();
    }

    void cleanup()
    {
        GlobalNav::instance()->setLabelLineHeight(10.0F);
        m_scene.reset();
        m_camera.reset();
    }

    void anotherLineHeightReachesLabelsThatStand()
    {
        const ImageLabel* const label = labelAt("M12", {0, 0, 0});

        GlobalNav::instance()->setLabelLineHeight(20.0F);
        rest();

        QVERIFY(std::abs(label->coverage().height() - 48.0) < 0.001);
        QCOMPARE(label->face()->texturePixels(), label->coverage().size().toSize());
    }

    void aWindowOfAnotherSizeKeepsThePixels()
    {
        const ImageLabel* const label = labelAt("M12", {2, 0, 1});
        const QSizeF before = label->coverage().size();

        m_scene->root->setSceneHeight(1400.0);
        rest();

        QVERIFY(std::abs(label->coverage().height() - 24.0) < 0.001);
        QVERIFY(std::abs(label->coverage().width() - before.width()) < 0.01);
        const auto view = *LabelBoard::instance().view();
        const auto anchor = LabelPlacement::onPlane(view, label->parentRenderable()->position());
        const QPointF object = LabelPlacement::pixelOf(view, *anchor);
        QVERIFY(std::abs(label->coverage().center().x() - 0.5 - object.x()) < 0.01);
        QVERIFY(std::abs(label->coverage().top() - 0.5 - (object.y() - 2.12 * 24)) < 0.01);
    }

    void theRoomForANameIsThatOfItsLabel()
    {
        ImageLabel* const label = labelAt("M12", {0, 0, 0});
        auto* const node = qobject_cast<Node*>(label->parentRenderable());
        const auto same = [&] {
            rest();
            const auto room = node->nameTag().coverage(*LabelBoard::instance().view());
            return room && std::abs(room->width() - label->coverage().width()) < 0.01 &&
                   std::abs(room->height() - label->coverage().height()) < 0.01;
        };
        QVERIFY(same());
        const double width = label->coverage().width();

        node->setName(QStringLiteral("M1234567 \U0001D7D9\U0001D7DA"));
        QVERIFY(same());
        QVERIFY(label->coverage().width() > 2 * width);
        GlobalNav::instance()->setManholeFullInfoVisible(true);
        QVERIFY(same());
        GlobalNav::instance()->setManholeFullInfoVisible(false);
        QVERIFY(same());
    }

    void aLongNameWithLinesIsStretchedMore()
    {
        const ImageLabel* const label = labelAt("ABCDEFGHIJKLMNOPQRST", {0, 0, 0});

        GlobalNav::instance()->setManholeFullInfoVisible(true);
        QCOMPARE(label->font().stretch(), 12);
        QCOMPARE(label->font().wordSpacing(), -5.0);

        GlobalNav::instance()->setManholeFullInfoVisible(false);
        QCOMPARE(label->font().weight(), 50);
        QCOMPARE(label->font().pointSize(), 24);
    }

private:
    static void rest() { QTRY_VERIFY(!LabelBoard::instance().isBusy()); }
    ImageLabel* labelAt(const QString& name, const QVector3D& place)
    {
        Node* const node = m_scene->node(name, NetworkScene::storedPoint(place, TransformFlags::GIS));
        auto* const label = qobject_cast<ImageLabel*>(node->getLabel());
        [] { rest(); }();
        return label;
    }

    std::unique_ptr<ObservationScene> m_scene;
    std::unique_ptr<Qt3DRender::QCamera> m_camera;
};

QTEST_MAIN(tst_LabelSize)
#include "tst_LabelSize.moc"
