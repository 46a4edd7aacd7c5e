#pragma once

#include <QObject>
#include <QString>

namespace Torvik::Viewer {

/** Names of units, as QML knows it under the name "formatHelper". */
class FormatHelper : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /** "ft" or "m". */
    Q_INVOKABLE QString distanceUnitString() const;
};

} // namespace Torvik::Viewer
