#include "architecture/SourceRules.h"

#include <QRegularExpression>

namespace SourceRules {

namespace {

QStringList meaningfulLines(const QString& text)
{
    QStringList lines;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const QString trimmed = line.simplified();
        if (!trimmed.isEmpty() && !trimmed.startsWith(QLatin1Char('#')))
            lines << trimmed;
    }
    return lines;
}

QStringList includesBetween(const QString& source, const QString& open, const QString& close)
{
    const QRegularExpression form(QStringLiteral("^\\s*#\\s*include\\s*%1([^%2]+)%2").arg(open, close),
                                  QRegularExpression::MultilineOption);
    QStringList found;
    auto matches = form.globalMatch(source);
    while (matches.hasNext())
        found << matches.next().captured(1);
    return found;
}

QString roomOf(const QString& path)
{
    const QStringList parts = path.split(QLatin1Char('/'));
    if (parts.size() > 2 && (parts[0] == QLatin1String("host") || parts[1] == QLatin1String("boundary")))
        return parts[0] + QLatin1Char('/') + parts[1];
    return parts.value(0);
}

} // namespace

bool operator==(const Include& a, const Include& b)
{
    return a.from == b.from && a.to == b.to;
}

int LayerTable::layerOf(const QString& path) const
{
    for (int i = rules.size() - 1; i >= 0; --i) {
        const QString form = QRegularExpression::wildcardToRegularExpression(rules[i].first);
        if (QRegularExpression(form).match(path).hasMatch())
            return rules[i].second;
    }
    return 0;
}

LayerTable parseLayers(const QString& text)
{
    LayerTable table;
    for (const QString& line : meaningfulLines(text))
        table.rules.append({line.section(QLatin1Char(' '), 1), line.section(QLatin1Char(' '), 0, 0).toInt()});
    return table;
}

QMap<QString, QString> parseAccepted(const QString& text, int wordsOfKey)
{
    QMap<QString, QString> accepted;
    for (const QString& line : meaningfulLines(text)) {
        const QString key = line.section(QLatin1Char(' '), 0, wordsOfKey - 1);
        accepted.insert(key, line.section(QLatin1Char(' '), wordsOfKey));
    }
    return accepted;
}

QStringList quotedIncludes(const QString& source)
{
    return includesBetween(source, QStringLiteral("\""), QStringLiteral("\""));
}

QStringList systemIncludes(const QString& source)
{
    return includesBetween(source, QStringLiteral("<"), QStringLiteral(">"));
}

bool goesUp(const Include& include, const LayerTable& layers)
{
    const int from = layers.layerOf(include.from);
    const int to = layers.layerOf(include.to);
    return from > 0 && to > from;
}

bool crossesRooms(const Include& include)
{
    const QString from = roomOf(include.from);
    const QString to = roomOf(include.to);
    const bool fromHost = from.startsWith(QLatin1String("host/"));
    const bool toHost = to.startsWith(QLatin1String("host/"));
    const bool fromTests = from == QLatin1String("tests") || from == QLatin1String("benchmarks");
    if (!fromHost && !fromTests && toHost)
        return true;
    if (from == QLatin1String("host/domain"))
        return to != from && to != QLatin1String("domain/boundary");
    if (from == QLatin1String("host/drawing"))
        return to != from && to != QLatin1String("domain/boundary");
    if (from == QLatin1String("host/import"))
        return to != from && to != QLatin1String("domain/boundary") && to != QLatin1String("host/domain");
    if (from == QLatin1String("domain/boundary"))
        return to != from;
    return false;
}

} // namespace SourceRules
