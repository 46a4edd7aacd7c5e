#pragma once

#include <QJsonValue>
#include <QString>
#include <QVector>

class QXmlStreamReader;

namespace Torvik::Import {

/** One element of an XML file with all that is in it. Made for elements the size of one object of a network; a file of
 * any size is read object by object. */
class XmlElement {
public:
    QString name; ///< without prefix
    QString text; ///< trimmed
    int line = 0;
    QVector<XmlElement> children;

    /** The first child of that name, or null. */
    const XmlElement* child(const QString& childName) const;
    /** The first element on the way "A/B/C", or null. */
    const XmlElement* find(const QString& path) const;
    /** All elements on the way "A/B/C", where every step may have several. */
    QVector<const XmlElement*> findAll(const QString& path) const;
    /** Text of the first element on the way; empty when there is none. */
    QString value(const QString& path) const;

    /** Leaves become texts, others objects; children of one name become an array. */
    QJsonValue toJson() const;

    /** Reads the element at which the reader stands, up to its end tag. Stops with the reader's error on bad XML, and
     * raises one for elements nested deeper than 64. */
    static XmlElement read(QXmlStreamReader& reader, int depth = 0);
};

} // namespace Torvik::Import
