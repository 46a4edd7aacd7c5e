#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>
#include <vector>

namespace Torvik::Database {

/** Columns of one table, shared by all objects of it. A key that is no column gets an index too, for values that live
 * in memory only. */
class ColumnLayout {
public:
    enum Kind : quint8 { Text, Integer, Real, Any, MemoryOnly };

    void addColumn(const QString& name, const QString& declaredType);
    /** -1 for an unknown key. */
    int indexOf(const QString& key) const { return m_indexes.value(key, -1); }
    int indexForMemory(const QString& key);
    int count() const { return m_names.size(); }
    const QString& name(int index) const { return m_names[index]; }
    bool isStored(int index) const { return m_kinds[index] != MemoryOnly; }
    /** The value as the column will give it back once it has been stored and read. */
    QVariant asStored(int index, const QVariant& value) const;

private:
    QVector<QString> m_names;
    QVector<Kind> m_kinds;
    QHash<QString, int> m_indexes;
};

/** Values of one object by column; empty columns take no room. */
class ObjectValues {
public:
    QVariant value(int column) const;
    /** True when the value differs from the one before. */
    bool set(int column, const QVariant& value);

private:
    struct Cell {
        int column;
        QVariant value;
    };
    std::vector<Cell> m_cells; // ascending by column
};

} // namespace Torvik::Database
