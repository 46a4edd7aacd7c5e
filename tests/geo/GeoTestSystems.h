#pragma once

#include <QString>

#include <cpl_conv.h>
#include <ogr_spatialref.h>

/** WKT of a coordinate system, as GDAL writes it. */
inline QString wktOf(int epsgCode)
{
    OGRSpatialReference system;
    if (system.importFromEPSG(epsgCode) != OGRERR_NONE)
        return {};
    char* text = nullptr;
    system.exportToWkt(&text);
    const QString wkt = QString::fromUtf8(text);
    CPLFree(text);
    return wkt;
}
