#include "host/import/OgrReader.h"

#include "host/import/InterlisColumns.h"
#include "host/import/OgrGeometry.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryFile>

#include <cpl_error.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

namespace Torvik::Import {

namespace {

struct DatasetCloser {
    void operator()(GDALDataset* source) const { GDALClose(source); }
};
using DatasetPointer = std::unique_ptr<GDALDataset, DatasetCloser>;

/** Keeps GDAL's messages off the terminal; the report carries what matters. */
class QuietGdal {
public:
    QuietGdal()
    {
        CPLPushErrorHandler(CPLQuietErrorHandler);
        CPLErrorReset();
    }
    ~QuietGdal() { CPLPopErrorHandler(); }
    QuietGdal(const QuietGdal&) = delete;
    QuietGdal& operator=(const QuietGdal&) = delete;
};

QString fieldText(const OGRFeature& feature, const QString& column)
{
    const int index = feature.GetFieldIndex(column.toUtf8().constData());
    if (index < 0 || !feature.IsFieldSetAndNotNull(index))
        return {};
    // GetFieldAsString shortens real numbers to 15 digits; doubles are written with all of theirs.
    if (feature.GetFieldDefnRef(index)->GetType() == OFTReal)
        return QString::number(feature.GetFieldAsDouble(index), 'g', QLocale::FloatingPointShortest);
    return QString::fromUtf8(feature.GetFieldAsString(index)).trimmed();
}

QJsonObject allColumns(const OGRFeature& feature)
{
    QJsonObject columns;
    for (int i = 0; i < feature.GetFieldCount(); ++i) {
        const QString name = QString::fromUtf8(feature.GetFieldDefnRef(i)->GetNameRef());
        const QString value = fieldText(feature, name);
        if (!value.isEmpty())
            columns.insert(name, value);
    }
    return columns;
}

QString lookupId(const MappedColumn& column)
{
    return column.lookupLayer + QLatin1Char('/') + column.lookupKey + QLatin1Char('/') + column.lookupValue;
}

QStringList layerNames(GDALDataset& source)
{
    QStringList names;
    for (const OGRLayer* layer : source.GetLayers())
        names << QString::fromUtf8(const_cast<OGRLayer*>(layer)->GetName());
    return names;
}

SourceRef featureRef(const QString& fileName, OGRLayer& layer, const OGRFeature& feature)
{
    return {fileName, 0, QStringLiteral("%1 feature %2").arg(QString::fromUtf8(layer.GetName())).arg(feature.GetFID())};
}

/** The path itself, or that of a copy that shows all columns where the format needs it. */
QString withAllColumns(const QString& path, QTemporaryFile& copy)
{
    QFile file(path);
    if (QFileInfo(path).suffix().toLower() != QLatin1String("xtf") || !file.open(QIODevice::ReadOnly))
        return path;
    const QByteArray completed = InterlisColumns::withAllColumns(file.readAll());
    if (completed.isEmpty() || !copy.open() || copy.write(completed) != completed.size() || !copy.flush())
        return path;
    return copy.fileName();
}

bool isPattern(const OGRFeature& feature)
{
    return fieldText(feature, QStringLiteral("TID")) == InterlisColumns::PatternTid;
}

} // namespace

OgrReader::OgrReader(NetworkModel& model, ImportReport& report, const OgrMapping& mapping, const QString& wantedCrs)
    : m_model(model)
    , m_report(report)
    , m_mapping(mapping)
    , m_wantedCrs(wantedCrs.isEmpty() ? mapping.crs : wantedCrs)
{
}

bool OgrReader::read(const QString& path)
{
    GDALAllRegister();
    const QuietGdal quiet;
    m_fileName = QFileInfo(path).fileName();
    QTemporaryFile completed(QDir::temp().filePath(QStringLiteral("import-XXXXXX.xtf")));
    const DatasetPointer source(
        GDALDataset::Open(withAllColumns(path, completed).toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    if (!source) {
        const QString detail = QString::fromUtf8(CPLGetLastErrorMsg());
        m_report.fail({m_fileName, 0, {}},
                      detail.isEmpty() ? QStringLiteral("not a vector source that can be read")
                                       : QStringLiteral("not a vector source that can be read: %1").arg(detail));
        return false;
    }
    m_model.format = QString::fromUtf8(source->GetDriverName());
    if (!settleCrs(*source))
        return false;
    for (const MappedLayer& mapped : m_mapping.nodes) {
        if (!readNodes(*source, mapped))
            return false;
    }
    for (const MappedLayer& mapped : m_mapping.pipes) {
        if (!readPipes(*source, mapped))
            return false;
    }
    return true;
}

bool OgrReader::settleCrs(GDALDataset& source)
{
    if (!m_wantedCrs.isEmpty()) {
        QString error;
        const std::optional<CoordinateSystem> wanted = CoordinateSystem::fromText(m_wantedCrs, &error);
        if (!wanted) {
            m_report.fail({}, error);
            return false;
        }
        m_crs = *wanted;
        return true;
    }
    for (const MappedLayer& mapped : m_mapping.nodes + m_mapping.pipes) {
        OGRLayer* layer = layerOf(source, mapped.layer);
        if (!layer)
            return false;
        if (layer->GetSpatialRef()) {
            m_crs = CoordinateSystem(*layer->GetSpatialRef());
            return true;
        }
    }
    return true;
}

OGRLayer* OgrReader::layerOf(GDALDataset& source, const QString& name)
{
    if (name.isEmpty() && source.GetLayerCount() == 1)
        return source.GetLayer(0);
    for (OGRLayer* layer : source.GetLayers()) {
        const QString full = QString::fromUtf8(layer->GetName());
        if (full.compare(name, Qt::CaseInsensitive) == 0 ||
            (!name.isEmpty() && full.endsWith(QLatin1Char('.') + name, Qt::CaseInsensitive)))
            return layer;
    }
    m_report.fail(
        {m_fileName, 0, {}},
        QStringLiteral("no layer \"%1\"; there are %2").arg(name, layerNames(source).join(QStringLiteral(", "))));
    return nullptr;
}

bool OgrReader::hasColumn(OGRLayer& layer, const QString& column)
{
    OGRFeatureDefn* definition = layer.GetLayerDefn();
    if (definition->GetFieldIndex(column.toUtf8().constData()) >= 0)
        return true;
    QStringList names;
    for (int i = 0; i < definition->GetFieldCount(); ++i)
        names << QString::fromUtf8(definition->GetFieldDefn(i)->GetNameRef());
    m_report.fail({m_fileName, 0, {}},
                  QStringLiteral("the layer \"%1\" has no column \"%2\"; it has %3")
                      .arg(QString::fromUtf8(layer.GetName()), column, names.join(QStringLiteral(", "))));
    return false;
}

bool OgrReader::prepare(GDALDataset& source, OGRLayer& layer, const MappedLayer& mapped)
{
    for (const MappedColumn& column : mapped.columns) {
        if (!hasColumn(layer, column.column))
            return false;
        if (!column.isLookup() || m_lookups.contains(lookupId(column)))
            continue;
        OGRLayer* other = layerOf(source, column.lookupLayer);
        if (!other || !hasColumn(*other, column.lookupKey) || !hasColumn(*other, column.lookupValue))
            return false;
        QHash<QString, QString>& values = m_lookups[lookupId(column)];
        for (const auto& feature : *other) {
            const QString key = fieldText(*feature, column.lookupKey);
            const QString value = fieldText(*feature, column.lookupValue);
            if (!isPattern(*feature) && !key.isEmpty() && !value.isEmpty() && !values.contains(key))
                values.insert(key, value);
        }
    }
    if (!mapped.kindColumn.isEmpty() && !hasColumn(layer, mapped.kindColumn))
        return false;
    if (!mapped.where.isEmpty() && layer.SetAttributeFilter(mapped.where.toUtf8().constData()) != OGRERR_NONE) {
        m_report.fail({m_fileName, 0, {}}, QStringLiteral("the condition \"%1\" is not understood: %2")
                                               .arg(mapped.where, QString::fromUtf8(CPLGetLastErrorMsg())));
        return false;
    }
    m_transform.reset();
    const OGRSpatialReference* own = layer.GetSpatialRef();
    if (own && !own->IsSame(&m_crs.reference())) {
        OGREnvelope box;
        const bool isNoLatLon = own->IsGeographic() && layer.GetExtent(&box) == OGRERR_NONE &&
                                (box.MaxX > 360.0 || box.MinX < -360.0 || box.MaxY > 90.0 || box.MinY < -90.0);
        if (isNoLatLon)
            m_report.warn(
                {}, {}, {m_fileName, 0, QString::fromUtf8(layer.GetName())},
                QStringLiteral("the ordinates are no degrees, so the stated system of the source is not believed"));
        else
            m_transform = std::make_unique<CoordinateTransform>(CoordinateSystem(*own), m_crs);
    }
    return true;
}

void OgrReader::carryOver(Point& point) const
{
    if (m_transform)
        m_transform->apply(point);
}

QString OgrReader::text(const OGRFeature& feature, const MappedLayer& mapped, const QString& property) const
{
    const auto column = mapped.columns.constFind(property);
    if (column == mapped.columns.cend())
        return {};
    const QString value = fieldText(feature, column->column);
    return column->isLookup() ? m_lookups.value(lookupId(*column)).value(value) : value;
}

std::optional<double> OgrReader::number(const OGRFeature& feature, const MappedLayer& mapped, const QString& property,
                                        const QString& kind, const SourceRef& at)
{
    const QString value = text(feature, mapped, property);
    if (value.isEmpty())
        return std::nullopt;
    bool ok = false;
    const double result = QString(value).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    if (ok && qIsFinite(result))
        return result;
    m_report.warn(kind, text(feature, mapped, QStringLiteral("key")), at,
                  QStringLiteral("%1 is not a number: \"%2\"").arg(property, value));
    return std::nullopt;
}

QString OgrReader::kindOf(const OGRFeature& feature, const MappedLayer& mapped, const QString& kind,
                          const SourceRef& at)
{
    if (mapped.kindColumn.isEmpty())
        return mapped.defaultKind;
    const QString value = fieldText(feature, mapped.kindColumn);
    if (mapped.kinds.contains(value))
        return mapped.kinds.value(value);
    if (!value.isEmpty() && mapped.defaultKind.isEmpty())
        m_report.warn(kind, text(feature, mapped, QStringLiteral("key")), at,
                      QStringLiteral("the mapping does not know the kind \"%1\"").arg(value));
    return mapped.defaultKind;
}

bool OgrReader::readNodes(GDALDataset& source, const MappedLayer& mapped)
{
    OGRLayer* layer = layerOf(source, mapped.layer);
    if (!layer || !prepare(source, *layer, mapped))
        return false;
    for (const auto& feature : *layer) {
        if (!isPattern(*feature))
            readNode(*feature, mapped, featureRef(m_fileName, *layer, *feature));
    }
    layer->SetAttributeFilter(nullptr);
    return true;
}

void OgrReader::readNode(OGRFeature& feature, const MappedLayer& mapped, const SourceRef& at)
{
    m_report.read(Kinds::Nodes);
    NodeData node;
    node.source = at;
    node.key = text(feature, mapped, QStringLiteral("key"));
    if (node.key.isEmpty()) {
        m_report.leaveOut(Kinds::Nodes, {}, at, QStringLiteral("no key"));
        return;
    }
    const auto value = [&](const char* property) {
        return number(feature, mapped, QString::fromLatin1(property), Kinds::Nodes, at);
    };
    const QString kind = kindOf(feature, mapped, Kinds::Nodes, at);
    node.kind = kind == QLatin1String("connection") ? NodeKind::Connection
                : kind == QLatin1String("building") ? NodeKind::Building
                                                    : NodeKind::Manhole;
    const std::optional<double> x = value("x");
    const std::optional<double> y = value("y");
    node.position = OgrShapes::pointOf(feature.GetGeometryRef());
    if (x && y)
        node.position = Point {*x, *y, std::nullopt};
    if (!node.position) {
        m_report.leaveOut(Kinds::Nodes, node.key, at, QStringLiteral("no geometry"));
        return;
    }
    carryOver(*node.position);
    if (const std::optional<double> z = value("z"))
        node.position->z = z;
    node.cover = value("cover");
    node.invert = value("invert");
    node.depth = value("depth");
    std::optional<double>& ofGeometry = mapped.height == QLatin1String("invert") ? node.invert : node.cover;
    if (!ofGeometry)
        ofGeometry = node.position->z;
    if (!node.invert && node.cover && node.depth)
        node.invert = *node.cover - *node.depth;
    if (!node.cover && node.invert && node.depth)
        node.cover = *node.invert + *node.depth;
    if (node.invert)
        node.position->z = node.invert;
    if (const std::optional<double> diameter = value("diameter"))
        node.diameterMm = *diameter * mapped.sizeFactor;
    node.attributes.insert(QStringLiteral("columns"), allColumns(feature));
    const QString id = text(feature, mapped, QStringLiteral("id"));
    if (!id.isEmpty())
        m_keyById.insert(id, node.key);
    m_model.nodes.append(node);
}

bool OgrReader::readPipes(GDALDataset& source, const MappedLayer& mapped)
{
    OGRLayer* layer = layerOf(source, mapped.layer);
    if (!layer || !prepare(source, *layer, mapped))
        return false;
    for (const auto& feature : *layer) {
        if (!isPattern(*feature))
            readPipe(*feature, mapped, featureRef(m_fileName, *layer, *feature));
    }
    layer->SetAttributeFilter(nullptr);
    return true;
}

void OgrReader::readPipe(OGRFeature& feature, const MappedLayer& mapped, const SourceRef& at)
{
    PipeData pipe;
    pipe.kind = kindOf(feature, mapped, Kinds::Sections, at) == QLatin1String("lateral") ? PipeKind::Lateral
                                                                                         : PipeKind::Section;
    const QString kind = Kinds::ofPipe(pipe.kind);
    m_report.read(kind);
    pipe.source = at;
    pipe.key = text(feature, mapped, QStringLiteral("key"));
    if (pipe.key.isEmpty()) {
        m_report.leaveOut(kind, {}, at, QStringLiteral("no key"));
        return;
    }
    const auto value = [&](const char* property) {
        return number(feature, mapped, QString::fromLatin1(property), kind, at);
    };
    const auto nodeKey = [&](const char* property) {
        const QString id = text(feature, mapped, QString::fromLatin1(property));
        return m_keyById.value(id, id);
    };
    pipe.fromKey = nodeKey("from");
    pipe.toKey = nodeKey("to");
    QString reason;
    pipe.course = OgrShapes::lineOf(feature.GetGeometryRef(), &reason);
    for (Point& point : pipe.course)
        carryOver(point);
    if (pipe.course.isEmpty() && (pipe.fromKey.isEmpty() || pipe.toKey.isEmpty())) {
        m_report.leaveOut(kind, pipe.key, at, reason);
        return;
    }
    if (pipe.course.isEmpty())
        m_report.warn(kind, pipe.key, at, reason + QStringLiteral("; it runs straight between its nodes"));
    pipe.fromInvert = value("fromInvert");
    pipe.toInvert = value("toInvert");
    pipe.fromDepth = value("fromDepth");
    pipe.toDepth = value("toDepth");
    pipe.length = value("length");
    pipe.offset = value("offset");
    if (const std::optional<double> size = value("diameter"))
        pipe.heightMm = *size * mapped.sizeFactor;
    if (const std::optional<double> size = value("width"))
        pipe.widthMm = *size * mapped.sizeFactor;
    pipe.profile = text(feature, mapped, QStringLiteral("profile"));
    pipe.sectionKey = text(feature, mapped, QStringLiteral("section"));
    pipe.attributes.insert(QStringLiteral("columns"), allColumns(feature));
    m_model.pipes.append(pipe);
}

} // namespace Torvik::Import
