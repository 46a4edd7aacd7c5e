#include "host/domain/ObjectValues.h"

#include <algorithm>
#include <cmath>

namespace Torvik::Database {

namespace {

ColumnLayout::Kind kindOf(const QString& declaredType)
{
    const QString type = declaredType.toUpper();
    if (type.contains(QLatin1String("INT"))) {
        return ColumnLayout::Integer;
    }
    if (type.contains(QLatin1String("CHAR")) || type.contains(QLatin1String("TEXT"))) {
        return ColumnLayout::Text;
    }
    if (type.contains(QLatin1String("REAL")) || type.contains(QLatin1String("DOUB"))) {
        return ColumnLayout::Real;
    }
    return ColumnLayout::Any;
}

/** A number as SQLite keeps it in a numeric column: whole ones as integers, texts that are numbers as these. */
QVariant asNumber(const QVariant& value)
{
    constexpr double largestExact = 2251799813685248.0;
    bool ok = false;
    const qlonglong whole = value.toString().toLongLong(&ok);
    if (ok) {
        return whole;
    }
    const double number = value.toDouble(&ok);
    if (!ok) {
        return value;
    }
    return std::abs(number) < largestExact && std::floor(number) == number ? QVariant(qlonglong(number))
                                                                           : QVariant(number);
}

template <typename Number>
QVariant orUnchanged(Number number, bool ok, const QVariant& value)
{
    return ok ? QVariant(number) : value;
}

} // namespace

void ColumnLayout::addColumn(const QString& name, const QString& declaredType)
{
    m_indexes.insert(name, m_names.size());
    m_names.append(name);
    m_kinds.append(kindOf(declaredType));
}

int ColumnLayout::indexForMemory(const QString& key)
{
    const int index = indexOf(key);
    if (index >= 0) {
        return index;
    }
    m_indexes.insert(key, m_names.size());
    m_names.append(key);
    m_kinds.append(MemoryOnly);
    return m_names.size() - 1;
}

QVariant ColumnLayout::asStored(int index, const QVariant& value) const
{
    if (!value.isValid() || value.isNull()) {
        return {};
    }
    bool ok = false;
    switch (m_kinds[index]) {
    case Text:
        return value.toString();
    case Integer:
    case Any:
        return asNumber(value);
    case Real: {
        const double number = value.toDouble(&ok);
        return orUnchanged(number, ok, value);
    }
    default:
        return value;
    }
}

QVariant ObjectValues::value(int column) const
{
    const auto found = std::lower_bound(m_cells.begin(), m_cells.end(), column,
                                        [](const Cell& cell, int wanted) { return cell.column < wanted; });
    return found != m_cells.end() && found->column == column ? found->value : QVariant();
}

bool ObjectValues::set(int column, const QVariant& value)
{
    const auto found = std::lower_bound(m_cells.begin(), m_cells.end(), column,
                                        [](const Cell& cell, int wanted) { return cell.column < wanted; });
    const bool present = found != m_cells.end() && found->column == column;
    const bool empty = !value.isValid() || value.isNull();
    if (empty) {
        if (present) {
            m_cells.erase(found);
        }
        return present;
    }
    if (!present) {
        m_cells.insert(found, Cell {column, value});
        return true;
    }
    if (found->value.type() == value.type() && found->value == value) {
        return false;
    }
    found->value = value;
    return true;
}

} // namespace Torvik::Database
