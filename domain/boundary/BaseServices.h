#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>

namespace Torvik::Base {

/** An error's number, handed to QML in signals. 0 is no error. */
class CErrorCode {
    Q_GADGET
    Q_PROPERTY(unsigned code READ code CONSTANT)
    /** The same, by the name that QML asks for. */
    Q_PROPERTY(unsigned errorCode READ code CONSTANT)

public:
    CErrorCode() = default;
    explicit CErrorCode(unsigned code)
        : m_code(code)
    {
    }

    unsigned code() const { return m_code; }
    bool operator==(const CErrorCode& o) const { return m_code == o.m_code; }

private:
    unsigned m_code = 0;
};

/** Folders inside a project's folder. Each ends in a separator: project path + name + file name is a file's path. */
class CFileSystemNames {
public:
    static QString documentationPathPart();
    /** Lies below the documentation folder, which its name begins with. */
    static QString graphics3DPathPart();
};

class CLocaleSupport {
public:
    /** The project's distance unit: 2 means feet, anything else metres. */
    static int getDistanceUnit();
};

/** Announces a change of units or language. */
class GlobalLocaleData : public QObject {
    Q_OBJECT

public:
    static GlobalLocaleData& instance();

signals:
    void localeChanged();

private:
    GlobalLocaleData() = default;
};

/** The settings store of the application. Main thread only. */
class CApplicationSettings {
public:
    static CApplicationSettings& instance();

    QString getCustomSetting(const QString& key, const QString& defaultValue) const;
    void setCustomSetting(const QString& key, const QString& value) const;
    /** Height of a label's line; the view divides it by 10. */
    float getDefaultLabelLineHeight() const;
    void setDefaultLabelLineHeight(const float& height);

private:
    CApplicationSettings() = default;
};

} // namespace Torvik::Base

Q_DECLARE_METATYPE(Torvik::Base::CErrorCode)
