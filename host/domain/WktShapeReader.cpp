#include "host/domain/WktShapeReader.h"

#include <QRegularExpression>

#include <cmath>

namespace Torvik::Database::WktShapeReader {

namespace {

/** What stands in front of a shape's first bracket. */
struct Head {
    QString keyword; ///< capitals; empty when the text begins with no keyword
    QString dimensions;
    int bodyStart = -1; ///< index of the opening bracket, or -1
    bool empty = false;
};

bool isLetter(QChar c)
{
    return (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) || (c >= QLatin1Char('a') && c <= QLatin1Char('z'));
}

int skipBlanks(const QString& text, int i)
{
    while (i < text.size() && text[i].isSpace()) {
        ++i;
    }
    return i;
}

/** The letters from i on, in capitals; i goes behind them. */
QString wordFrom(const QString& text, int& i)
{
    const int start = i;
    while (i < text.size() && isLetter(text[i])) {
        ++i;
    }
    return text.mid(start, i - start).toUpper();
}

/** The head as nearly every text has it, "KEYWORD ZM(": a project is read by the hundred thousand of them. False for
 *  anything else. */
bool usualHead(const QString& wkt, Head& head)
{
    int i = skipBlanks(wkt, 0);
    const QString keyword = wordFrom(wkt, i);
    if (keyword.isEmpty()) {
        return false;
    }
    i = skipBlanks(wkt, i);
    const QString dimensions = wordFrom(wkt, i);
    i = skipBlanks(wkt, i);
    const bool known =
        dimensions == QLatin1String("ZM") || dimensions == QLatin1String("Z") || dimensions == QLatin1String("M") ||
        // Without a word of their own they may end the keyword: "POINTZM(".
        (dimensions.isEmpty() && !keyword.endsWith(QLatin1Char('Z')) && !keyword.endsWith(QLatin1Char('M')));
    if (!known || i >= wkt.size() || wkt[i] != QLatin1Char('(')) {
        return false;
    }
    head.keyword = keyword;
    head.dimensions = dimensions;
    head.bodyStart = i;
    return true;
}

Head headOf(const QString& wkt)
{
    Head usual;
    if (usualHead(wkt, usual)) {
        return usual;
    }
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*(?:SRID\\s*=\\s*\\d+\\s*;)?\\s*([A-Z]+?)\\s*(ZM|Z|M)?\\s*(\\(|\\bEMPTY\\b|$)"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(wkt);
    Head head;
    if (!match.hasMatch()) {
        return head;
    }
    head.keyword = match.captured(1).toUpper();
    head.dimensions = match.captured(2).toUpper();
    if (match.captured(3) == QLatin1String("(")) {
        head.bodyStart = match.capturedStart(3);
    } else {
        head.empty = true;
    }
    return head;
}

/** Text between the bracket at `open` and its counterpart, or up to the end when that is missing. */
QString bodyFrom(const QString& wkt, int open)
{
    int depth = 0;
    for (int i = open; i < wkt.size(); ++i) {
        if (wkt[i] == QLatin1Char('(')) {
            ++depth;
        } else if (wkt[i] == QLatin1Char(')') && --depth == 0) {
            return wkt.mid(open + 1, i - open - 1);
        }
    }
    return wkt.mid(open + 1);
}

QVector<QString> splitAtTopLevel(const QString& body)
{
    QVector<QString> members;
    int depth = 0;
    int start = 0;
    const auto add = [&](int end) {
        const QString member = body.mid(start, end - start).trimmed();
        if (!member.isEmpty()) {
            members.append(member);
        }
    };
    for (int i = 0; i < body.size(); ++i) {
        if (body[i] == QLatin1Char('(')) {
            ++depth;
        } else if (body[i] == QLatin1Char(')')) {
            --depth;
        } else if (body[i] == QLatin1Char(',') && depth == 0) {
            add(i);
            start = i + 1;
        }
    }
    add(body.size());
    return members;
}

WktPoint pointOf(const QString& vertex, const QString& dimensions)
{
    QString ordinates[4];
    int end = 0;
    for (QString& ordinate : ordinates) {
        const int start = skipBlanks(vertex, end);
        end = start;
        while (end < vertex.size() && !vertex[end].isSpace()) {
            ++end;
        }
        ordinate = end > start ? vertex.mid(start, end - start) : QString();
    }
    if (dimensions == QLatin1String("M")) {
        return {ordinates[0], ordinates[1], QString(), ordinates[2]};
    }
    return {ordinates[0], ordinates[1], ordinates[2], ordinates[3]};
}

bool hasHorizontalPosition(const WktPoint& point)
{
    bool xOk = false;
    bool yOk = false;
    const double x = point.x().toDouble(&xOk);
    const double y = point.y().toDouble(&yOk);
    return xOk && yOk && std::isfinite(x) && std::isfinite(y);
}

/** Calls `use(vertex text)` for every vertex of a body, whatever its nesting. */
template <typename Use>
void forEachVertex(const QString& body, const Use& use)
{
    int start = 0;
    for (int i = 0; i <= body.size(); ++i) {
        const QChar c = i < body.size() ? body[i] : QChar(QLatin1Char(','));
        if (c == QLatin1Char('(') || c == QLatin1Char(')') || c == QLatin1Char(',')) {
            const QString vertex = body.mid(start, i - start).trimmed();
            if (!vertex.isEmpty()) {
                use(vertex);
            }
            start = i + 1;
        }
    }
}

QString singleKeyword(const QString& keyword)
{
    if (keyword == QLatin1String("POLYGON") || keyword == QLatin1String("LINEARRING")) {
        return QStringLiteral("LINESTRING");
    }
    return keyword;
}

/** A member of a multiple shape as a shape of its own. */
QString memberText(const QString& member, const Head& head)
{
    if (!headOf(member).keyword.isEmpty()) {
        return member;
    }
    const QString bracketed =
        member.startsWith(QLatin1Char('(')) ? member : QLatin1Char('(') + member + QLatin1Char(')');
    const QString dimensions = head.dimensions.isEmpty() ? QString() : QLatin1Char(' ') + head.dimensions;
    return head.keyword.mid(int(qstrlen("MULTI"))) + dimensions + bracketed;
}

} // namespace

QVector<QString> parts(const QString& wkt)
{
    if (wkt.trimmed().isEmpty()) {
        return {};
    }
    const Head head = headOf(wkt);
    const bool collection = head.keyword == QLatin1String("GEOMETRYCOLLECTION");
    const bool multiple = head.keyword.startsWith(QLatin1String("MULTI"));
    if (!collection && !multiple) {
        return {wkt};
    }
    QVector<QString> result;
    if (head.bodyStart < 0) {
        return result;
    }
    for (const QString& member : splitAtTopLevel(bodyFrom(wkt, head.bodyStart))) {
        result += multiple ? QVector<QString> {memberText(member, head)} : parts(member);
    }
    return result;
}

WktShape read(const QString& wkt)
{
    WktShape shape;
    for (const QString& part : parts(wkt)) {
        const Head head = headOf(part);
        if (shape.keyword.isEmpty()) {
            shape.keyword = singleKeyword(head.keyword);
        }
        if (head.bodyStart < 0) {
            continue;
        }
        forEachVertex(bodyFrom(part, head.bodyStart), [&](const QString& vertex) {
            const WktPoint point = pointOf(vertex, head.dimensions);
            if (hasHorizontalPosition(point)) {
                shape.points.append(point);
            }
        });
    }
    return shape;
}

WktPoint firstPoint(const QString& wkt)
{
    const QVector<QString> shapes = parts(wkt);
    for (const QString& part : shapes) {
        const Head head = headOf(part);
        QString first;
        if (head.bodyStart >= 0) {
            forEachVertex(bodyFrom(part, head.bodyStart), [&](const QString& vertex) {
                if (first.isEmpty()) {
                    first = vertex;
                }
            });
        } else if (head.keyword.isEmpty()) {
            first = part.section(QLatin1Char(','), 0, 0);
        }
        if (!first.isEmpty()) {
            return pointOf(first, head.dimensions);
        }
    }
    return {};
}

} // namespace Torvik::Database::WktShapeReader
