#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

namespace Torvik::Bench {

/** Puts the figures of several projects side by side, with their ratios and whether these keep their bounds. */
class ResultTable {
public:
    /** In growing order of pipes for each kind of stage. */
    void add(int pipes, bool headless, const QJsonObject& figures);

    /** Markdown. */
    QString text() const;
    bool allWithinBounds() const;

private:
    struct Row {
        int pipes = 0;
        bool headless = false;
        QJsonObject figures;
    };
    struct Ratio {
        QString name;
        double value = 0.0;
        double bound = 0.0;
    };

    QString figureTable() const;
    QVector<Ratio> ratios() const;

    QVector<Row> m_rows;
};

} // namespace Torvik::Bench
