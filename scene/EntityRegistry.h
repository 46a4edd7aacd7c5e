#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

namespace Torvik::View3d {

/** Objects by key, with the way back from an object to its keys: one that is being destroyed is taken out without
 *  walking all. Reads like a QHash; owns nothing. A key may hold a null pointer. */
template <typename Entity>
class EntityRegistry {
public:
    using const_iterator = typename QHash<QString, Entity*>::const_iterator;

    /** An entry under the same key is overwritten. */
    void insert(const QString& key, Entity* entity)
    {
        take(key);
        m_entities.insert(key, entity);
        m_keys.insert(entity, key);
    }

    /** Takes the entry out and gives it; null when there is none. */
    Entity* take(const QString& key)
    {
        const auto entry = m_entities.find(key);
        if (entry == m_entities.end())
            return nullptr;
        Entity* const entity = *entry;
        m_entities.erase(entry);
        m_keys.remove(entity, key);
        return entity;
    }

    /** Removes every entry of this object. */
    void removeObject(const QObject* object)
    {
        const auto keys = m_keys.values(object);
        for (const QString& key : keys)
            m_entities.remove(key);
        m_keys.remove(object);
    }

    Entity* value(const QString& key) const { return m_entities.value(key); }
    bool contains(const QString& key) const { return m_entities.contains(key); }
    const_iterator constFind(const QString& key) const { return m_entities.constFind(key); }
    const_iterator constEnd() const { return m_entities.constEnd(); }
    const_iterator begin() const { return m_entities.constBegin(); }
    const_iterator end() const { return m_entities.constEnd(); }
    QList<QString> keys() const { return m_entities.keys(); }
    QList<Entity*> values() const { return m_entities.values(); }
    int size() const { return m_entities.size(); }
    bool isEmpty() const { return m_entities.isEmpty(); }

private:
    QHash<QString, Entity*> m_entities;
    QMultiHash<const QObject*, QString> m_keys;
};

} // namespace Torvik::View3d
