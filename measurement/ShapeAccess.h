#pragma once

#include "domain/boundary/CDomainObject.h"
#include "domain/boundary/WktPoint.h"
#include "scene/Debounce.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QVariant>
#include <QVector3D>
#include <QVector>

#include <map>
#include <tuple>

namespace Torvik::View3d {

class InspDomain;

/** Keeps the shapes of scene objects in the project: the one place where a stored text becomes scene coordinates and
 *  the reverse.
 *
 *  A write is compared with what is stored at once, and reaches the database 700 ms after the last change, with the
 * last value. What is still pending when the instance dies is lost. Objects without a record, and records without a
 * shape, end every operation in silence. Every owner has an instance of its own; it holds no object longer than a call,
 * but for those that are written later. Main thread only. */
class KXVIEW3D_EXPORT ShapeAccess : public QObject {
    Q_OBJECT

public:
    /** Tag of the view's own writes of shapes, as notifications tell it. */
    static constexpr int originOfShapes = 5000;

    explicit ShapeAccess(QObject* parent = nullptr);
    ~ShapeAccess() override;

    /** The stored polylines in scene coordinates, in the object's own order; empty when nothing is stored. The first
     * shape that is read ties the scene to the earth and stores the project's coordinate system. A section also gets
     * back its flags and its direction, which becomes upstream if nothing tells it. */
    QVector<QVector<QVector3D>> readPoints(InspDomain* object);
    /** Schedules the shape if it differs from the stored one. A section or node without a position has none to store.
     */
    void writePoints(InspDomain* object);
    /** The same for a shape that grows with every reading of a sensor: what is compared and written is the shape at the
     *  end of the wait. Neither costs more the longer the shape is. */
    void writePointsLater(InspDomain* object);
    /** An object is about to go: what was left for later is done with it now. */
    void takeLeave(const QObject* object);
    /** Schedules that the column becomes null. */
    void clearPoints(InspDomain* object);

private:
    using Record = QSharedPointer<Database::CDomainObject>;

    /** The record of an object's shape; null when the object has none that holds a shape. */
    Record recordOf(const InspDomain* object) const;
    Record getDomainObject(const QString& id) const;
    void initializeSectionWithWktPoints(InspDomain* object, QVector<Database::WktPoint>& points, QString& prefix);
    /** Whether there is something to write, which is pending then. */
    bool compare(InspDomain* object);
    void scheduleSaveToDB(const Record& object, const Record& inspection, const QString& column, const QVariant& value);
    void saveToDB();

    Debounce m_saving;
    /** By record, inspection record (or null) and column. */
    std::map<std::tuple<Record, Record, QString>, QVariant> m_pending;
    /** Whose shape is compared at the end of the wait. */
    QVector<InspDomain*> m_later;
};

} // namespace Torvik::View3d
