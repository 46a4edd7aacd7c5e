#include "host/app/CommandLine.h"

#include <QHostAddress>
#include <QMap>
#include <QRegularExpression>

#include <cmath>

namespace Torvik::Viewer {

namespace {

constexpr int smallestPicture = 16;
constexpr int largestPicture = 16384;
/** What a page shows of a view; a larger one is cut off. */
const QSize picturesRoomOnThePage(613, 637);
/** Metres, or metres a second. */
constexpr double smallestStep = 0.001;

/** The arguments sorted into words and options, before anyone asks what they mean. */
struct Sorted {
    QStringList words;
    QStringList flags;
    QMap<QString, QStringList> values;
    QString error;

    bool has(const QString& option) const { return flags.contains(option) || values.contains(option); }
    QString value(const QString& option) const { return values.value(option).value(0); }
};

const QStringList flagNames {
    QStringLiteral("--help"),   QStringLiteral("--version"),      QStringLiteral("--fit"),
    QStringLiteral("--json"),   QStringLiteral("--whole-window"), QStringLiteral("--real-time"),
    QStringLiteral("--window"), QStringLiteral("--no-map"),       QStringLiteral("--timing")};
const QStringList valueNames {
    QStringLiteral("--crs"),        QStringLiteral("--mapping"),  QStringLiteral("--with"),
    QStringLiteral("--report"),     QStringLiteral("--size"),     QStringLiteral("--view"),
    QStringLiteral("--screenshot"), QStringLiteral("--dump"),     QStringLiteral("--distance"),
    QStringLiteral("--go-to"),      QStringLiteral("--findings"), QStringLiteral("--noise"),
    QStringLiteral("--seed"),       QStringLiteral("--step"),     QStringLiteral("--speed"),
    QStringLiteral("--inspect"),    QStringLiteral("--replay"),   QStringLiteral("--listen"),
    QStringLiteral("--address"),    QStringLiteral("--tiles"),    QStringLiteral("--plan"),
    QStringLiteral("--plan-scale"), QStringLiteral("--plan-at"),  QStringLiteral("--language"),
    QStringLiteral("--print"),      QStringLiteral("--gps")};
const QStringList repeatable {QStringLiteral("--with"), QStringLiteral("--findings")};

QString takeOption(const QStringList& arguments, int& index, Sorted& sorted)
{
    QString name = arguments[index];
    if (name == QLatin1String("-h"))
        name = QStringLiteral("--help");
    const int equals = name.indexOf(QLatin1Char('='));
    const bool inlineValue = equals > 0;
    const QString inlined = inlineValue ? name.mid(equals + 1) : QString();
    if (inlineValue)
        name.truncate(equals);

    if (sorted.has(name) && !repeatable.contains(name))
        return QStringLiteral("%1 is given twice").arg(name);
    if (flagNames.contains(name)) {
        if (inlineValue)
            return QStringLiteral("%1 takes no value").arg(name);
        sorted.flags << name;
        return {};
    }
    if (!valueNames.contains(name))
        return QStringLiteral("unknown option %1").arg(name);
    const bool hasNext = index + 1 < arguments.size() && !arguments[index + 1].startsWith(QLatin1String("--"));
    const QString value = inlineValue ? inlined : hasNext ? arguments[++index] : QString();
    if (value.isEmpty())
        return QStringLiteral("%1 needs a value").arg(name);
    sorted.values[name] << value;
    return {};
}

Sorted sort(const QStringList& arguments)
{
    Sorted sorted;
    bool onlyWords = false;
    for (int i = 0; i < arguments.size() && sorted.error.isEmpty(); ++i) {
        const QString& argument = arguments[i];
        if (!onlyWords && argument == QLatin1String("--"))
            onlyWords = true;
        else if (!onlyWords && argument.size() > 1 && argument.startsWith(QLatin1Char('-')))
            sorted.error = takeOption(arguments, i, sorted);
        else if (argument.isEmpty())
            sorted.error = QStringLiteral("an argument is empty");
        else
            sorted.words << argument;
    }
    return sorted;
}

/** Names the first option that the command does not know. */
QString foreignOption(const Sorted& sorted, const QStringList& known, const QString& command)
{
    for (const QString& option : sorted.flags + sorted.values.keys()) {
        if (!known.contains(option))
            return QStringLiteral("%1 does not go with %2").arg(option, command);
    }
    return {};
}

QString readSize(const QString& text, QSize& size)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,6})[xX](\\d{1,6})$"));
    const auto match = form.match(text);
    const QSize read(match.captured(1).toInt(), match.captured(2).toInt());
    const auto fits = [](int length) { return length >= smallestPicture && length <= largestPicture; };
    if (!match.hasMatch() || !fits(read.width()) || !fits(read.height()))
        return QStringLiteral("--size takes WIDTHxHEIGHT in pixels, %1 to %2 each, not \"%3\"")
            .arg(smallestPicture)
            .arg(largestPicture)
            .arg(text);
    size = read;
    return {};
}

