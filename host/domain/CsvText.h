#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/** Tables as text, as spreadsheets write them. Pure, any thread. */
namespace Torvik::Database::Csv {

struct Record {
    int line = 0;       ///< at which it begins, counted from 1
    QStringList fields; ///< without their quotes; blanks around unquoted ones are gone
};

struct Table {
    QVector<Record> records; ///< empty lines are none
    QString error;           ///< why the text cannot be read; empty when all went well
    int errorLine = 0;
};

/** Reads UTF-8 with or without a byte order mark, fields apart by commas or semicolons (whatever the first record has
 * more of), in double quotes where they hold one of these, a line break, or a quote written twice. */
Table parse(const QByteArray& bytes);

} // namespace Torvik::Database::Csv
