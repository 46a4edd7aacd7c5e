#include "host/app/ViewControls.h"

#include <QQuickItem>
#include <QStringList>

#include <algorithm>

namespace Torvik::Viewer::ViewControls {

namespace {

const QStringList names {QStringLiteral("compassButton"), QStringLiteral("controlRow"), QStringLiteral("zoomInButton"),
                         QStringLiteral("zoomOutButton"), QStringLiteral("view3dMenu"), QStringLiteral("mapNotice"),
                         QStringLiteral("gridScaleInfo")};

constexpr double widestScale = 160;

/** Rows are wider than what they hold. */
QRectF placeOf(QQuickItem* control, QQuickItem* view)
{
    QRectF place;
    for (QQuickItem* part : control->childItems()) {
        if (part->isVisible() && part->width() > 0 && part->height() > 0)
            place |= part->mapRectToItem(view, {0, 0, part->width(), part->height()});
    }
    return place;
}

void collect(QQuickItem* item, QQuickItem* view, QVector<QRectF>& places)
{
    for (QQuickItem* child : item->childItems()) {
        if (!child->isVisible() || child->opacity() <= 0)
            continue;
        if (!names.contains(child->objectName())) {
            collect(child, view, places);
            continue;
        }
        QRectF place = placeOf(child, view);
        // The bar of the scale grows and shrinks with the distance.
        if (child->objectName() == names.last())
            place.setWidth(std::max(place.width(), widestScale));
        if (!place.isEmpty())
            places << place;
    }
}

} // namespace

QVector<QRectF> shownOn(QQuickItem* view)
{
    QVector<QRectF> places;
    if (view)
        collect(view, view, places);
    return places;
}

} // namespace Torvik::Viewer::ViewControls
