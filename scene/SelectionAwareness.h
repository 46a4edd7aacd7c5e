#pragma once

#include "scene/KxView3dExport.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>

namespace Torvik::View3d {

/** Which objects are selected, by guid and in the order of their selection; the last one is the current object.
 *
 *  A tap on an object reaches the view twice: as a pick of the object and as a tap on the scene, which would deselect.
 *  For 350 ms after a selection selectionInProgress() tells that this tap is still the one that selected. Main thread
 *  only. */
class KXVIEW3D_EXPORT SelectionAwareness : public QObject {
    Q_OBJECT

public:
    static SelectionAwareness& instance();

    QList<QString>& selectedGuids() { return m_selectedGuids; }
    bool onlyOneSelected() const { return m_selectedGuids.size() == 1; }
    bool nothingSelected() const { return m_selectedGuids.isEmpty(); }
    bool selectionInProgress() const;
    bool isSelected(const QString& guid) const { return m_selectedGuids.contains(guid); }
    /** Empty when nothing is selected. */
    QString lastSelected() const;

    /** The guid becomes the only selected one; nothing when it is already. */
    void selectOne(const QString& guid);
    /** The guid becomes the last of the list. */
    void selectNext(const QString& guid);
    /** Nothing while a selection is in progress, unless forced. */
    void deselect(const QString& guid, bool force);
    /** Leaves a selection that is in progress in progress. */
    void deselectAll() { m_selectedGuids.clear(); }

private:
    SelectionAwareness();

    static QList<QString> m_selectedGuids;
    QElapsedTimer m_sinceSelection;
};

} // namespace Torvik::View3d
