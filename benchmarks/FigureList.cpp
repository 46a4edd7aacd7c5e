#include "benchmarks/FigureList.h"

#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace Torvik::Bench {

namespace {

const QString nameKey = QStringLiteral("name");
const QString valueKey = QStringLiteral("value");
const QString decimalsKey = QStringLiteral("decimals");
const QString boundKey = QStringLiteral("bound");

bool keeps(const FigureList::Figure& figure)
{
    return !figure.bound || figure.value <= *figure.bound;
}

QString text(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

QString line(const QStringList& cells)
{
    return QStringLiteral("| %1 |\n").arg(cells.join(QStringLiteral(" | ")));
}

QString row(const QString& name, const QVector<QPair<QString, FigureList>>& lists)
{
    QStringList cells {name};
    QString bound = QStringLiteral("-");
    QString verdict;
    for (const auto& list : lists) {
        const auto* const figure = list.second.find(name);
        cells.append(figure ? text(figure->value, figure->decimals) : QStringLiteral("-"));
        if (!figure || !figure->bound)
            continue;
        bound = text(*figure->bound, 1);
        if (!keeps(*figure))
            verdict = QStringLiteral("missed");
        else if (verdict.isEmpty())
            verdict = QStringLiteral("kept");
    }
    return line(cells << bound << verdict);
}

} // namespace

void FigureList::add(const QString& name, double value, int decimals, std::optional<double> bound)
{
    m_figures.append({name, value, decimals, bound});
}

const FigureList::Figure* FigureList::find(const QString& name) const
{
    const auto found =
        std::find_if(m_figures.begin(), m_figures.end(), [&name](const Figure& figure) { return figure.name == name; });
    return found == m_figures.end() ? nullptr : &*found;
}

bool FigureList::allWithinBounds() const
{
    return std::all_of(m_figures.begin(), m_figures.end(), keeps);
}

QJsonArray FigureList::toJson() const
{
    QJsonArray array;
    for (const Figure& figure : m_figures) {
        QJsonObject object {{nameKey, figure.name}, {valueKey, figure.value}, {decimalsKey, figure.decimals}};
        if (figure.bound)
            object.insert(boundKey, *figure.bound);
        array.append(object);
    }
    return array;
}

FigureList FigureList::fromJson(const QJsonArray& array)
{
    FigureList list;
    for (const auto& value : array) {
        const auto object = value.toObject();
        std::optional<double> bound;
        if (object.contains(boundKey))
            bound = object.value(boundKey).toDouble();
        list.add(object.value(nameKey).toString(), object.value(valueKey).toDouble(), object.value(decimalsKey).toInt(),
                 bound);
    }
    return list;
}

QString tableOf(const QString& title, const QVector<QPair<QString, FigureList>>& lists)
{
    QStringList head {title};
    QStringList rule {QStringLiteral("---")};
    QStringList names;
    for (const auto& list : lists) {
        head.append(list.first);
        rule.append(QStringLiteral("---:"));
        for (const auto& figure : list.second.figures()) {
            if (!names.contains(figure.name))
                names.append(figure.name);
        }
    }
    QString table = line(head << QStringLiteral("bound") << QString()) +
                    line(rule << QStringLiteral("---:") << QStringLiteral("---"));
    for (const QString& name : qAsConst(names))
        table += row(name, lists);
    return table;
}

} // namespace Torvik::Bench
