#pragma once

#include "common/TestProject.h"
#include "domain/NodeAdapter.h"
#include "domain/NotificationMapper.h"
#include "domain/SectionAdapter.h"
#include "domain/boundary/Notifications.h"
#include "geo/GdalGeoProjector.h"
#include "network/LowestManholeTracker.h"
#include "network/Node.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <memory>

/** A scene of its own over a real project, with objects made one by one. The scene's origin is the stored point (0 0
 * 0), so a stored (x y z) stands at (-x, z, y). */
class NetworkScene {
public:
    NetworkScene()
    {
        m_project.activate();
        tieToEarth();
    }
    ~NetworkScene()
    {
        root.reset();
        m_project.close();
    }

    Kx::Test::TestProject& project() { return m_project; }

    static void tieToEarth(const QString& origin = QStringLiteral("POINT ZM(0 0 0 0)"))
    {
        QString system = QStringLiteral("LOCAL_CS[\"site\"]");
        Torvik::View3d::GdalGeoProjector::instance()->init(Torvik::Database::WktPoint(origin), system);
    }

    /** The node of a record, placed and registered as the manager does it. */
    Torvik::View3d::Node* node(const CDomainObjectPointer& record)
    {
        using namespace Torvik;
        auto* const proxy = new Database::CDomainObjectProxy(View3d::sharedNotificationMapper(), record, nullptr);
        auto* const node = View3d::Node::create(root.get(), new View3d::NodeAdapter(proxy, nullptr));
        const QString shape = record->readValue("OBJ_Shape_WKT").toString();
        node->setVisible(!shape.isEmpty());
        node->setTransformFlags(Database::WktPoint(shape).m().toInt());
        node->setName(record->readValue("OBJ_Key").toString());
        View3d::SceneEntities::instance().getNodes().insert(record->id(), node);
        return node;
    }

    Torvik::View3d::Node* node(const QString& key, const QString& shape = {}, const QVariantMap& values = {})
    {
        return node(m_project.addNode(key, shape, values));
    }

    /** A node whose stored place is this point of the scene. */
    Torvik::View3d::Node* nodeAt(const QVector3D& place, const QVariantMap& values = {},
                                 int flags = Torvik::View3d::TransformFlags::GIS)
    {
        return node("N", storedPoint(place, flags), values);
    }

    Torvik::View3d::Section* section(const QSharedPointer<Torvik::Database::CPipeInspectionObject>& inspection)
    {
        using namespace Torvik;
        const auto pipe = inspection->parentObject().toStrongRef();
        auto* const proxy = new Database::CDomainObjectProxy(View3d::sharedNotificationMapper(), pipe, nullptr);
        return View3d::Section::create(root.get(), new View3d::SectionAdapter(inspection, proxy));
    }

    /** A section between two nodes of the scene, each possibly null, in the order of the inspection.
     *  @param course     scene points from start to end; none means that no shape is stored
     *  @param flags      stored with the course
     *  @param direction  1 downstream, 2 upstream */
    Torvik::View3d::Section* section(Torvik::View3d::Node* start, Torvik::View3d::Node* end,
                                     const QVariantMap& values = {}, const QVector<QVector3D>& course = {},
                                     int flags = Torvik::View3d::TransformFlags::Manual, int direction = 1)
    {
        const auto from = recordOf(direction == 1 ? start : end);
        const auto to = recordOf(direction == 1 ? end : start);
        const auto pipe = m_project.addSection("S", from, to, values);
        return section(m_project.addInspection(pipe, storedShape(course, flags, direction), direction));
    }

    /** A lateral that sits on nothing. */
    Torvik::View3d::Section* lateral(Torvik::View3d::Node* start, Torvik::View3d::Node* end, int direction,
                                     const QVariantMap& values = {})
    {
        QVariantMap all = values;
        const auto id = [](const CDomainObjectPointer& record) { return record ? record->id() : QString(); };
        all.insert("OBJ_FromNode_REF", id(recordOf(direction == 1 ? start : end)));
        all.insert("OBJ_ToNode_REF", id(recordOf(direction == 1 ? end : start)));
        return section(m_project.addInspection(m_project.addLateral("L", nullptr, all), {}, direction));
    }

    static QString storedPoint(const QVector3D& place, int flags = Torvik::View3d::TransformFlags::GIS)
    {
        return QStringLiteral("POINT ZM(%1 %2 %3 %4)")
            .arg(double(-place.x()))
            .arg(double(place.z()))
            .arg(double(place.y()))
            .arg(flags);
    }

    /** The section's course as the database holds it; null when none is stored. */
    QVariant storedShapeOf(const Torvik::View3d::Section* section) const
    {
        return m_project.stored("SECINSP", "INS_PK", section->getInspectionObjectId(), "INS_Shape_WKT");
    }

    /** Until the end of editing and the pause before a write have passed: another object's write marks it. */
    void waitForAWrite()
    {
        Torvik::View3d::Node* const marker = nodeAt({1.0F, 1.0F, 1.0F});
        marker->setPosition({9.0F, 9.0F, 9.0F}, Torvik::View3d::TransformFlags::Manual);
        QTRY_COMPARE(m_project.stored("NODE", "OBJ_PK", marker->guid(), "OBJ_Shape_WKT").toString(),
                     QStringLiteral("POINT ZM(-9 9 9 4)"));
    }

    /** What is stored of a course: upstream order, with the flags on the first point. */
    static QString storedShape(QVector<QVector3D> course, int flags, int direction)
    {
        if (course.isEmpty())
            return {};
        if (direction == 1)
            std::reverse(course.begin(), course.end());
        QStringList points;
        for (const QVector3D& p : course)
            points.append(QStringLiteral("%1 %2 %3 %4")
                              .arg(double(-p.x()))
                              .arg(double(p.z()))
                              .arg(double(p.y()))
                              .arg(points.isEmpty() ? flags : 0));
        return QStringLiteral("LINESTRING ZM(%1)").arg(points.join(','));
    }

    static CDomainObjectPointer recordOf(const Torvik::View3d::Node* node)
    {
        return node ? node->getProps()->getDomainObject().toStrongRef() : CDomainObjectPointer();
    }

    std::unique_ptr<Torvik::View3d::SceneRoot> root = std::make_unique<Torvik::View3d::SceneRoot>();

private:
    Kx::Test::TestProject m_project {QStringLiteral("LOCAL_CS[\"site\"]")};
};

/** Equal within a tenth of a millimetre: positions go through float matrices. */
inline bool near(const QVector3D& a, const QVector3D& b)
{
    return (a - b).length() < 1e-4F;
}

#define VERIFY_NEAR(actual, expected)                                                                                  \
    do {                                                                                                               \
        const QVector3D a_ = (actual);                                                                                 \
        const QVector3D e_ = (expected);                                                                               \
        QVERIFY2(near(a_, e_), qPrintable(QStringLiteral("(%1, %2, %3) instead of (%4, %5, %6)")                       \
                                              .arg(double(a_.x()))                                                     \
                                              .arg(double(a_.y()))                                                     \
                                              .arg(double(a_.z()))                                                     \
                                              .arg(double(e_.x()))                                                     \
                                              .arg(double(e_.y()))                                                     \
                                              .arg(double(e_.z()))));                                                  \
    } while (false)
