#include "labels/LabelPositions.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>
#include <optional>

namespace Torvik::View3d {

namespace {

bool fitsFloat(double value)
{
    return std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max());
}

std::optional<QVector3D> positionFromJson(const QJsonValue& value)
{
    if (!value.isObject()) {
        return std::nullopt;
    }
    const QJsonObject members = value.toObject();
    const double x = members.value(QLatin1String("x")).toDouble();
    const double y = members.value(QLatin1String("y")).toDouble();
    const double z = members.value(QLatin1String("z")).toDouble();
    if (!fitsFloat(x) || !fitsFloat(y) || !fitsFloat(z)) {
        return std::nullopt;
    }
    return QVector3D(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
}

QJsonObject jsonFromPosition(const QVector3D& position)
{
    return {{QStringLiteral("x"), static_cast<double>(position.x())},
            {QStringLiteral("y"), static_cast<double>(position.y())},
            {QStringLiteral("z"), static_cast<double>(position.z())}};
}

bool isFinite(const QVector3D& position)
{
    return std::isfinite(position.x()) && std::isfinite(position.y()) && std::isfinite(position.z());
}

} // namespace

LabelPositions labelPositionsFromJson(const QByteArray& json)
{
    LabelPositions positions;
    const QJsonObject entries = QJsonDocument::fromJson(json).object();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (const auto position = positionFromJson(entry.value())) {
            positions.insert(entry.key(), *position);
        }
    }
    return positions;
}

QByteArray jsonFromLabelPositions(const LabelPositions& positions)
{
    QJsonObject entries;
    for (auto entry = positions.begin(); entry != positions.end(); ++entry) {
        if (isFinite(entry.value())) {
            entries.insert(entry.key(), jsonFromPosition(entry.value()));
        }
    }
    return QJsonDocument(entries).toJson();
}

} // namespace Torvik::View3d
