#pragma once

#include <QObject>
#include <QTranslator>
#include <QVariantList>

namespace Torvik::Viewer {

/** The language of all texts, those of the view included, and of numbers. QML has it as `language`. It is English until
 *  something else is chosen. One for the process; main thread only. */
class Language : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString code READ code WRITE choose NOTIFY changed)
    Q_PROPERTY(QVariantList choices READ choices CONSTANT)

public:
    static Language& instance();

    static QStringList codes();
    /** "de" where the machine speaks German, else "en". */
    static QString ofMachine();

    /** "en" or "de". */
    QString code() const { return m_code; }
    /** A map for each: code, and the language's name in itself. */
    QVariantList choices() const;

    /** Changes all texts at once, and stays for the next start; nothing for a code that is not there. */
    void choose(const QString& code);
    /** What was chosen last, or what the machine speaks; `wish`, if there is one, goes before both and is not kept. */
    void restore(const QString& wish = {});

signals:
    void changed();

private:
    Language() = default;
    void use(const QString& code);

    QTranslator m_ofHost;
    QTranslator m_ofView;
    QString m_code {QStringLiteral("en")};
};

} // namespace Torvik::Viewer