QString readView(const QString& text, StandardView& view)
{
    if (text == QLatin1String("top"))
        view = StandardView::Top;
    else if (text == QLatin1String("3d"))
        view = StandardView::Perspective;
    else if (text == QLatin1String("front"))
        view = StandardView::Front;
    else
        return QStringLiteral("--view is top, 3d or front, not \"%1\"").arg(text);
    return {};
}

QString readDistance(const QString& text, std::optional<double>& distance)
{
    bool isNumber = false;
    const double read = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(read) || read <= 0)
        return QStringLiteral("--distance takes a positive number of metres, not \"%1\"").arg(text);
    distance = read;
    return {};
}

QString readLanguage(const Sorted& sorted, Options& options)
{
    options.language = sorted.value(QStringLiteral("--language"));
    const QStringList known {QString(), QStringLiteral("en"), QStringLiteral("de")};
    return known.contains(options.language)
               ? QString()
               : QStringLiteral("--language is en or de, not \"%1\"").arg(options.language);
}

QString readViewOptions(const Sorted& sorted, Options& options)
{
    QString error = readLanguage(sorted, options);
    if (error.isEmpty() && sorted.has(QStringLiteral("--size")))
        error = readSize(sorted.value(QStringLiteral("--size")), options.size);
    if (error.isEmpty() && sorted.has(QStringLiteral("--view")))
        error = readView(sorted.value(QStringLiteral("--view")), options.view);
    if (error.isEmpty() && sorted.has(QStringLiteral("--distance")))
        error = readDistance(sorted.value(QStringLiteral("--distance")), options.distance);
    options.goToKey = sorted.value(QStringLiteral("--go-to"));
    options.fit = sorted.has(QStringLiteral("--fit"));
    options.wholeWindow = sorted.has(QStringLiteral("--whole-window")) || sorted.has(QStringLiteral("--window"));
    options.tiles = sorted.value(QStringLiteral("--tiles"));
    options.noMap = sorted.has(QStringLiteral("--no-map"));
    options.gps = sorted.value(QStringLiteral("--gps"));
    options.timing = sorted.has(QStringLiteral("--timing"));
    if (error.isEmpty() && options.noMap && !options.tiles.isEmpty())
        error = QStringLiteral("--tiles and --no-map exclude each other");
    if (error.isEmpty() && options.fit && !options.goToKey.isEmpty())
        error = QStringLiteral("--fit and --go-to exclude each other");
    return error;
}

