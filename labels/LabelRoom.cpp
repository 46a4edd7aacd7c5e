#include "labels/LabelRoom.h"

#include <QRect>

#include <cmath>

namespace Torvik::View3d {

namespace {

/** A sixth of a row: fine enough to tell a tenth of a short name. */
constexpr double cellPixels = 4.0;

int count(double pixels)
{
    return std::max(1, static_cast<int>(std::ceil(pixels / cellPixels)));
}

int cellOf(double pixel)
{
    return static_cast<int>(std::floor(pixel / cellPixels));
}

} // namespace

LabelRoom::LabelRoom(const QSizeF& screen)
    : m_screen(QPointF(), screen)
    , m_columns(count(screen.width()))
    , m_rows(count(screen.height()))
    , m_taken(m_columns * m_rows, false)
{
}

QRect LabelRoom::cells(const QRectF& label) const
{
    const QRectF seen = label & m_screen;
    if (seen.isEmpty())
        return {};
    return QRect(QPoint(cellOf(seen.left()), cellOf(seen.top())), QPoint(cellOf(seen.right()), cellOf(seen.bottom()))) &
           QRect(0, 0, m_columns, m_rows);
}

int LabelRoom::taken(const QRect& cells) const
{
    int found = 0;
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        for (int column = cells.left(); column <= cells.right(); ++column)
            found += m_taken.at(row * m_columns + column) ? 1 : 0;
    }
    return found;
}

void LabelRoom::mark(const QRect& cells)
{
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        for (int column = cells.left(); column <= cells.right(); ++column)
            m_taken[row * m_columns + column] = true;
    }
}

bool LabelRoom::take(const QRectF& label)
{
    const QRect asked = cells(label);
    if (asked.isEmpty() || taken(asked) > coveredPart * asked.width() * asked.height())
        return false;
    mark(asked);
    return true;
}

void LabelRoom::occupy(const QRectF& label)
{
    mark(cells(label));
}

} // namespace Torvik::View3d
