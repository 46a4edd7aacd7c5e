#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

namespace Torvik::Viewer {

/** Names of units, as QML knows it under the name "formatHelper". */
class FormatHelper : public QObject {
    Q_OBJECT
    /** The user's, such as "de_DE". */
    Q_PROPERTY(QString currentLocaleName READ currentLocaleName NOTIFY localeChanged)
    /** What distanceUnitString() gives. Whoever reads it beside that has the text anew when the user chooses another.
     */
    Q_PROPERTY(QString distanceUnit READ distanceUnitString NOTIFY distanceUnitChanged)

public:
    explicit FormatHelper(QObject* parent = nullptr);

    QString currentLocaleName() const;
    /** "ft" or "m". */
    Q_INVOKABLE QString distanceUnitString() const;
    /** A length in another unit; both are "m" or "ft". Texts are read in the user's language and in C's; NaN for one
     * that is no number. */
    Q_INVOKABLE double convertLength(const QString& from, const QString& to, const QVariant& length) const;

signals:
    void localeChanged();
    void distanceUnitChanged();
};

} // namespace Torvik::Viewer