QString readImport(const Sorted& sorted, Options& options)
{
    static const QRegularExpression crsForm(QStringLiteral("^EPSG:(\\d{1,6})$"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QStringList known {QStringLiteral("--crs"), QStringLiteral("--mapping"), QStringLiteral("--with"),
                             QStringLiteral("--report"), QStringLiteral("--findings")};
    const QString foreign = foreignOption(sorted, known, QStringLiteral("import"));
    if (!foreign.isEmpty())
        return foreign;
    if (sorted.words.size() != 3)
        return QStringLiteral("import needs a SOURCE and a PROJECT");
    options.command = Command::Import;
    options.source = sorted.words[1];
    options.project = sorted.words[2];
    options.crs = sorted.value(QStringLiteral("--crs")).toUpper();
    options.mappingFile = sorted.value(QStringLiteral("--mapping"));
    options.furtherSources = sorted.values.value(QStringLiteral("--with"));
    options.findingsFiles = sorted.values.value(QStringLiteral("--findings"));
    options.reportFile = sorted.value(QStringLiteral("--report"));
    if (!options.crs.isEmpty() && !crsForm.match(options.crs).hasMatch())
        return QStringLiteral("--crs takes EPSG:NUMBER, not \"%1\"").arg(sorted.value(QStringLiteral("--crs")));
    return {};
}

QString readFindings(const Sorted& sorted, Options& options)
{
    const QString foreign = foreignOption(sorted, {QStringLiteral("--report")}, QStringLiteral("findings"));
    if (!foreign.isEmpty())
        return foreign;
    if (sorted.words.size() < 3)
        return QStringLiteral("findings needs a PROJECT and a FILE");
    options.command = Command::Findings;
    options.project = sorted.words[1];
    options.findingsFiles = sorted.words.mid(2);
    options.reportFile = sorted.value(QStringLiteral("--report"));
    return {};
}

QString readInfo(const Sorted& sorted, Options& options)
{
    const QString foreign = foreignOption(sorted, {QStringLiteral("--json")}, QStringLiteral("info"));
    if (!foreign.isEmpty())
        return foreign;
    if (sorted.words.size() != 2)
        return QStringLiteral("info needs one PROJECT");
    options.command = Command::Info;
    options.project = sorted.words[1];
    options.infoAsJson = sorted.has(QStringLiteral("--json"));
    return {};
}

/** A number from `least` on, if the option is there. */
QString readNumber(const Sorted& sorted, const QString& option, double least, const QString& what, double& number)
{
    if (!sorted.has(option))
        return {};
    bool isNumber = false;
    const double read = sorted.value(option).toDouble(&isNumber);
    if (!isNumber || !std::isfinite(read) || read < least)
        return QStringLiteral("%1 takes %2, not \"%3\"").arg(option, what, sorted.value(option));
    number = read;
    return {};
}

QString readRecord(const Sorted& sorted, Options& options)
{
    const QString noise = QStringLiteral("--noise");
    const QString seed = QStringLiteral("--seed");
    const QString step = QStringLiteral("--step");
    const QString speed = QStringLiteral("--speed");
    const QString foreign = foreignOption(sorted, {noise, seed, step, speed}, QStringLiteral("record"));
    if (!foreign.isEmpty())
        return foreign;
    if (sorted.words.size() != 4)
        return QStringLiteral("record needs a PROJECT, an INSPECTION and a FILE");
    options.command = Command::Record;
    options.project = sorted.words[1];
    options.inspectKey = sorted.words[2];
    options.outputFile = sorted.words[3];
    QString error = readNumber(sorted, noise, 0, QStringLiteral("metres"), options.run.noise);
    if (error.isEmpty())
        error = readNumber(sorted, step, smallestStep, QStringLiteral("metres, at least 0.001"), options.run.step);
    if (error.isEmpty())
        error = readNumber(sorted, speed, smallestStep, QStringLiteral("metres a second, at least 0.001"),
                           options.run.speed);
    bool isSeed = true;
    if (error.isEmpty() && sorted.has(seed))
        options.run.seed = sorted.value(seed).toUInt(&isSeed);
    return isSeed ? error : QStringLiteral("--seed takes a whole number from 0 on, not \"%1\"").arg(sorted.value(seed));
}

QString readSpeed(const QString& text, std::optional<double>& speed)
{
    bool isNumber = false;
    const double read = text.toDouble(&isNumber);
    if (text == QLatin1String("max"))
        speed = 0;
    else if (isNumber && std::isfinite(read) && read > 0)
        speed = read;
    else
        return QStringLiteral("--speed takes max or a positive number, not \"%1\"").arg(text);
    return {};
}

QString readListening(const Sorted& sorted, Options& options)
{
    const QString port = sorted.value(QStringLiteral("--listen"));
    bool isPort = false;
    options.listenPort = port.toUShort(&isPort);
    if (!isPort)
        return QStringLiteral("--listen takes a port from 0 to 65535, not \"%1\"").arg(port);
    if (options.command != Command::Window)
        return QStringLiteral("--listen goes without --screenshot");
    if (sorted.has(QStringLiteral("--address")))
        options.listenAddress = sorted.value(QStringLiteral("--address"));
    if (QHostAddress(options.listenAddress).isNull())
        return QStringLiteral("--address takes an IP address, not \"%1\"").arg(options.listenAddress);
    return {};
}

/** Which options of the vehicle need which other ones. */
QString missingBeside(const Sorted& sorted)
{
    const bool replay = sorted.has(QStringLiteral("--replay"));
    const bool listen = sorted.has(QStringLiteral("--listen"));
    if (replay && listen)
        return QStringLiteral("--replay and --listen exclude each other");
    if (sorted.has(QStringLiteral("--speed")) && !replay)
        return QStringLiteral("--speed goes with --replay");
    const bool picture = sorted.has(QStringLiteral("--screenshot"));
    if (sorted.has(QStringLiteral("--window")) && replay == picture)
        return replay ? QStringLiteral("with --replay, --window and --screenshot exclude each other")
                      : QStringLiteral("--window goes with --screenshot or --replay");
    if (sorted.has(QStringLiteral("--real-time")) && !replay && !listen)
        return QStringLiteral("--real-time goes with --replay or --listen");
    if (sorted.has(QStringLiteral("--address")) && !listen)
        return QStringLiteral("--address goes with --listen");
    if ((replay || listen) && !sorted.has(QStringLiteral("--inspect")))
        return QStringLiteral("%1 needs the inspection too: --inspect KEY")
            .arg(replay ? QStringLiteral("--replay") : QStringLiteral("--listen"));
    return {};
}

/** What a vehicle in the project's pipe tells. */
QString readVehicle(const Sorted& sorted, Options& options)
{
    const QString missing = missingBeside(sorted);
    if (!missing.isEmpty())
        return missing;
    options.inspectKey = sorted.value(QStringLiteral("--inspect"));
    options.replayFile = sorted.value(QStringLiteral("--replay"));
    options.realTime = sorted.has(QStringLiteral("--real-time"));
    const bool inWindow = options.command != Command::Window || sorted.has(QStringLiteral("--window"));
    if (!options.replayFile.isEmpty() && !inWindow)
        options.command = Command::Replay;
    if (sorted.has(QStringLiteral("--listen")))
        return readListening(sorted, options);
    if (sorted.has(QStringLiteral("--speed")))
        return readSpeed(sorted.value(QStringLiteral("--speed")), options.speed);
    return {};
}

QString readPlan(const Sorted& sorted, Options& options)
{
    static const QRegularExpression comma(QStringLiteral("\\s*,\\s*"));
    const QString scale = QStringLiteral("--plan-scale");
    const QString place = QStringLiteral("--plan-at");
    options.planFile = sorted.value(QStringLiteral("--plan"));
    for (const QString& option : {scale, place}) {
        if (sorted.has(option) && options.planFile.isEmpty())
            return QStringLiteral("%1 goes with --plan").arg(option);
    }
    const QString error =
        readNumber(sorted, scale, smallestStep, QStringLiteral("a number from 0.001 on"), options.planScale);
    if (!error.isEmpty() || !sorted.has(place))
        return error;
    const QStringList parts = sorted.value(place).trimmed().split(comma);
    bool isEasting = false;
    bool isNorthing = false;
    const QPointF read(parts.value(0).toDouble(&isEasting), parts.value(1).toDouble(&isNorthing));
    if (parts.size() != 2 || !isEasting || !isNorthing || !std::isfinite(read.x()) || !std::isfinite(read.y()))
        return QStringLiteral("--plan-at takes EASTING,NORTHING, not \"%1\"").arg(sorted.value(place));
    options.planPlace = read;
    return {};
}

QString readProject(const Sorted& sorted, Options& options)
{
    if (sorted.words.size() > 1)
        return QStringLiteral("one PROJECT at a time, and \"%1\" is a second one").arg(sorted.words[1]);
    options.project = sorted.words.value(0);
    const bool dump = sorted.has(QStringLiteral("--dump"));
    QStringList known {QStringLiteral("--dump"), QStringLiteral("--plan"), QStringLiteral("--plan-scale"),
                       QStringLiteral("--plan-at")};
    if (!dump)
        known = known.mid(1) +
                QStringList {QStringLiteral("--screenshot"),   QStringLiteral("--size"),     QStringLiteral("--view"),
                             QStringLiteral("--distance"),     QStringLiteral("--fit"),      QStringLiteral("--go-to"),
                             QStringLiteral("--whole-window"), QStringLiteral("--inspect"),  QStringLiteral("--replay"),
                             QStringLiteral("--real-time"),    QStringLiteral("--speed"),    QStringLiteral("--window"),
                             QStringLiteral("--listen"),       QStringLiteral("--address"),  QStringLiteral("--tiles"),
                             QStringLiteral("--no-map"),       QStringLiteral("--language"), QStringLiteral("--print"),
                             QStringLiteral("--gps"),          QStringLiteral("--timing")};
    const QString foreign = foreignOption(sorted, known, dump ? QStringLiteral("--dump") : QStringLiteral("a project"));
    if (!foreign.isEmpty())
        return foreign;
    const QString planError = readPlan(sorted, options);
    if (!planError.isEmpty())
        return planError;
    if (dump) {
        options.command = Command::Dump;
        options.outputFile = sorted.value(QStringLiteral("--dump"));
        return {};
    }
    if (sorted.has(QStringLiteral("--print")) && sorted.has(QStringLiteral("--screenshot")))
        return QStringLiteral("--print and --screenshot exclude each other");
    if (sorted.has(QStringLiteral("--screenshot"))) {
        options.command = Command::Screenshot;
        options.outputFile = sorted.value(QStringLiteral("--screenshot"));
    } else if (sorted.has(QStringLiteral("--print"))) {
        options.command = Command::Screenshot;
        options.print = true;
        options.size = picturesRoomOnThePage;
        options.outputFile = sorted.value(QStringLiteral("--print"));
    }
    if (sorted.has(QStringLiteral("--whole-window")) && !sorted.has(QStringLiteral("--screenshot")))
        return QStringLiteral("--whole-window goes with --screenshot");
    const QString error = readVehicle(sorted, options);
    return error.isEmpty() ? readViewOptions(sorted, options) : error;
}

} // namespace

ParsedArguments parseArguments(const QStringList& arguments)
{
    const Sorted sorted = sort(arguments);
    if (!sorted.error.isEmpty())
        return {std::nullopt, sorted.error};
    Options options;
    if (sorted.has(QStringLiteral("--help")) || sorted.has(QStringLiteral("--version"))) {
        options.command = sorted.has(QStringLiteral("--help")) ? Command::Help : Command::Version;
        return {options, {}};
    }
    const QString first = sorted.words.value(0);
    const bool named = !arguments.isEmpty() && arguments.first() == first;
    QString error;
    if (named && first == QLatin1String("import"))
        error = readImport(sorted, options);
    else if (named && first == QLatin1String("findings"))
        error = readFindings(sorted, options);
    else if (named && first == QLatin1String("info"))
        error = readInfo(sorted, options);
    else if (named && first == QLatin1String("record"))
        error = readRecord(sorted, options);
    else
        error = readProject(sorted, options);
    if (!error.isEmpty())
        return {std::nullopt, error};
    return {options, {}};
}

} // namespace Torvik::Viewer
