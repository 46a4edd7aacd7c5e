#pragma once

#include <QObject>
#include <QString>

namespace Torvik::Base {

/** The unit in which the user reads lengths. It is the project's when one opens, and then what the user chooses; what
 *  is stored and measured stays in the project's own. QML has it as `units`. One for the process; main thread only. */
class ShownUnit : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool imperial READ imperial WRITE setImperial NOTIFY changed)
    /** "ft" or "m". */
    Q_PROPERTY(QString name READ name NOTIFY changed)

public:
    static ShownUnit& instance();

    bool imperial() const { return m_imperial; }
    void setImperial(bool imperial);
    QString name() const;

    /** A length in metres in that unit and in the user's language, the unit behind it. */
    Q_INVOKABLE QString length(double metres, int decimals) const;

signals:
    void changed();

private:
    ShownUnit();
    void takeOfProject();

    bool m_imperial = false;
};

} // namespace Torvik::Base
