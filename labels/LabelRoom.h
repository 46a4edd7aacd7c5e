#pragma once

#include <QRectF>
#include <QSizeF>
#include <QVector>

namespace Torvik::View3d {

/** Hands out the room on the screen to labels, first come, first served, so that a picture of a whole town is not a
 * heap of labels: one that others would cover by more than a tenth gets none until the view is nearer. */
class LabelRoom {
public:
    explicit LabelRoom(const QSizeF& screen);

    bool isOnScreen(const QRectF& label) const { return m_screen.intersects(label); }
    /** Whether the label gets its place, which is then taken. What lies off the screen gets none. */
    bool take(const QRectF& label);
    /** The place is taken, whatever is there. */
    void occupy(const QRectF& label);

    static constexpr double coveredPart = 0.1;

private:
    QRect cells(const QRectF& label) const;
    int taken(const QRect& cells) const;
    void mark(const QRect& cells);

    QRectF m_screen;
    int m_columns;
    int m_rows;
    QVector<bool> m_taken;
};

} // namespace Torvik::View3d
