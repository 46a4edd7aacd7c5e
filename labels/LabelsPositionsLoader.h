#pragma once

#include "domain/boundary/CDomainObject.h"
#include "labels/LabelPositions.h"

#include <QObject>

#include <optional>

namespace Torvik::View3d {

/** Where the user has put labels, for the project that is open: in memory while it is, in labelPosition.json in its
 *  folder from one opening to the next. A label without an entry stands above its object.
 *
 *  The file is written when the project is left, and only if a label was moved, so that one that could not be read
 *  stays as it is until then. No failure of a file is told: what cannot be read means no positions, what cannot be
 *  written loses the changes. One for the process; main thread only. */
class LabelsPositionsLoader : public QObject {
    Q_OBJECT

public:
    static LabelsPositionsLoader& instance();

    /** Empty if there is no entry. */
    std::optional<QVector3D> getLabelPosition(const QString& key) const;
    /** Sets the entry, new or old. With the first one the active project's file becomes the one that is written, where
     *  that was never read: what it holds of other labels stays. Of a label that goes after its project was left it
     * comes too late: a label tells each move when it is done. */
    void storeLabelPosition(const QString& key, QVector3D position);
    /** The label has been put back above its object. */
    void removeLabelPosition(const QString& key);
    bool isEmpty() const { return m_positions.isEmpty(); }
    /** Every label returns above its object, and the file of the open project is deleted at once. */
    void resetLabelsPositions();

    /** Adds what the file of the object's project holds. Nothing for a null object or a project that is not 3D. */
    void readLabelsPositionsForProject(const QSharedPointer<Database::CDomainObject>& project);
    /** Writes the file if a label was moved, and forgets the project. */
    void saveLabelsPositionsForPreviousProject();

signals:
    /** Labels look their positions up again. */
    void labelsPositionsReset();

private:
    LabelsPositionsLoader() = default;
    void takeUpActiveProject();

    LabelPositions m_positions;
    QString m_filePath;   ///< empty while no 3D project is open
    bool m_moved = false; ///< the positions are no longer those of the file
};

} // namespace Torvik::View3d
