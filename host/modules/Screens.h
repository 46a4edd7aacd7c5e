#pragma once

#include <QJSValue>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace Torvik::Viewer {

/** Opens the application's screens by their key, as QML knows it under the name "screenManager". */
class ScreenManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString ongoingScreenKey READ ongoingScreenKey WRITE setOngoingScreenKey NOTIFY ongoingScreenKeyChanged)
    Q_PROPERTY(QString startKey READ startKey CONSTANT)

public:
    using QObject::QObject;

    /** The network beside its lists, where inspections are looked at. */
    static QString startKey() { return QStringLiteral("Screens::InspectionScreen"); }

    /** Key of the screen that the user works on. */
    QString ongoingScreenKey() const { return m_ongoingScreenKey; }
    void setOngoingScreenKey(const QString& key);

    /** Asks for a screen; whoever owns it answers screenRequested(). The arguments hold functions too. */
    Q_INVOKABLE void show(const QString& name, const QJSValue& arguments = {});

    /** Closes the screen on top. */
    Q_INVOKABLE void close() { emit closeRequested(); }

signals:
    void ongoingScreenKeyChanged();
    void closeRequested();
    void screenRequested(const QString& name, const QJSValue& arguments);

private:
    QString m_ongoingScreenKey {startKey()};
};

/** The page on top, as QML knows it under the name "pageStack". */
class PageStack : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantMap currentItem READ currentItem NOTIFY currentItemChanged)

public:
    explicit PageStack(QObject* parent = nullptr);

    /** Its "_key" tells which screen it is. */
    QVariantMap currentItem() const { return m_currentItem; }
    void setCurrentKey(const QString& key);

signals:
    void currentItemChanged();

private:
    QVariantMap m_currentItem;
};

} // namespace Torvik::Viewer
