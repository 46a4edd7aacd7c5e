#include "domain/NodeAdapter.h"

#include "domain/boundary/CColumnNameResolver.h"
#include "domain/boundary/ColumnNames.h"
#include "domain/boundary/Notifications.h"

namespace Torvik::View3d {

NodeAdapter::NodeAdapter(Database::CDomainObjectProxy* proxy, QObject* parent)
    : QObject(parent)
    , m_object(proxy->domainObject())
    , m_proxy(proxy)
{
    m_proxy->setParent(this);
}

QVariant NodeAdapter::value(const QString& key) const
{
    const auto object = m_object.toStrongRef();
    return object ? object->readValue(key) : QVariant();
}

QString NodeAdapter::key() const
{
    return value(Database::NODE_KEY_COLUMN).toString();
}

QString NodeAdapter::id() const
{
    const auto object = m_object.toStrongRef();
    return object ? object->id() : QString();
}

QString NodeAdapter::type() const
{
    return value(QStringLiteral("OBJ_Type")).toString();
}

QVariant NodeAdapter::shape() const
{
    return value(Database::NODE_SHAPE_WKT_COLUMN);
}

QVariant NodeAdapter::depthToInvert() const
{
    return value(QStringLiteral("OBJ_DepthToInvert"));
}

QVariant NodeAdapter::diameter() const
{
    const auto object = m_object.toStrongRef();
    return object ? Database::CColumnNameResolver::sizeToProjectUnit(object, QStringLiteral("OBJ_Size1")) : QVariant();
}

QVariant NodeAdapter::offset() const
{
    return value(QStringLiteral("OBJ_Offset"));
}

} // namespace Torvik::View3d
