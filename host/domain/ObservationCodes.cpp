#include "host/domain/ObservationCodes.h"

#include <QHash>

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
        const auto found = table().constFind(rest);
        if (found != table().constEnd())
            return *found;
    }
    return 0;
}

void setFlags(const QString& code, unsigned bits)
{
    table().insert(plain(code), bits);
}

} // namespace Torvik::Database::ObservationCodes
