#include "host/domain/ObservationCodes.h"

#include <QHash>

namespace Torvik::Database::ObservationCodes {

namespace {

QHash<QString, unsigned>& table()
{
    static QHash<QString, unsigned> codes {
        {QStringLiteral("BCC"), bend}, {QStringLiteral("BCE"), endOfInspection}, {QStringLiteral("BCA"), connection}};
    return codes;
}

} // namespace

unsigned flags(const QString& code)
{
    QString rest = code.trimmed().toUpper();
    while (!rest.isEmpty()) {
        const auto found = table().constFind(rest);
        if (found != table().constEnd()) {
            return *found;
        }
        rest.chop(1);
    }
    return 0;
}

void setFlags(const QString& code, unsigned bits)
{
    table().insert(code.trimmed().toUpper(), bits);
}

} // namespace Torvik::Database::ObservationCodes
