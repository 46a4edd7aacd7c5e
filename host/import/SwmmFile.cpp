#include "host/import/SwmmFile.h"

#include <QTextCodec>

namespace Torvik::Import {

namespace {

QString textOf(const QByteArray& content)
{
    QTextCodec::ConverterState state;
    const QString text = QTextCodec::codecForName("UTF-8")->toUnicode(content.constData(), content.size(), &state);
    if (state.invalidChars == 0)
        return text;
    return QString::fromLatin1(content);
}

} // namespace

QStringList SwmmFile::fieldsOf(const QString& line)
{
    QStringList fields;
    int i = 0;
    while (i < line.size()) {
        if (line[i].isSpace()) {
            ++i;
            continue;
        }
        if (line[i] == QLatin1Char(';'))
            break;
        if (line[i] == QLatin1Char('"')) {
            const int end = line.indexOf(QLatin1Char('"'), i + 1);
            fields << line.mid(i + 1, (end < 0 ? line.size() : end) - i - 1);
            i = end < 0 ? line.size() : end + 1;
            continue;
        }
        int end = i;
        while (end < line.size() && !line[end].isSpace() && line[end] != QLatin1Char(';'))
            ++end;
        fields << line.mid(i, end - i);
        i = end;
    }
    return fields;
}

SwmmFile::SwmmFile(const QByteArray& content)
{
    const QString text = textOf(content);
    const QVector<QStringRef> lines = text.splitRef(QLatin1Char('\n'));
    QString section;
    QStringList description;
    for (int i = 0; i < lines.size(); ++i) {
        const QStringRef line = lines[i].trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            const int end = line.indexOf(QLatin1Char(']'));
            section = line.mid(1, (end < 0 ? line.size() : end) - 1).toString().left(PrefixLength).toUpper();
            m_rows[section];
            description.clear();
        } else if (line.isEmpty() || line.startsWith(QLatin1String(";;"))) {
            description.clear();
        } else if (section == QLatin1String("TITLE")) {
            m_title << line.toString();
        } else if (line.startsWith(QLatin1Char(';'))) {
            description << line.mid(1).trimmed().toString();
        } else if (!section.isEmpty()) {
            m_rows[section].append({i + 1, fieldsOf(line.toString()), description.join(QLatin1Char('\n'))});
            description.clear();
        }
    }
}

const QVector<SwmmFile::Row>& SwmmFile::rows(const QString& section) const
{
    static const QVector<Row> none;
    const auto found = m_rows.constFind(section.left(PrefixLength).toUpper());
    return found == m_rows.cend() ? none : *found;
}

} // namespace Torvik::Import
