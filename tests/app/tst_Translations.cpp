#include "host/domain/HostSettings.h"
#include "host/modules/Belmora.h"
#include "host/modules/Language.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using Torvik::Viewer::Language;
using Torvik::Viewer::TranslationHelper;

namespace {

struct Message {
    QString context;
    QString source;
    QStringList translations;
    bool finished = true;

    QString name() const { return context + ": " + source; }
};

QVector<Message> messagesOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    QVector<Message> messages;
    Message message;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == QLatin1String("message"))
            messages << message;
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("message")) {
            message.translations.clear();
        } else if (xml.name() == QLatin1String("name")) {
            message.context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            message.finished = xml.attributes().value("type") != QLatin1String("unfinished");
            message.translations << xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        }
    }
    if (xml.hasError())
        qFatal("%s: %s", qPrintable(path), qPrintable(xml.errorString()));
    return messages;
}

QString fileOf(const QString& name)
{
    return QStringLiteral(KX_SOURCE_DIR "/translations/") + name;
}

QSet<QString> placeholders(const QString& text)
{
    QSet<QString> found;
    static const QRegularExpression form("%(\\d|n)");
    for (auto match = form.globalMatch(text); match.hasNext();)
        found << match.next().captured();
    return found;
}

QString textOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

/** That every text that a user reads is there in German. */
class tst_Translations : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void everyTextOfTheSourcesIsTranslated();
    void everyKeyOfTheViewIsTranslated();
    void placeholdersStay_data();
    void placeholdersStay();
    void aKeyWithoutATextGivesTheDefault();
    void theChoiceStaysForTheNextStart();
    void anUnknownLanguageChangesNothing();
    void numbersFollowTheLanguage();

private:
    QTemporaryDir m_folder;
};

void tst_Translations::initTestCase()
{
    Torvik::Base::HostSettings::setSettingsFile(m_folder.filePath("settings.ini"));
}

void tst_Translations::everyTextOfTheSourcesIsTranslated()
{
    const QString fresh = m_folder.filePath("fresh.ts");
    QProcess lupdate;
    lupdate.setWorkingDirectory(KX_SOURCE_DIR);
    lupdate.start(KX_LUPDATE,
                  {"-silent", "-I", ".", "host/app", "host/modules", "host/domain", "host/drawing", "host/map", "plans", "-ts", fresh});
    QVERIFY(lupdate.waitForFinished());
    QCOMPARE(lupdate.exitCode(), 0);
    QSet<QString> translated;
    for (const Message& message : messagesOf(fileOf("kxviewer_de.ts"))) {
        if (message.finished && !message.translations.join(QString()).isEmpty())
            translated << message.name();
    }

    const QVector<Message> inSources = messagesOf(fresh);

    QVERIFY(inSources.size() > 100);
    QStringList missing;
    for (const Message& message : inSources) {
        if (!translated.contains(message.name()))
            missing << message.name();
    }
    QVERIFY2(missing.isEmpty(), qPrintable("Run scripts/update-translations.sh and translate:\n" + missing.join('\n')));
}

void tst_Translations::everyKeyOfTheViewIsTranslated()
{
    static const QRegularExpression className("translationClassName:\\s*\"([^\"]+)\"");
    static const QRegularExpression key("(?:txt\\(|property var \\w+: \\[)\"([A-Z][A-Za-z0-9]+)\",\\s*\"");
    QSet<QString> translated {};
    for (const Message& message : messagesOf(fileOf("view3d_de.ts")))
        translated << message.name();
    TranslationHelper helper;
    Language::instance().choose("de");

    int keys = 0;
    const QDir folder(KX_SOURCE_DIR "/resources/qml/view3d");
    for (const QString& name : folder.entryList({"*.qml"})) {
        const QString text = textOf(folder.filePath(name));
        const QString context = className.match(text).captured(1);
        if (context.isEmpty())
            continue;
        for (auto match = key.globalMatch(text); match.hasNext(); ++keys) {
            const QString wanted = match.next().captured(1);
            QVERIFY2(translated.contains(context + ": " + wanted), qPrintable(context + ": " + wanted));
            QVERIFY2(helper.translated(context, wanted, QString()) != QString(), qPrintable(wanted));
        }
    }

    QVERIFY2(keys >= 25, qPrintable(QString::number(keys)));
    QCOMPARE(helper.errorMessageFromErrorCode(Torvik::Base::CErrorCode(0x1f)),
             QStringLiteral("Ein Fehler ist aufgetreten (Code 0x1f)."));
    Language::instance().choose("en");
    QCOMPARE(helper.translated("Ostel.Sightlog.App.Essential3DCommands", "GoToCameraButton", "Go-To\nCamera"),
             QStringLiteral("Go-To\nCamera"));
}

void tst_Translations::placeholdersStay_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("host") << "kxviewer_de.ts";
}

void tst_Translations::placeholdersStay()
{
    QFETCH(QString, file);
    for (const Message& message : messagesOf(fileOf(file))) {
        for (const QString& translation : message.translations)
            QVERIFY2(placeholders(translation) == placeholders(message.source), qPrintable(message.name()));
    }
}

void tst_Translations::aKeyWithoutATextGivesTheDefault()
{
    TranslationHelper helper;
    Language::instance().choose("de");
    QCOMPARE(helper.translated("Nobody", "Nothing", "As it was"), QStringLiteral("As it was"));
    Language::instance().choose("en");
}

void tst_Translations::theChoiceStaysForTheNextStart()
{
    Language& language = Language::instance();
    language.choose("de");
    language.restore("en");
    QCOMPARE(language.code(), QStringLiteral("en"));

    language.restore();

    QCOMPARE(language.code(), QStringLiteral("de"));
    language.choose("en");
    language.restore();
    QCOMPARE(language.code(), QStringLiteral("en"));
}

void tst_Translations::anUnknownLanguageChangesNothing()
{
    Language& language = Language::instance();
    language.choose("de");
    int changes = 0;
    const auto counting = connect(&language, &Language::changed, this, [&changes] { ++changes; });

    language.choose("xx");
    language.choose("de");

    QCOMPARE(changes, 0);
    QCOMPARE(language.code(), QStringLiteral("de"));
    disconnect(counting);
    language.choose("en");
}

void tst_Translations::numbersFollowTheLanguage()
{
    Language::instance().choose("de");
    QCOMPARE(QLocale().toString(1234.5, 'f', 1), QStringLiteral("1.234,5"));
    Language::instance().choose("en");
    QCOMPARE(QLocale().toString(1234.5, 'f', 1), QStringLiteral("1,234.5"));
}

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_Translations.moc"
