#pragma once

#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QVector>

#include <optional>

namespace Torvik::Bench {

/** Named figures of one measurement in the order in which they were taken, some with a bound that they must not exceed.
 */
class FigureList {
public:
    struct Figure {
        QString name;
        double value = 0.0;
        int decimals = 0;
        std::optional<double> bound;
    };

    void add(const QString& name, double value, int decimals, std::optional<double> bound = {});
    const QVector<Figure>& figures() const { return m_figures; }
    const Figure* find(const QString& name) const;
    bool allWithinBounds() const;

    QJsonArray toJson() const;
    static FigureList fromJson(const QJsonArray& array);

private:
    QVector<Figure> m_figures;
};

/** Markdown: the lists side by side, each under its title, with the bounds and whether all keep them. */
QString tableOf(const QString& title, const QVector<QPair<QString, FigureList>>& lists);

} // namespace Torvik::Bench
