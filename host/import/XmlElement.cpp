#include "host/import/XmlElement.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QXmlStreamReader>

#include <algorithm>

namespace Torvik::Import {

namespace {
constexpr int MaxDepth = 64;
}

const XmlElement* XmlElement::child(const QString& childName) const
{
    const auto it = std::find_if(children.cbegin(), children.cend(),
                                 [&](const XmlElement& element) { return element.name == childName; });
    return it == children.cend() ? nullptr : &*it;
}

const XmlElement* XmlElement::find(const QString& path) const
{
    const XmlElement* element = this;
    const QStringList steps = path.split(QLatin1Char('/'));
    for (const QString& step : steps) {
        element = element->child(step);
        if (!element)
            return nullptr;
    }
    return element;
}

QVector<const XmlElement*> XmlElement::findAll(const QString& path) const
{
    QVector<const XmlElement*> found {this};
    const QStringList steps = path.split(QLatin1Char('/'));
    for (const QString& step : steps) {
        QVector<const XmlElement*> next;
        for (const XmlElement* element : qAsConst(found)) {
            for (const XmlElement& inner : element->children) {
                if (inner.name == step)
                    next.append(&inner);
            }
        }
        found = next;
    }
    return found;
}

QString XmlElement::value(const QString& path) const
{
    const XmlElement* element = find(path);
    return element ? element->text : QString();
}

QJsonValue XmlElement::toJson() const
{
    if (children.isEmpty())
        return text;
    QJsonObject object;
    for (const XmlElement& inner : children) {
        const QJsonValue value = inner.toJson();
        if (!object.contains(inner.name)) {
            object.insert(inner.name, value);
            continue;
        }
        const QJsonValue present = object.value(inner.name);
        QJsonArray list = present.isArray() ? present.toArray() : QJsonArray {present};
        list.append(value);
        object.insert(inner.name, list);
    }
    return object;
}

XmlElement XmlElement::read(QXmlStreamReader& reader, int depth)
{
    XmlElement element;
    element.name = reader.name().toString();
    element.line = int(reader.lineNumber());
    if (depth > MaxDepth) {
        reader.raiseError(QStringLiteral("elements are nested too deep"));
        return element;
    }
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            element.children.append(read(reader, depth + 1));
            break;
        case QXmlStreamReader::Characters:
            element.text += reader.text();
            break;
        case QXmlStreamReader::EndElement:
            element.text = element.text.trimmed();
            return element;
        default:
            break;
        }
    }
    return element;
}

} // namespace Torvik::Import
