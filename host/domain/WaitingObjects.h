#pragma once

#include "domain/boundary/CDomainObject.h"
#include "host/domain/SqlConnection.h"

#include <QObject>
#include <QVector>

namespace Torvik::Database {

/** Objects whose changes the database would not take for the moment. Each is here once, with its latest values in
 *  itself, and is tried again until it is stored. Main thread only. */
class WaitingObjects : public QObject {
    Q_OBJECT

public:
    static WaitingObjects& instance();

    /** Writes the object now, or has it wait. The main thread is held up for a moment at most. The error is that of a
     *  write which will not be tried again. */
    StoreStatus write(const CDomainObjectPointer& object, int origin);
    /** The last try before objects go. */
    void storeNow();

private:
    struct Waiting {
        QWeakPointer<CDomainObject> object;
        int origin = 0;
    };

    WaitingObjects();
    void hold(const CDomainObjectPointer& object, int origin, const StoreStatus& cause);
    void tryAll();
    /** Drops the entries of the object, and those whose object has gone. */
    void drop(const CDomainObjectPointer& object);

    QVector<Waiting> m_waiting;
};

} // namespace Torvik::Database
