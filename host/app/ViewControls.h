#pragma once

#include <QRectF>
#include <QVector>

class QQuickItem;

namespace Torvik::Viewer::ViewControls {

/** What of the view's own buttons and panels is shown at present, in pixels of the view: those that stay, not the
 *  messages that come and go. */
QVector<QRectF> shownOn(QQuickItem* view);

} // namespace Torvik::Viewer::ViewControls
