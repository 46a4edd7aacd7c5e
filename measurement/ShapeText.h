#pragma once

#include "domain/boundary/WktPoint.h"

#include <QString>
#include <QVector>

/** How a shape stands in its column, as functions of values.
 *
 *  A shape is one WKT text a polyline, joined to a multi-shape. The m value of the first stored point of each polyline
 * is the flags word: the source of the position (TransformFlags, bits up to 64) and, for a section, the direction of
 *  inspection (InspectionDir, bits 128 and 256). A section inspected downstream is stored from its far end. */
namespace Torvik::View3d::ShapeText {

/** The flags word of the first point, without what stands behind its decimal point; 0 where there is none. */
int flagsWord(const QVector<Database::WktPoint>& points);

/** The flags word to store for a section: the direction at the first writing wins over the present one. */
int flagsWordOfSection(int transformFlags, int firstDirection, int direction);

QVector<Database::WktPoint> reversed(QVector<Database::WktPoint> points);

/** Whether two column texts hold the same shape: as many polylines of as many points, the same flags words, and every
 *  ordinate within what reading a shape into the scene and writing it again may change (in the unit of the stored
 *  system): half a millimetre for a point, half a centimetre for a chain, whose lengths are whole centimetres. A shape
 *  that nothing has moved must stay as it was measured. */
bool sameShape(const QString& stored, const QString& text);

/** Collects the texts of an object's polylines. */
class Writer {
public:
    explicit Writer(const QString& prefix);

    /** Adds a polyline in the order in which it is stored; its first point gets the flags word. A polyline that gives
     * the text "EMPTY" is left out. */
    void add(QVector<Database::WktPoint> points, int flags);
    /** The column's text. */
    QString text() const;

private:
    QString m_prefix;
    QVector<QString> m_shapes;
};

} // namespace Torvik::View3d::ShapeText
