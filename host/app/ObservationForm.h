#pragma once

#include <QHash>
#include <QString>
#include <QVariantMap>

/** What a user types about an observation, against what a record may hold. Fields are "code", "distance", "clock",
 *  "angle", "quantity" and "lateral" (an id), each a text. Pure functions. */
namespace Torvik::Viewer::ObservationForm {

/** What the rest of the project allows. */
struct Surroundings {
    /** Id of the pipe that is inspected. */
    QString pipe;
    /** Names of the project's laterals by their id. */
    QHash<QString, QString> laterals;
    /** Of the laterals that other observations carry: how the user finds that observation. */
    QHash<QString, QString> taken;
};

struct Checked {
    /** Columns of the record; complete, unless there are errors. */
    QVariantMap values;
    /** A line for each field that is wrong. */
    QVariantMap errors;
};

/** "bend", "connection", "end", or empty for all others. */
QString kindOf(const QString& code);

Checked check(const QVariantMap& texts, const Surroundings& surroundings);

/** The fields of a record, given by its columns; numbers with all their digits. */
QVariantMap textsOf(const QVariantMap& values);

/** Columns that the form reads and writes. */
QStringList columns();

} // namespace Torvik::Viewer::ObservationForm
