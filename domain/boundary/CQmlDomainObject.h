#pragma once

#include "domain/boundary/CDomainObject.h"

#include <QObject>
#include <QVariantList>

namespace Torvik::QmlWrapper {

/** Hands a domain object to QML. A copyable value; holds the object alive. */
class CQmlDomainObject {
    Q_GADGET
    Q_PROPERTY(bool valid READ isValid CONSTANT)

public:
    CQmlDomainObject() = default;
    explicit CQmlDomainObject(const CDomainObjectPointer& object);

    /** True when it holds an object that still stands for a row. */
    bool isValid() const;
    Q_INVOKABLE QString id() const;
    CDomainObjectPointer object() const { return m_object; }
    /** 0 without an object. */
    Q_INVOKABLE int objectType() const;

    /** Of an inspection; an invalid wrapper for anything else. */
    Q_INVOKABLE Torvik::QmlWrapper::CQmlDomainObject getStartNode() const;
    /** The name that the user sees. */
    Q_INVOKABLE QString queryName() const;
    Q_INVOKABLE QString queryTemplateId() const;

    QVariantList queryAddressDetails() const;
    QVariantList queryAddressDetailsOfStartingNode() const;

private:
    CDomainObjectPointer m_object;
};

} // namespace Torvik::QmlWrapper

Q_DECLARE_METATYPE(Torvik::QmlWrapper::CQmlDomainObject)
