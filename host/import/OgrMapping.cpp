#include "host/import/OgrMapping.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Torvik::Import {

namespace {

const QHash<QString, double>& sizeUnits()
{
    static const QHash<QString, double> units {{QStringLiteral("mm"), 1.0},
                                               {QStringLiteral("cm"), 10.0},
                                               {QStringLiteral("m"), 1000.0},
                                               {QStringLiteral("in"), 25.4},
                                               {QStringLiteral("ft"), 304.8}};
    return units;
}

QString joined(QStringList names)
{
    names.sort();
    return names.join(QStringLiteral(", "));
}

/** Reads one layer; leaves the first mistake in `error`. */
class LayerParser {
public:
    LayerParser(const QString& role, const QStringList& columns, const QStringList& kinds, QString& error)
        : m_role(role)
        , m_columns(columns)
        , m_kinds(kinds)
        , m_error(error)
    {
    }

    MappedLayer parse(const QJsonObject& object)
    {
        MappedLayer layer;
        for (auto it = object.begin(); it != object.end() && m_error.isEmpty(); ++it) {
            if (m_columns.contains(it.key()))
                layer.columns.insert(it.key(), column(it.key(), it.value()));
            else
                setting(layer, it.key(), it.value());
        }
        if (m_error.isEmpty() && !layer.columns.contains(QStringLiteral("key")))
            m_error = QStringLiteral("%1: \"key\" is missing").arg(m_role);
        return layer;
    }

private:
    MappedColumn column(const QString& name, const QJsonValue& value)
    {
        MappedColumn result;
        if (value.isString()) {
            result.column = value.toString();
            return result;
        }
        const QJsonObject object = value.toObject();
        result.column = object.value(QStringLiteral("column")).toString();
        result.lookupLayer = object.value(QStringLiteral("layer")).toString();
        result.lookupKey = object.value(QStringLiteral("key")).toString();
        result.lookupValue = object.value(QStringLiteral("value")).toString();
        if (result.column.isEmpty() || result.lookupLayer.isEmpty() || result.lookupKey.isEmpty() ||
            result.lookupValue.isEmpty())
            m_error =
                QStringLiteral("%1: \"%2\" must be the name of a column, or an object with \"column\", \"layer\", "
                               "\"key\" and \"value\"")
                    .arg(m_role, name);
        return result;
    }

    void setting(MappedLayer& layer, const QString& name, const QJsonValue& value)
    {
        if (name == QLatin1String("layer")) {
            layer.layer = value.toString();
        } else if (name == QLatin1String("where")) {
            layer.where = value.toString();
        } else if (name == QLatin1String("kind")) {
            layer.kindColumn = value.toString();
        } else if (name == QLatin1String("defaultKind")) {
            layer.defaultKind = kind(value.toString());
        } else if (name == QLatin1String("kinds")) {
            const QJsonObject kinds = value.toObject();
            for (auto it = kinds.begin(); it != kinds.end(); ++it)
                layer.kinds.insert(it.key(), kind(it.value().toString()));
        } else if (name == QLatin1String("height")) {
            layer.height = value.toString();
            if (layer.height != QLatin1String("cover") && layer.height != QLatin1String("invert"))
                m_error = QStringLiteral("%1: \"height\" is \"cover\" or \"invert\"").arg(m_role);
        } else if (name == QLatin1String("sizeUnit")) {
            if (!sizeUnits().contains(value.toString()))
                m_error = QStringLiteral("%1: \"sizeUnit\" is one of %2").arg(m_role, joined(sizeUnits().keys()));
            layer.sizeFactor = sizeUnits().value(value.toString(), 1.0);
        } else if (!name.startsWith(QLatin1Char('#'))) {
            m_error = QStringLiteral("%1: unknown name \"%2\"; known are %3")
                          .arg(m_role, name,
                               joined(m_columns + QStringList {QStringLiteral("layer"), QStringLiteral("where"),
                                                               QStringLiteral("kind"), QStringLiteral("kinds"),
                                                               QStringLiteral("defaultKind"), QStringLiteral("height"),
                                                               QStringLiteral("sizeUnit")}));
        }
    }

