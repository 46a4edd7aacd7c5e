#pragma once

#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "labels/LabelFace.h"
#include "network/ObservationScene.h"
#include "scene/GlobalNav.h"

#include <Qt3DRender/QCamera>
#include <QtTest>

#include <cmath>
#include <memory>

namespace Kx::Test {

/** A scene with labels that nobody draws, seen from above through a window of 1000 x 700 pixels. */
class LabelScene {
protected:
    using ImageLabel = Torvik::View3d::ImageLabel;
    using LabelBoard = Torvik::View3d::LabelBoard;
    using Node = Torvik::View3d::Node;

    void setUp()
    {
        auto* const nav = Torvik::View3d::GlobalNav::instance();
        nav->setLabelsVisible(true);
        nav->setObsVisible(true);
        nav->setManholeFullInfoVisible(false);
        nav->setLabelLineHeight(10.0F);
        m_scene = std::make_unique<ObservationScene>();
        m_camera = std::make_unique<Qt3DRender::QCamera>();
        m_camera->lens()->setPerspectiveProjection(3.0F, 1000.0F / 700.0F, 1.0F, 10000.0F);
        m_scene->root->setSceneWidth(1000.0);
        m_scene->root->setSceneHeight(700.0);
        m_scene->root->setCamera(m_camera.get());
        look({0, 0, 0}, 350.0F);
    }
    void tearDown()
    {
        Torvik::View3d::GlobalNav::instance()->setLabelLineHeight(10.0F);
        m_scene.reset();
        m_camera.reset();
    }

    Node* nodeAt(const QString& name, const QVector3D& place)
    {
        return m_scene->node(name, NetworkScene::storedPoint(place, Torvik::View3d::TransformFlags::GIS));
    }
    static ImageLabel* labelOf(Node* node) { return qobject_cast<ImageLabel*>(node->getLabel()); }
    static void drag(ImageLabel* label, const QVector3D& pixels)
    {
        label->move(pixels, Torvik::View3d::TransformFlags::Manual);
    }
    static ImageLabel* shown(const Qt3DCore::QEntity* object)
    {
        auto* const label = object->findChild<ImageLabel*>({}, Qt::FindDirectChildrenOnly);
        return label && label->face() && label->isShown() && label->face()->isEnabled() ? label : nullptr;
    }
    void look(const QVector3D& centre, float distance)
    {
        m_camera->setUpVector({0, 0, 1});
        m_camera->setPosition(centre + QVector3D(0, distance, 0));
        m_camera->setViewCenter(centre);
        rest();
    }
    /** Until the labels have come back. */
    static void rest() { QTRY_VERIFY(!LabelBoard::instance().isBusy()); }
    static QPointF pixelOf(const QVector3D& point)
    {
        namespace Placement = Torvik::View3d::LabelPlacement;
        const auto view = *LabelBoard::instance().view();
        return Placement::pixelOf(view, *Placement::onPlane(view, point));
    }
    static double distance(QPointF a, QPointF b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

    std::unique_ptr<ObservationScene> m_scene;
    std::unique_ptr<Qt3DRender::QCamera> m_camera;
};

} // namespace Kx::Test
