#include "host/import/SwmmReader.h"

#include "host/domain/Foot.h"

#include <QIODevice>
#include <QSet>

#include <algorithm>

namespace Torvik::Import {

namespace {

bool isUsFlowUnit(const QString& unit)
{
    return unit == QLatin1String("CFS") || unit == QLatin1String("GPM") || unit == QLatin1String("MGD");
}

} // namespace

SwmmReader::SwmmReader(NetworkModel& model, ImportReport& report)
    : m_model(model)
    , m_report(report)
{
}

bool SwmmReader::read(QIODevice& device, const QString& fileName)
{
    m_fileName = fileName;
    const SwmmFile file(device.readAll());
    const bool isSwmm = file.hasSection(QStringLiteral("JUNCTIONS")) || file.hasSection(QStringLiteral("OUTFALLS")) ||
                        file.hasSection(QStringLiteral("STORAGE")) || file.hasSection(QStringLiteral("CONDUITS"));
    if (!isSwmm) {
        m_report.fail({fileName, 0, {}}, QStringLiteral("no SWMM input: none of the sections [JUNCTIONS], [OUTFALLS], "
                                                        "[STORAGE] and [CONDUITS] is there"));
        return false;
    }
    readOptions(file);
    m_firstNode = m_model.nodes.size();
    readNodes(file, QStringLiteral("JUNCTIONS"), 2);
    readNodes(file, QStringLiteral("OUTFALLS"), -1);
    readNodes(file, QStringLiteral("STORAGE"), 2);
    readNodes(file, QStringLiteral("DIVIDERS"), -1);
    readCoordinates(file);
    readCrossSections(file);
    readVertices(file);
    readConduits(file);
    leaveOutLinks(file);
    setCovers();
    m_model.format = QStringLiteral("EPA SWMM");
    return true;
}

std::optional<double> SwmmReader::number(const SwmmFile::Row& row, int field, const QString& kind)
{
    if (field < 0 || field >= row.fields.size())
        return std::nullopt;
    bool ok = false;
    const double value = row.fields[field].toDouble(&ok);
    if (ok && qIsFinite(value))
        return value;
    m_report.warn(kind, row.fields.value(0), at(row),
                  QStringLiteral("field %1 is not a number: \"%2\"").arg(field + 1).arg(row.fields[field]));
    return std::nullopt;
}

std::optional<double> SwmmReader::metres(const SwmmFile::Row& row, int field, const QString& kind)
{
    std::optional<double> value = number(row, field, kind);
    if (value)
        *value *= m_metresPerUnit;
    return value;
}

void SwmmReader::readOptions(const SwmmFile& file)
{
    QString flowUnits = QStringLiteral("CFS"); // the program's own default
    for (const SwmmFile::Row& row : file.rows(QStringLiteral("OPTIONS"))) {
        const QString name = row.fields.value(0).toUpper();
        if (name == QLatin1String("FLOW_UNITS"))
            flowUnits = row.fields.value(1).toUpper();
        else if (name == QLatin1String("LINK_OFFSETS"))
            m_offsetsAreElevations = row.fields.value(1).toUpper().startsWith(QLatin1String("ELEV"));
    }
    m_metresPerUnit = isUsFlowUnit(flowUnits) ? metresPerFoot : 1.0;
    for (const SwmmFile::Row& row : file.rows(QStringLiteral("MAP"))) {
        if (row.fields.value(0).toUpper() != QLatin1String("UNITS"))
            continue;
        const QString unit = row.fields.value(1).toUpper();
        if (unit.startsWith(QLatin1String("FEET")))
            m_ordinateUnit = OrdinateUnit::Feet;
        else if (unit.startsWith(QLatin1String("MET")))
            m_ordinateUnit = OrdinateUnit::Metres;
        else if (unit.startsWith(QLatin1String("DEG")))
            m_ordinateUnit = OrdinateUnit::Degrees;
    }
}

void SwmmReader::readNodes(const SwmmFile& file, const QString& section, int depthField)
{
    for (const SwmmFile::Row& row : file.rows(section)) {
        m_report.read(Kinds::Nodes);
        const std::optional<double> invert = metres(row, 1, Kinds::Nodes);
        if (!invert) {
            m_report.leaveOut(Kinds::Nodes, row.fields.value(0), at(row), QStringLiteral("no invert elevation"));
            continue;
        }
        NodeData node;
        node.key = row.fields[0];
        node.source = at(row);
        node.invert = invert;
        const std::optional<double> depth = metres(row, depthField, Kinds::Nodes);
        if (depth && *depth > 0.0)
            node.depth = depth;
        node.attributes.insert(QStringLiteral("swmm"),
                               QStringLiteral("[%1] %2").arg(section, row.fields.join(QLatin1Char(' '))));
        if (!row.description.isEmpty())
            node.attributes.insert(QStringLiteral("description"), row.description);
        if (!m_nodes.contains(node.key))
            m_nodes.insert(node.key, m_model.nodes.size());
        m_model.nodes.append(node);
    }
}

void SwmmReader::readCoordinates(const SwmmFile& file)
{
    for (const SwmmFile::Row& row : file.rows(QStringLiteral("COORDINATES"))) {
        const std::optional<double> x = number(row, 1, Kinds::Nodes);
        const std::optional<double> y = number(row, 2, Kinds::Nodes);
        const QString name = row.fields.value(0);
        if (!x || !y) {
            m_report.warn(Kinds::Nodes, name, at(row), QStringLiteral("coordinates without two numbers"));
            continue;
        }
        const auto node = m_nodes.constFind(name);
        if (node == m_nodes.cend()) {
            m_report.warn(Kinds::Nodes, name, at(row), QStringLiteral("coordinates of an unknown node"));
            continue;
        }
        m_model.nodes[*node].position = Point {*x, *y, std::nullopt};
    }
}

void SwmmReader::readCrossSections(const SwmmFile& file)
{
    static const QSet<QString> withWidth {QStringLiteral("RECT_CLOSED"),     QStringLiteral("RECT_OPEN"),
                                          QStringLiteral("RECT_ROUND"),      QStringLiteral("TRAPEZOIDAL"),
                                          QStringLiteral("TRIANGULAR"),      QStringLiteral("RECT_TRIANGULAR"),
                                          QStringLiteral("MODBASKETHANDLE"), QStringLiteral("HORIZ_ELLIPSE"),
                                          QStringLiteral("VERT_ELLIPSE"),    QStringLiteral("ARCH"),
                                          QStringLiteral("PARABOLIC"),       QStringLiteral("POWER")};
    static const QSet<QString> withoutSize {QStringLiteral("IRREGULAR"), QStringLiteral("STREET"),
                                            QStringLiteral("DUMMY")};
    for (const SwmmFile::Row& row : file.rows(QStringLiteral("XSECTIONS"))) {
        CrossSection section;
        section.shape = row.fields.value(1).toUpper();
        if (!withoutSize.contains(section.shape)) {
            const std::optional<double> height = metres(row, 2, Kinds::Sections);
            if (height && *height > 0.0)
                section.heightMm = *height * 1000.0;
            std::optional<double> width;
            if (withWidth.contains(section.shape))
                width = metres(row, 3, Kinds::Sections);
            if (width && *width > 0.0)
                section.widthMm = *width * 1000.0;
            else if (section.shape == QLatin1String("EGG") && section.heightMm)
                section.widthMm = *section.heightMm * 2.0 / 3.0;
        }
        section.barrels = std::max(1, row.fields.value(6).toInt());
        m_crossSections.insert(row.fields.value(0), section);
    }
}

void SwmmReader::readVertices(const SwmmFile& file)
{
    for (const SwmmFile::Row& row : file.rows(QStringLiteral("VERTICES"))) {
        const std::optional<double> x = number(row, 1, Kinds::Sections);
        const std::optional<double> y = number(row, 2, Kinds::Sections);
        if (x && y)
            m_vertices[row.fields[0]].append({*x, *y, std::nullopt});
        else
            m_report.warn(Kinds::Sections, row.fields.value(0), at(row),
                          QStringLiteral("a vertex without two numbers"));
    }
}

void SwmmReader::readConduits(const SwmmFile& file)
{
    for (const SwmmFile::Row& row : file.rows(QStringLiteral("CONDUITS")))
        readConduit(row);
}

std::optional<double> SwmmReader::offsetHeight(const QString& field, const QString& nodeKey, const SourceRef& source,
                                               const QString& key)
{
    const auto node = m_nodes.constFind(nodeKey);
    const std::optional<double> invert = node == m_nodes.cend() ? std::nullopt : m_model.nodes[*node].invert;
    if (field.isEmpty() || field == QLatin1String("*"))
        return invert;
    bool ok = false;
    const double offset = field.toDouble(&ok) * m_metresPerUnit;
    if (!ok) {
        m_report.warn(Kinds::Sections, key, source, QStringLiteral("an offset is not a number: \"%1\"").arg(field));
        return invert;
    }
    if (m_offsetsAreElevations)
        return offset;
    return invert ? std::optional<double>(*invert + offset) : std::nullopt;
}

void SwmmReader::readConduit(const SwmmFile::Row& row)
{
    m_report.read(Kinds::Sections);
    const QString key = row.fields.value(0);
    if (row.fields.size() < 3) {
        m_report.leaveOut(Kinds::Sections, key, at(row), QStringLiteral("a conduit without two nodes"));
        return;
    }
    PipeData pipe;
    pipe.key = key;
    pipe.source = at(row);
    pipe.fromKey = row.fields[1];
    pipe.toKey = row.fields[2];
    pipe.length = metres(row, 3, Kinds::Sections);
    pipe.fromInvert = offsetHeight(row.fields.value(5), pipe.fromKey, pipe.source, key);
    pipe.toInvert = offsetHeight(row.fields.value(6), pipe.toKey, pipe.source, key);
    pipe.attributes.insert(QStringLiteral("swmm"),
                           QStringLiteral("[CONDUITS] %1").arg(row.fields.join(QLatin1Char(' '))));
    if (!row.description.isEmpty())
        pipe.attributes.insert(QStringLiteral("description"), row.description);
    const auto section = m_crossSections.constFind(key);
    if (section == m_crossSections.cend() || !section->heightMm)
        m_report.warn(Kinds::Sections, key, pipe.source, QStringLiteral("no size among the cross-sections"));
    if (section != m_crossSections.cend()) {
        pipe.profile = section->shape;
        pipe.heightMm = section->heightMm;
        pipe.widthMm = section->widthMm;
        if (section->barrels > 1)
            pipe.attributes.insert(QStringLiteral("barrels"), section->barrels);
    }
    const auto noteTop = [&](const QString& node, const std::optional<double>& invert) {
        if (invert)
            m_highestTop[node] =
                std::max(m_highestTop.value(node, *invert), *invert + pipe.heightMm.value_or(0.0) / 1000.0);
    };
    noteTop(pipe.fromKey, pipe.fromInvert);
    noteTop(pipe.toKey, pipe.toInvert);
    const auto from = m_nodes.constFind(pipe.fromKey);
    const auto to = m_nodes.constFind(pipe.toKey);
    const bool hasEnds =
        from != m_nodes.cend() && to != m_nodes.cend() && m_model.nodes[*from].position && m_model.nodes[*to].position;
    if (hasEnds) {
        pipe.course.append(*m_model.nodes[*from].position);
        pipe.course += m_vertices.value(key);
        pipe.course.append(*m_model.nodes[*to].position);
    }
    m_model.pipes.append(pipe);
}

void SwmmReader::leaveOutLinks(const SwmmFile& file)
{
    for (const char* section : {"PUMPS", "ORIFICES", "WEIRS", "OUTLETS"}) {
        const QString kind = QString::fromLatin1(section).toLower();
        for (const SwmmFile::Row& row : file.rows(QString::fromLatin1(section))) {
            m_report.read(kind);
            m_report.leaveOut(kind, row.fields.value(0), at(row),
                              QStringLiteral("a link of the hydraulic model, not a pipe"));
        }
    }
}

void SwmmReader::setCovers()
{
    for (int i = m_firstNode; i < m_model.nodes.size(); ++i) {
        NodeData& node = m_model.nodes[i];
        if (!node.depth) {
            const auto top = m_highestTop.constFind(node.key);
            if (top != m_highestTop.cend() && *top > *node.invert)
                node.depth = *top - *node.invert;
        }
        if (node.depth)
            node.cover = *node.invert + *node.depth;
    }
}

} // namespace Torvik::Import