    QString kind(const QString& name)
    {
        if (!m_kinds.contains(name))
            m_error = QStringLiteral("%1: unknown kind \"%2\"; known are %3").arg(m_role, name, joined(m_kinds));
        return name;
    }

    QString m_role;
    QStringList m_columns;
    QStringList m_kinds;
    QString& m_error;
};

QVector<MappedLayer> layersOf(const QJsonValue& value, LayerParser parser)
{
    QVector<MappedLayer> layers;
    const QJsonArray list = value.isArray() ? value.toArray() : QJsonArray {value};
    for (const QJsonValue& entry : list)
        layers.append(parser.parse(entry.toObject()));
    return layers;
}

} // namespace

QStringList OgrMapping::nodeColumns()
{
    return {QStringLiteral("key"),    QStringLiteral("id"),    QStringLiteral("x"),
            QStringLiteral("y"),      QStringLiteral("z"),     QStringLiteral("cover"),
            QStringLiteral("invert"), QStringLiteral("depth"), QStringLiteral("diameter")};
}

QStringList OgrMapping::pipeColumns()
{
    return {QStringLiteral("key"),       QStringLiteral("from"),    QStringLiteral("to"),
            QStringLiteral("diameter"),  QStringLiteral("width"),   QStringLiteral("profile"),
            QStringLiteral("fromDepth"), QStringLiteral("toDepth"), QStringLiteral("fromInvert"),
            QStringLiteral("toInvert"),  QStringLiteral("length"),  QStringLiteral("offset"),
            QStringLiteral("section")};
}

std::optional<OgrMapping> OgrMapping::parse(const QByteArray& json, QString* error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    QString mistake;
    OgrMapping mapping;
    if (parseError.error != QJsonParseError::NoError) {
        const int line = json.left(parseError.offset).count('\n') + 1;
        mistake = QStringLiteral("line %1: %2").arg(line).arg(parseError.errorString());
    } else if (!document.isObject()) {
        mistake = QStringLiteral("the file must hold one JSON object");
    }
    const QJsonObject root = document.object();
    for (auto it = root.begin(); it != root.end() && mistake.isEmpty(); ++it) {
        if (it.key() == QLatin1String("tolerance")) {
            mapping.tolerance = it.value().toDouble(-1.0);
            if (mapping.tolerance <= 0.0)
                mistake = QStringLiteral("\"tolerance\" must be a positive number of metres");
        } else if (it.key() == QLatin1String("crs")) {
            mapping.crs = it.value().toString();
        } else if (it.key() == QLatin1String("nodes")) {
            const QStringList kinds {QStringLiteral("manhole"), QStringLiteral("connection"),
                                     QStringLiteral("building")};
            mapping.nodes = layersOf(it.value(), LayerParser(it.key(), nodeColumns(), kinds, mistake));
        } else if (it.key() == QLatin1String("pipes")) {
            const QStringList kinds {QStringLiteral("section"), QStringLiteral("lateral")};
            mapping.pipes = layersOf(it.value(), LayerParser(it.key(), pipeColumns(), kinds, mistake));
        } else if (!it.key().startsWith(QLatin1Char('#'))) {
            mistake = QStringLiteral("unknown name \"%1\"; known are crs, nodes, pipes, tolerance").arg(it.key());
        }
    }
    if (mistake.isEmpty() && mapping.nodes.isEmpty() && mapping.pipes.isEmpty())
        mistake = QStringLiteral("neither \"nodes\" nor \"pipes\" is there");
    if (mistake.isEmpty())
        return mapping;
    if (error)
        *error = mistake;
    return std::nullopt;
}

} // namespace Torvik::Import
