#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Torvik::Import {

/** The text of an EPA SWMM input file, taken apart into rows of its sections. UTF-8 or ISO 8859-1; "quoted names" may
 * hold blanks; what follows a semicolon is a comment. */
class SwmmFile {
public:
    struct Row {
        int line = 0;
        QStringList fields;
        QString description; ///< the comment lines (";", not ";;") directly before the row
    };

    explicit SwmmFile(const QByteArray& content);

    /** Rows of a section, by the first letters of its name as the format has it ("JUNCTIONS"); any case. Sections that
     * come several times are joined. */
    const QVector<Row>& rows(const QString& section) const;
    bool hasSection(const QString& section) const { return m_rows.contains(section.left(PrefixLength).toUpper()); }
    bool isEmpty() const { return m_rows.isEmpty(); }
    QStringList titleLines() const { return m_title; }

    static QStringList fieldsOf(const QString& line);

private:
    static constexpr int PrefixLength = 5;

    QHash<QString, QVector<Row>> m_rows;
    QStringList m_title;
};

} // namespace Torvik::Import
