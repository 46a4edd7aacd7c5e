#include "host/modules/Language.h"

#include "domain/boundary/BaseServices.h"

#include <QCoreApplication>
#include <QLocale>

// Q_INIT_RESOURCE does not work inside a namespace.
static void initTranslations()
{
    Q_INIT_RESOURCE(translations);
}

namespace Torvik::Viewer {

namespace {

const QString english = QStringLiteral("en");
const QString german = QStringLiteral("de");
const QString settingsKey = QStringLiteral("Language");

/** The machine's own, with its country's ways, where it speaks that language. */
QLocale localeOf(const QString& code)
{
    const QLocale ofLanguage(code);
    const QLocale ofMachine = QLocale::system();
    return ofMachine.language() == ofLanguage.language() ? ofMachine : ofLanguage;
}

} // namespace

Language& Language::instance()
{
    static Language language;
    return language;
}

QStringList Language::codes()
{
    return {english, german};
}

QString Language::ofMachine()
{
    return QLocale::system().language() == QLocale::German ? german : english;
}

QVariantList Language::choices() const
{
    const auto choice = [](const QString& code, const QString& name) {
        return QVariantMap {{QStringLiteral("code"), code}, {QStringLiteral("name"), name}};
    };
    return {choice(english, QStringLiteral("English")), choice(german, QStringLiteral("Deutsch"))};
}

void Language::choose(const QString& code)
{
    if (!codes().contains(code)) {
        return;
    }
    Base::CApplicationSettings::instance().setCustomSetting(settingsKey, code);
    use(code);
}

void Language::restore(const QString& wish)
{
    const QString kept = Base::CApplicationSettings::instance().getCustomSetting(settingsKey, ofMachine());
    use(!wish.isEmpty() ? wish : kept);
}

void Language::use(const QString& code)
{
    if (m_code == code || !codes().contains(code)) {
        return;
    }
    for (QTranslator* translator : {&m_ofHost, &m_ofView}) {
        QCoreApplication::removeTranslator(translator);
    }
    if (code != english) {
        initTranslations();
        if (!m_ofHost.load(QStringLiteral(":/translations/kxviewer_%1.qm").arg(code)) ||
            !m_ofView.load(QStringLiteral(":/translations/view3d_%1.qm").arg(code))) {
            qFatal("The translation into %s is not in the program", qPrintable(code));
        }
        QCoreApplication::installTranslator(&m_ofHost);
        QCoreApplication::installTranslator(&m_ofView);
    }
    m_code = code;
    QLocale::setDefault(localeOf(code));
    emit changed();
}

} // namespace Torvik::Viewer
