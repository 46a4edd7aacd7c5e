#include "plans/PlanXml.h"

#include <QCoreApplication>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <cmath>
#include <limits>

namespace Torvik::View3d::PlanXml {

namespace {

/** What the user reads, in the user's language. */
struct Text {
    Q_DECLARE_TR_FUNCTIONS(Torvik::View3d::PlanXml)
};

constexpr int lengthDigits = 15;
constexpr int valueDepth = 3; // envelope, body, settings

const char* const envelopeTag = "<SOAP-ENV:Envelope"
                                " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                                " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
                                " xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\""
                                " xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
                                " xmlns:clr=\"http://schemas.microsoft.com/soap/encoding/clr/1.0\""
                                " SOAP-ENV:encodingStyle=\"http://schemas.xmlsoap.org/soap/encoding/\">\n";
const char* const settingsTag = "<a1:SettingsPlan id=\"ref-1\""
                                " xmlns:a1=\"http://schemas.microsoft.com/clr/nsassem/Nerimo.App.Torvik3D.QZ/"
                                "Torvik3DQZ%2C%20Version%3D1.2019.7.4%2C%20Culture%3Dneutral%2C%20"
                                "PublicKeyToken%3Dnull\">\n";

const QString reference = QStringLiteral("MQTranslation");
const QString translation = QStringLiteral("PlanTranslation");
const QString scale = QStringLiteral("PlanScale");
const QString rotation = QStringLiteral("PlanRotation");
const QString data = QStringLiteral("PlanData");

QByteArray element(const QString& name, int id, const QString& text)
{
    return QStringLiteral("<%1 id=\"ref-%2\">").arg(name).arg(id).toUtf8() + text.toHtmlEscaped().toUtf8() + "</" +
           name.toUtf8() + ">\n";
}

bool isUtf8(const QByteArray& bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/** Programs on Windows have written the text in the system's code page without saying so. */
bool isInCodePage(const QByteArray& bytes)
{
    const bool marked = bytes.startsWith("\xFE\xFF") || bytes.startsWith("\xFF\xFE");
    return !marked && !bytes.left(100).contains("encoding=") && !isUtf8(bytes);
}

void takeVector(const QString& text, const Triple& otherwise, Triple& out, Reading& reading)
{
    if (!tripleFromText(text, out)) {
        out = otherwise;
        reading.badVectors.append(text);
    }
}

void takeElement(const QString& name, const QString& text, Reading& reading)
{
    Values& values = reading.values;
    const Values defaults;
    if (name == reference) {
        reading.badReference = !tripleFromText(text, values.mqTranslation);
        takeVector(text, defaults.mqTranslation, values.mqTranslation, reading);
    } else if (name == translation) {
        takeVector(text, defaults.translation, values.translation, reading);
    } else if (name == scale) {
        takeVector(text, defaults.scale, values.scale, reading);
    } else if (name == rotation) {
        takeVector(text, defaults.rotation, values.rotation, reading);
    } else if (name == data) {
        values.planData = text.trimmed();
    }
}

Reading failed(const QString& error)
{
    Reading reading;
    reading.error = error;
    return reading;
}

} // namespace

QByteArray write(const Values& values)
{
    return envelopeTag + QByteArray("<SOAP-ENV:Body>\n") + settingsTag +
           element(reference, 3, textFromTriple(values.mqTranslation, lengthDigits)) +
           "<UseMQTranslation xsi:type=\"xsd:anyType\" xsi:null=\"1\"/>\n" +
           element(translation, 4, textFromTriple(values.translation, lengthDigits)) +
           element(scale, 5, textFromTriple(values.scale, lengthDigits)) +
           element(rotation, 6, textFromTriple(values.rotation, angleDigits)) + element(data, 7, values.planData) +
           "</a1:SettingsPlan>\n</SOAP-ENV:Body>\n</SOAP-ENV:Envelope>\n";
}

Reading read(const QByteArray& bytes)
{
    if (bytes.size() > largestFile)
        return failed(Text::tr("larger than %1 bytes, which no settings of a plan are").arg(largestFile));

    QXmlStreamReader reader;
    if (isInCodePage(bytes))
        reader.addData(QTextCodec::codecForName("Windows-1252")->toUnicode(bytes));
    else
        reader.addData(bytes);
    reader.setNamespaceProcessing(false);

    Reading reading;
    QString name;
    QString text;
    int depth = 0;
    // Without recursion: the nesting is the file's, and the stack is not endless.
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && depth++ == valueDepth) {
            name = reader.qualifiedName().toString();
            text.clear();
        } else if (reader.isCharacters() || reader.isEntityReference()) {
            text += reader.text();
        } else if (reader.isEndElement() && --depth == valueDepth) {
            takeElement(name, text, reading);
        }
    }
    if (reader.hasError())
        return failed(Text::tr("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString()));
    return reading;
}

QString textFromTriple(const Triple& triple, int digits)
{
    QStringList parts;
    for (const double value : triple)
        parts << QString::number(value + 0.0, 'g', digits); // + 0.0 takes the sign off a zero
    return parts.join(QLatin1Char(','));
}

bool tripleFromText(const QString& text, Triple& out)
{
    const QStringList parts = text.split(QLatin1Char(','));
    Triple triple {};
    if (parts.size() != int(triple.size()))
        return false;
    for (int i = 0; i < parts.size(); ++i) {
        bool ok = false;
        triple[size_t(i)] = parts[i].toDouble(&ok);
        // Words like "nan" count as numbers there, and would take the plan out of the scene.
        if (!ok || !(std::abs(triple[size_t(i)]) <= double(std::numeric_limits<float>::max())))
            return false;
    }
    out = triple;
    return true;
}

} // namespace Torvik::View3d::PlanXml
