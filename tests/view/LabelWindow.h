#pragma once

#include "view/SceneWindow.h"

#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "labels/LabelFace.h"
#include "network/Node.h"
#include "network/Observation.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <cmath>
#include <memory>

namespace Kx::Test {

/** A project of two manholes with a pipe and a finding between them, in a rendered window, seen from above; read by its
 *  pixels. */
class LabelWindow {
protected:
    using ImageLabel = Torvik::View3d::ImageLabel;
    using Node = Torvik::View3d::Node;
    using SceneEntities = Torvik::View3d::SceneEntities;

    void openWindow() { m_view = std::make_unique<SceneWindow>(); }
    void closeWindow() { m_view.reset(); }
    void makeProject()
    {
        auto* const nav = Torvik::View3d::GlobalNav::instance();
        nav->setLabelsVisible(true);
        nav->setObsVisible(true);
        nav->setManholeFullInfoVisible(false);
        m_project = std::make_unique<TestProject>();
        m_a = m_project->addNode("MH-12", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
        m_b = m_project->addNode("Łódź Ω", "POINT ZM(400008 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
        m_pipe = m_project->addSection("P-7", m_a, m_b, {{"OBJ_Size1", 300}});
        m_inspection = m_project->addInspection(m_pipe, "LINESTRING ZM(400008 5600000 98 64,400000 5600000 98 0)");
        open();
        lookDown(350.0F);
    }
    void closeProject()
    {
        m_a.reset();
        m_b.reset();
        m_pipe.reset();
        m_inspection.reset();
        m_project.reset();
    }
    /** As a user closes the project and opens it again. */
    void reopen()
    {
        const QString a = m_a->id();
        m_a.reset();
        m_b.reset();
        m_pipe.reset();
        m_inspection.reset();
        m_project->reopen();
        m_a = m_project->project()->lookupObject(a);
        open();
        lookDown(350.0F);
    }
    void open()
    {
        m_project->activate();
        QTRY_VERIFY(node(m_a));
    }

    static Node* node(const CDomainObjectPointer& record)
    {
        return SceneEntities::instance().getNodes().value(record->id());
    }
    static ImageLabel* labelOf(const Qt3DCore::QEntity* object)
    {
        return object ? object->findChild<ImageLabel*>({}, Qt::FindDirectChildrenOnly) : nullptr;
    }
    static ImageLabel* labelOf(const CDomainObjectPointer& record) { return labelOf(node(record)); }
    void rest()
    {
        QTRY_VERIFY(!Torvik::View3d::LabelBoard::instance().isBusy());
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
    static QRect drawnArea(const QImage& picture, const QRect& around, const QColor& colour = background())
    {
        QRect found;
        const QRect inside = around.adjusted(-12, -12, 12, 12) & picture.rect();
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x) {
                if (like(picture.pixel(x, y), colour, 24))
                    found |= QRect(x, y, 1, 1);
            }
        }
        return found;
    }
    /** Pixels that differ by more than the edge of a letter that falls on another pixel. */
    static int differing(const QImage& one, const QImage& other)
    {
        int different = 0;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x)
                different += like(one.pixel(x, y), other.pixelColor(x, y), 60) ? 0 : 1;
        }
        return different;
    }
    static QColor background() { return {64, 135, 249}; }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_a;
    CDomainObjectPointer m_b;
    CDomainObjectPointer m_pipe;
    CDomainObjectPointer m_inspection;
};

} // namespace Kx::Test
