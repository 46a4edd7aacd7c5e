#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

/** The project's rules on who may include whom, as functions of texts. */
namespace SourceRules {

/** Patterns with their layers; the last that matches counts. */
struct LayerTable {
    QVector<QPair<QString, int>> rules;

    /** 0 for a file that no line names. */
    int layerOf(const QString& path) const;
};

struct Include {
    QString from;
    QString to;
};

bool operator==(const Include& a, const Include& b);

LayerTable parseLayers(const QString& text);
/** First word to the rest of the line. Lines of includes have two words in front, joined by a blank. */
QMap<QString, QString> parseAccepted(const QString& text, int wordsOfKey);

/** What a source includes in quotes. */
QStringList quotedIncludes(const QString& source);
/** What a source includes in angle brackets. */
QStringList systemIncludes(const QString& source);

/** True when `to` lies on a higher layer. Files without a layer (host, tests) are not judged here. */
bool goesUp(const Include& include, const LayerTable& layers);
/** True when a room includes from one that it must not know: the view from the host, the host's domain library and
 *  importers from the view. */
bool crossesRooms(const Include& include);

} // namespace SourceRules
