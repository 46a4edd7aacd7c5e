#pragma once

#include "common/TestProject.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "scene/SceneEntities.h"

namespace Kx::Test {

inline const QString utm32 = QStringLiteral("EPSG:25832");
inline const QString placeA = QStringLiteral("POINT ZM(570000 5830000 40 16)");
inline const QString placeB = QStringLiteral("POINT ZM(570030 5830040 39 16)");

inline void write(const CDomainObjectPointer& object, const char* key, const QVariant& value, int origin = 1)
{
    object->updateValue(QLatin1String(key), value);
    Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(object, origin);
}

inline Torvik::View3d::Node* nodeOf(const CDomainObjectPointer& object)
{
    return Torvik::View3d::SceneEntities::instance().getNodes().value(object->id());
}

inline Torvik::View3d::Section* sectionOf(const CDomainObjectPointer& inspection)
{
    return Torvik::View3d::SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id());
}

/** Nodes at A and B with a straight pipe that was inspected downstream. */
struct SmallNetwork {
    SmallNetwork()
    {
        a = project.addNode(QStringLiteral("A"), placeA, {{"OBJ_DepthToInvert", 3.0}});
        b = project.addNode(QStringLiteral("B"), placeB, {{"OBJ_DepthToInvert", 2.0}});
        pipe = project.addSection(QStringLiteral("A-B"), a, b,
                                  {{"OBJ_Size1", 400}, {"OBJ_FromNodeDepth", 3.0}, {"OBJ_ToNodeDepth", 2.0}});
        inspection =
            project.addInspection(pipe, QStringLiteral("LINESTRING ZM(570030 5830040 37 320,570000 5830000 37 0)"));
    }

    TestProject project {utm32};
    CDomainObjectPointer a;
    CDomainObjectPointer b;
    CDomainObjectPointer pipe;
    CDomainObjectPointer inspection;
};

} // namespace Kx::Test
