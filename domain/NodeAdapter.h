#pragma once

#include "domain/boundary/CDomainObject.h"

#include <QObject>

namespace Torvik::Database {
class CDomainObjectProxy;
}

namespace Torvik::View3d {

/** Gives the values of a node's record names and types. An object that has gone reads as empty. */
class NodeAdapter : public QObject {
    Q_OBJECT

public:
    /** Takes over the proxy. */
    NodeAdapter(Database::CDomainObjectProxy* proxy, QObject* parent);

    QString key() const;
    QString id() const;
    /** "CON", "BLD", "NOD" or any other code, which is a manhole. */
    QString type() const;
    /** WKT point. */
    QVariant shape() const;
    /** Metres from the node's position down to its invert. */
    QVariant depthToInvert() const;
    /** In the project's unit of length. */
    QVariant diameter() const;
    QVariant offset() const;
    QWeakPointer<Database::CDomainObject> getDomainObject() const { return m_object; }
    Database::CDomainObjectProxy* getProxy() const { return m_proxy; }

private:
    QVariant value(const QString& key) const;

    QWeakPointer<Database::CDomainObject> m_object;
    Database::CDomainObjectProxy* m_proxy;
};

} // namespace Torvik::View3d
