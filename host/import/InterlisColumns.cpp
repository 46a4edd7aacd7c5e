#include "host/import/InterlisColumns.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QXmlStreamReader>

namespace Torvik::Import::InterlisColumns {

namespace {

struct Class {
    QString name;
    int firstObject = 0; ///< where its first object begins in the text
    QString attributes;
    QSet<QString> known;
};

/** Start of the tag that the reader has just read. */
int tagStart(const QString& text, const QXmlStreamReader& xml)
{
    return text.lastIndexOf(QLatin1Char('<'), int(xml.characterOffset()) - 1);
}

void readObject(const QString& text, QXmlStreamReader& xml, Class& object)
{
    while (xml.readNextStartElement()) {
        const QString name = xml.qualifiedName().toString();
        const int start = tagStart(text, xml);
        xml.skipCurrentElement();
        if (object.known.contains(name))
            continue;
        object.known.insert(name);
        object.attributes += text.midRef(start, int(xml.characterOffset()) - start);
    }
}

} // namespace

QByteArray withAllColumns(const QByteArray& transfer)
{
    const QString text = QString::fromUtf8(transfer);
    QXmlStreamReader xml(text);
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("TRANSFER"))
        return {};
    QHash<QString, Class> classes;
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("DATASECTION")) {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {     // baskets
            while (xml.readNextStartElement()) { // objects
                Class& object = classes[xml.qualifiedName().toString()];
                if (object.name.isEmpty()) {
                    object.name = xml.qualifiedName().toString();
                    object.firstObject = tagStart(text, xml);
                }
                readObject(text, xml, object);
            }
        }
    }
    if (xml.hasError() || classes.isEmpty())
        return {};
    QMap<int, const Class*> byPlace;
    for (const Class& object : qAsConst(classes))
        byPlace.insert(object.firstObject, &object);
    QString result;
    int done = 0;
    for (const Class* object : qAsConst(byPlace)) {
        result += text.midRef(done, object->firstObject - done);
        result += QStringLiteral("<%1 TID=\"%2\">").arg(object->name, PatternTid) + object->attributes +
                  QStringLiteral("</%1>").arg(object->name);
        done = object->firstObject;
    }
    result += text.midRef(done);
    return result.toUtf8();
}

} // namespace Torvik::Import::InterlisColumns
