#include "host/domain/CsvText.h"

#include <QTextCodec>

namespace Torvik::Database::Csv {

namespace {

constexpr auto Quote = QLatin1Char('"');
constexpr int Utf8Mib = 106;

QChar separatorOf(const QString& text)
{
    int commas = 0;
    int semicolons = 0;
    bool isQuoted = false;
    for (const QChar c : text) {
        if (c == Quote)
            isQuoted = !isQuoted;
        else if (isQuoted)
            continue;
        else if (c == QLatin1Char('\n') && commas + semicolons > 0)
            break;
        commas += c == QLatin1Char(',') ? 1 : 0;
        semicolons += c == QLatin1Char(';') ? 1 : 0;
    }
    return semicolons > commas ? QLatin1Char(';') : QLatin1Char(',');
}

/** Reads a text record by record. */
class Reader {
public:
    explicit Reader(const QString& text)
        : m_text(text)
        , m_separator(separatorOf(text))
    {
    }

    Table read()
    {
        Table table;
        while (m_at < m_text.size()) {
            Record record {m_line, {}};
            do {
                record.fields.append(field());
            } while (m_at < m_text.size() && m_text[m_at++] == m_separator);
            if (m_openQuote > 0)
                return {{}, QStringLiteral("a quote that is opened here is never closed"), m_openQuote};
            ++m_line;
            if (record.fields.size() > 1 || !record.fields.first().isEmpty())
                table.records.append(record);
        }
        return table;
    }

private:
    bool isFieldsEnd() const { return m_text[m_at] == m_separator || m_text[m_at] == QLatin1Char('\n'); }

    QString field()
    {
        while (m_at < m_text.size() && m_text[m_at].isSpace() && !isFieldsEnd())
            ++m_at;
        QString content;
        if (m_at < m_text.size() && m_text[m_at] == Quote)
            content = quoted();
        const int from = m_at;
        while (m_at < m_text.size() && !isFieldsEnd())
            ++m_at;
        return content + m_text.mid(from, m_at - from).trimmed();
    }

    QString quoted()
    {
        QString content;
        m_openQuote = m_line;
        for (++m_at; m_at < m_text.size(); ++m_at) {
            const QChar c = m_text[m_at];
            if (c == Quote && m_text.mid(m_at + 1, 1) != Quote) {
                ++m_at;
                m_openQuote = 0;
                break;
            }
            m_at += c == Quote ? 1 : 0;
            m_line += c == QLatin1Char('\n') ? 1 : 0;
            content += c;
        }
        return content;
    }

    const QString& m_text;
    QChar m_separator;
    int m_at = 0;
    int m_line = 1;
    int m_openQuote = 0; ///< line of a quote that is not closed yet
};

} // namespace

Table parse(const QByteArray& bytes)
{
    QTextCodec::ConverterState state;
    QString text = QTextCodec::codecForMib(Utf8Mib)->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0 || bytes.contains('\0'))
        return {{}, QStringLiteral("not a text in UTF-8"), 1};
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return Reader(text).read();
}

} // namespace Torvik::Database::Csv
