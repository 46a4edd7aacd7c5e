#include "host/import/FindingsFile.h"

#include "host/domain/CsvText.h"
#include "host/domain/ObservationCodes.h"

#include <QMap>

namespace Torvik::Import {

namespace Codes = Database::ObservationCodes;
namespace Csv = Database::Csv;

namespace {

constexpr int HoursOnTheDial = 12;

const QStringList neededColumns {QStringLiteral("pipe"), QStringLiteral("distance"), QStringLiteral("code")};
const QStringList allColumns = neededColumns + QStringList {QStringLiteral("clock"), QStringLiteral("angle"),
                                                            QStringLiteral("quantity"), QStringLiteral("lateral")};

/** What a record cannot be taken for; `group` is the reason without the particulars. */
struct Refusal {
    QString reason;
    QString group;
};

/** Where each column stands. */
using Header = QMap<QString, int>;

class RecordReader {
public:
    RecordReader(const Header& header, const Csv::Record& record)
        : m_header(header)
        , m_record(record)
    {
    }

    std::optional<Refusal> read(FindingRecord& result)
    {
        FindingData& finding = result.finding;
        result.pipeKey = text(QStringLiteral("pipe"));
        finding.code = text(QStringLiteral("code"));
        finding.lateralKey = text(QStringLiteral("lateral"));
        if (result.pipeKey.isEmpty())
            refuse(QStringLiteral("no pipe"));
        if (finding.code.isEmpty())
            refuse(QStringLiteral("no code"));
        readDistance(finding);
        finding.angle = number(QStringLiteral("angle"));
        finding.q1 = number(QStringLiteral("quantity"));
        std::optional<int> clock = hour();
        if (Codes::flags(finding.code) & Codes::bend) {
            finding.bendClock = clock;
            finding.angle = finding.angle ? finding.angle : finding.q1;
        } else {
            finding.clock1 = clock;
        }
        return m_refusal;
    }

private:
    QString text(const QString& column) const { return m_record.fields.value(m_header.value(column, -1)); }

    void refuse(const QString& group, const QString& reason = {})
    {
        if (!m_refusal)
            m_refusal = Refusal {reason.isEmpty() ? group : reason, group};
    }

    std::optional<double> number(const QString& column)
    {
        QString written = text(column);
        if (written.isEmpty())
            return std::nullopt;
        if (!written.contains(QLatin1Char('.')))
            written.replace(QLatin1Char(','), QLatin1Char('.'));
        bool ok = false;
        const double value = written.toDouble(&ok);
        if (ok && qIsFinite(value))
            return value;
        const QString group = QStringLiteral("%1 is not a number").arg(column);
        refuse(group, QStringLiteral("%1: \"%2\"").arg(group, text(column)));
        return std::nullopt;
    }

    void readDistance(FindingData& finding)
    {
        const QString column = QStringLiteral("distance");
        if (text(column).isEmpty())
            refuse(QStringLiteral("no distance"));
        finding.distance = number(column).value_or(0.0);
        if (finding.distance < 0.0)
            refuse(QStringLiteral("distance is negative"),
                   QStringLiteral("distance is negative: %1").arg(text(column)));
    }

    /** 0 is where 12 is. */
    std::optional<int> hour()
    {
        const QString written = text(QStringLiteral("clock"));
        if (written.isEmpty())
            return std::nullopt;
        bool ok = false;
        const double value = QString(written).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
        if (ok && value >= 0 && value <= HoursOnTheDial && int(value) == value)
            return value == 0 ? HoursOnTheDial : int(value);
        const QString group = QStringLiteral("clock is no hour from 0 to 12");
        refuse(group, QStringLiteral("%1: \"%2\"").arg(group, written));
        return std::nullopt;
    }

    const Header& m_header;
    const Csv::Record& m_record;
    std::optional<Refusal> m_refusal;
};

/** The columns by name; the error says why there is no header. */
Header headerOf(const Csv::Table& table, QStringList& unknown, QString& error)
{
    Header header;
    const QStringList names = table.records.isEmpty() ? QStringList() : table.records.first().fields;
    for (int i = 0; i < names.size(); ++i) {
        const QString name = names[i].toLower();
        if (!allColumns.contains(name))
            unknown << names[i];
        else if (header.contains(name))
            error = QStringLiteral("the header has two columns \"%1\"").arg(name);
        else
            header.insert(name, i);
    }
    for (const QString& name : neededColumns) {
        if (!header.contains(name) && error.isEmpty())
            error = QStringLiteral("the first line is no header with the columns %1; \"%2\" is missing")
                        .arg(neededColumns.join(QStringLiteral(", ")), name);
    }
    return header;
}

} // namespace

QVector<FindingRecord> FindingsFile::read(const QByteArray& content, const QString& fileName, ImportReport& report)
{
    const Csv::Table table = Csv::parse(content);
    const int firstLine = table.records.isEmpty() ? 1 : table.records.first().line;
    QString error = table.error;
    QStringList unknown;
    const Header header = error.isEmpty() ? headerOf(table, unknown, error) : Header();
    if (!error.isEmpty()) {
        report.fail({fileName, table.error.isEmpty() ? firstLine : table.errorLine, {}}, error);
        return {};
    }
    for (const QString& name : qAsConst(unknown))
        report.warn(Kinds::Observations, {}, {fileName, firstLine, {}},
                    QStringLiteral("the column \"%1\" is not used").arg(name));
    QVector<FindingRecord> records;
    const int width = table.records.first().fields.size();
    for (int i = 1; i < table.records.size(); ++i) {
        const Csv::Record& line = table.records[i];
        FindingRecord record;
        std::optional<Refusal> refusal = RecordReader(header, line).read(record);
        record.finding.source = {fileName, line.line, {}};
        if (line.fields.size() > width)
            refusal = Refusal {QStringLiteral("%1 fields where the header has %2").arg(line.fields.size()).arg(width),
                               QStringLiteral("more fields than the header")};
        report.read(Kinds::Observations);
        if (refusal)
            report.leaveOut(Kinds::Observations, record.pipeKey, record.finding.source, refusal->reason,
                            refusal->group);
        else
            records.append(record);
    }
    return records;
}

} // namespace Torvik::Import
