#include "benchmarks/ResultTable.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace Torvik::Bench {

namespace {

/** Ten times the pipes may cost twelve times as much, five times the pipes six times. */
constexpr double growthPerTenfold = 12.0;
constexpr double growthPerFivefold = 6.0;
constexpr double openingBound = 3.0;
constexpr double closingBound = 1.5;

struct Column {
    const char* key;
    const char* title;
    int decimals;
};

const QVector<Column> columns {
    {"readMs", "read database, ms", 0},
    {"openMs", "open, ms", 0},
    {"bareCreateMs", "bare create, ms", 0},
    {"shownMs", "open and show, ms", 0},
    {"bareShownMs", "bare create and show, ms", 0},
    {"closeMs", "close, ms", 0},
    {"bareDeleteMs", "bare delete in batches, ms", 0},
    {"bareDeleteAtOnceMs", "bare delete at once, ms", 0},
    {"openWallMs", "open, ms on the clock", 0},
    {"shownWallMs", "open and show, ms on the clock", 0},
    {"closeWallMs", "close, ms on the clock", 0},
    {"rssKbPerPipe", "memory a pipe, KB", 0},
    {"qtNodes", "Qt 3D nodes", 0},
    {"orbitMs", "frame while orbiting, ms", 1},
    {"idleFrames", "window frames in an idle second", 0},
    {"idleDrawings", "3D drawings in an idle second", 0},
};

QString stageName(bool headless)
{
    return headless ? QStringLiteral("none") : QStringLiteral("window");
}

QString cell(const QJsonObject& figures, const Column& column)
{
    const auto value = figures.value(QLatin1String(column.key));
    return value.isDouble() ? QString::number(value.toDouble(), 'f', column.decimals) : QStringLiteral("-");
}

QString line(const QStringList& cells)
{
    return QStringLiteral("| %1 |\n").arg(cells.join(QStringLiteral(" | ")));
}

} // namespace

void ResultTable::add(int pipes, bool headless, const QJsonObject& figures)
{
    m_rows.append({pipes, headless, figures});
}

QString ResultTable::figureTable() const
{
    QStringList head {QStringLiteral("pipes")};
    QStringList stages {QStringLiteral("renderer")};
    QStringList rule {QStringLiteral("---")};
    for (const Row& row : m_rows) {
        head.append(QString::number(row.pipes));
        stages.append(stageName(row.headless));
        rule.append(QStringLiteral("---:"));
    }
    QString text = line(head) + line(rule) + line(stages);
    for (const Column& column : columns) {
        QStringList cells {QLatin1String(column.title)};
        for (const Row& row : m_rows)
            cells.append(cell(row.figures, column));
        text += line(cells);
    }
    return text;
}

QVector<ResultTable::Ratio> ResultTable::ratios() const
{
    QVector<Ratio> ratios;
    const auto add = [&ratios](const QString& name, const QJsonValue& above, const QJsonValue& below, double bound) {
        if (above.isDouble() && below.toDouble() > 0.0)
            ratios.append({name, above.toDouble() / below.toDouble(), bound});
    };
    for (const bool headless : {false, true}) {
        const Row* previous = nullptr;
        for (const Row& row : m_rows) {
            if (row.headless != headless)
                continue;
            const QString stage = QStringLiteral("%1 pipes, renderer: %2").arg(row.pipes).arg(stageName(headless));
            const auto figure = [&row](const char* key) { return row.figures.value(QLatin1String(key)); };
            if (previous) {
                const bool tenfold = row.pipes >= 10 * previous->pipes;
                add(QStringLiteral("opening %1 against %2").arg(stage).arg(previous->pipes), figure("openMs"),
                    previous->figures.value(QLatin1String("openMs")), tenfold ? growthPerTenfold : growthPerFivefold);
            }
            add(QStringLiteral("opening %1 against bare entities").arg(stage), figure("openMs"), figure("bareCreateMs"),
                openingBound);
            add(QStringLiteral("closing %1 against bare entities in batches").arg(stage), figure("closeMs"),
                figure("bareDeleteMs"), closingBound);
            add(QStringLiteral("closing %1 against bare entities at once").arg(stage), figure("closeMs"),
                figure("bareDeleteAtOnceMs"), closingBound);
            add(QStringLiteral("3D drawings idle, %1").arg(stage), figure("idleDrawings"), 1.0, 0.0);
            previous = &row;
        }
    }
    return ratios;
}

QString ResultTable::text() const
{
    QString text = figureTable() + QLatin1Char('\n') +
                   line({QStringLiteral("ratio"), QStringLiteral("value"), QStringLiteral("bound"), QString()}) +
                   line({QStringLiteral("---"), QStringLiteral("---:"), QStringLiteral("---:"), QStringLiteral("---")});
    const auto all = ratios();
    for (const Ratio& ratio : all)
        text += line({ratio.name, QString::number(ratio.value, 'f', 2), QString::number(ratio.bound, 'f', 1),
                      ratio.value > ratio.bound ? QStringLiteral("missed") : QStringLiteral("kept")});
    return text;
}

bool ResultTable::allWithinBounds() const
{
    const auto all = ratios();
    return std::all_of(all.begin(), all.end(), [](const Ratio& ratio) { return ratio.value <= ratio.bound; });
}

} // namespace Torvik::Bench
