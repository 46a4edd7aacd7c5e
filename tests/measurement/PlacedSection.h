#pragma once

#include "measurement/ShapeProject.h"

#include "geo/GeoTestSystems.h"

#include <QtTest>

#include <memory>

inline const QString shapeColumn = QStringLiteral("INS_Shape_WKT");
/** Ends where the scene begins: (0,0,0), then 10 m north and 5 m east, 1 m down. */
inline const QString threePoints =
    QStringLiteral("LINESTRING ZM(500000 5500000 100 132,500000 5500010 100 0,500005 5500010 99 0)");

inline void tieScene()
{
    QString wkt = wktOf(25832);
    Torvik::View3d::GdalGeoProjector::instance()->init(Torvik::Database::WktPoint("500000", "5500000", "100", "0"),
                                                       wkt);
}

/** A section with a position and a shape of two points, in a scene that is tied. */
inline std::unique_ptr<ShapedSection> placedSection()
{
    auto section = std::make_unique<ShapedSection>();
    section->setTransformFlags(4);
    section->setInspectionUpstream();
    section->shape = {{{0, 0, 0}, {-3, 2, 7}}};
    return section;
}

inline bool waitForWrite(const WriteListener& listener, int count)
{
    return QTest::qWaitFor([&] { return listener.writes.size() >= count; }, 3000);
}
