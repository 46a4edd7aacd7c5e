#include "host/domain/ObservationCodes.h"

#include "host/domain/CsvText.h"
#include "host/domain/HostSettings.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <optional>

namespace Torvik::Database::ObservationCodes {

namespace {

/** BCC: the pipe bends. BCE: the inspection reaches the finish node. BDC: it ends before. BCA: another pipe joins. What
 *  is wrong with a connection (BAG, BAH) is noted beside its BCA and connects nothing by itself. */
QHash<QString, unsigned>& table()
{
    static QHash<QString, unsigned> codes {{QStringLiteral("BCC"), bend},
                                           {QStringLiteral("BCE"), endOfInspection},
                                           {QStringLiteral("BDC"), endOfInspection},
                                           {QStringLiteral("BCA"), connection}};
    return codes;
}

/** Of the files that are in use. */
QHash<QString, unsigned>& fileTable()
{
    static QHash<QString, unsigned> codes;
    return codes;
}

std::optional<unsigned> bitsOfKind(const QString& kind)
{
    static const QHash<QString, unsigned> kinds {{QStringLiteral("bend"), bend},
                                                 {QStringLiteral("end"), endOfInspection},
                                                 {QStringLiteral("connection"), connection},
                                                 {QStringLiteral("plain"), 0U}};
    const auto found = kinds.constFind(kind.toLower());
    return found == kinds.constEnd() ? std::nullopt : std::optional<unsigned>(*found);
}

QString plain(const QString& code)
{
    QString text;
    for (const QChar c : code) {
        if (c.isLetterOrNumber())
            text += c.toUpper();
    }
    return text;
}

} // namespace

unsigned flags(const QString& code, const QString& ch1, const QString& ch2)
{
    QString rest = plain(code);
    if (rest.isEmpty())
        return 0;
    for (rest += plain(ch1) + plain(ch2); !rest.isEmpty(); rest.chop(1)) {
        for (const auto* codes : {&fileTable(), &table()}) {
            const auto found = codes->constFind(rest);
            if (found != codes->constEnd())
                return *found;
        }
    }
    return 0;
}

void setFlags(const QString& code, unsigned bits)
{
    table().insert(plain(code), bits);
}

QString fileName()
{
    return QStringLiteral("observation-codes.csv");
}

QString settingsFile()
{
    return QDir(Base::HostSettings::settingsFolder()).filePath(fileName());
}

QStringList useFiles(const QStringList& files)
{
    QStringList problems;
    fileTable().clear();
    for (const QString& path : files) {
        QFile file(path);
        if (!file.exists())
            continue;
        if (!file.open(QIODevice::ReadOnly)) {
            problems << QStringLiteral("%1: %2").arg(path, file.errorString());
            continue;
        }
        const Csv::Table lines = Csv::parse(file.readAll());
        if (!lines.error.isEmpty())
            problems << QStringLiteral("%1:%2: %3").arg(path).arg(lines.errorLine).arg(lines.error);
        for (const Csv::Record& record : lines.records) {
            const QString kind = record.fields.value(1);
            const QString code = plain(record.fields.first());
            const bool isHeader = record.fields.first().toLower() == QLatin1String("code");
            if (isHeader || record.fields.first().startsWith(QLatin1Char('#')))
                continue;
            const std::optional<unsigned> bits = bitsOfKind(kind);
            if (!bits || code.isEmpty())
                problems << QStringLiteral("%1:%2: needs a code and bend, end, connection or plain, not \"%3\"")
                                .arg(path)
                                .arg(record.line)
                                .arg(record.fields.join(QLatin1Char(',')));
            else
                fileTable().insert(code, *bits);
        }
    }
    return problems;
}

} // namespace Torvik::Database::ObservationCodes
