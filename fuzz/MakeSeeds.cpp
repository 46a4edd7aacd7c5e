// seeds FOLDER: what the fuzzer begins with, small and sound, a folder for each target.
#include "host_drawing/DxfText.h"

#include <QBuffer>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>

using namespace Kx::Test;

namespace {

void keep(const QString& folder, const QString& name, const QByteArray& contents)
{
    QFile file(folder + QLatin1Char('/') + name);
    if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

void makeDrawings(const QString& folder)
{
    using namespace Dxf;
    const QByteArray path = entity("LWPOLYLINE", 6,
                                   pair(90, "3") + pair(70, "1") + pair(10, "0") + pair(20, "0") + pair(42, "0.5") +
                                       pair(10, "5") + pair(20, "0") + pair(10, "5") + pair(20, "5"));
    const QByteArray old = entity("POLYLINE", 0, pair(66, "1") + pair(70, "1")) +
                           entity("VERTEX", 0, at(10, 1, 1) + pair(42, "-1")) + entity("VERTEX", 0, at(10, 4, 1)) +
                           entity("SEQEND", 0, {});
    const QByteArray curves =
        entity("ARC", 4, at(10, 0, 0) + pair(40, "5") + pair(50, "0") + pair(51, "90")) +
        entity("CIRCLE", 7, at(10, 0, 0) + pair(40, "5")) +
        entity("ELLIPSE", 8, at(10, 0, 0) + at(11, 3, 0) + pair(40, "0.5") + pair(41, "0") + pair(42, "6.28")) +
        entity("SPLINE", 9,
               pair(70, "8") + pair(71, "3") + pair(72, "8") + pair(73, "4") + pair(40, "0") + pair(40, "0") +
                   pair(40, "0") + pair(40, "0") + pair(40, "1") + pair(40, "1") + pair(40, "1") + pair(40, "1") +
                   at(10, 0, 0) + at(10, 1, 2) + at(10, 2, 2) + at(10, 3, 0));
    const QByteArray texts =
        entity("TEXT", 3, at(10, 0, 0) + pair(40, "2") + pair(1, "abc") + pair(50, "30") + pair(72, "2")) +
        entity("MTEXT", 10,
               at(10, 0, 0) + pair(40, "2") + pair(41, "20") + pair(71, "5") + pair(1, "{\\fArial;a}\\Pb"));
    const QByteArray fill = entity("HATCH", 11,
                                   at(10, 0, 0) + pair(2, "SOLID") + pair(70, "1") + pair(71, "0") + pair(91, "1") +
                                       pair(92, "2") + pair(72, "0") + pair(73, "1") + pair(93, "3") + pair(10, "0") +
                                       pair(20, "0") + pair(10, "4") + pair(20, "0") + pair(10, "4") + pair(20, "4") +
                                       pair(97, "0") + pair(75, "0") + pair(76, "1") + pair(98, "0"));
    const QByteArray blocks = block("b", line(5, 0, 0, 1, 1) + insert(12, "c", 1, 1)) + block("c", path);
    keep(folder, QStringLiteral("lines.dxf"), drawing(line(1, 0, 0, 1, 1) + line(2, 3e6, 5e6, 3e6, 6e6) + path + old));
    keep(folder, QStringLiteral("curves.dxf"), drawing(curves, layer("frozen", 1, 1)));
    keep(folder, QStringLiteral("texts.dxf"), drawing(texts + fill + entity("POINT", 13, at(10, 1, 1))));
    keep(folder, QStringLiteral("blocks.dxf"),
         drawing(insert(14, "b", 5, 5, pair(70, "2") + pair(71, "2") + pair(41, "-1") + pair(50, "45")), {}, blocks));
}

QImage picture(QImage::Format format)
{
    QImage image(5, 3, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgba(x * 50, y * 80, 90, 255 - x * 20));
    }
    return image.convertToFormat(format);
}

void makePictures(const QString& folder)
{
    // The first byte chooses the ending of the file's name.
    int ending = 0;
    for (const char* form : {"png", "jpg", "tiff", "bmp"}) {
        for (const auto format : {QImage::Format_ARGB32, QImage::Format_Indexed8, QImage::Format_Mono,
                                  QImage::Format_Grayscale8, QImage::Format_RGBA64}) {
            QBuffer bytes;
            QImageWriter writer(&bytes, form);
            if (writer.write(picture(format)))
                keep(folder, QStringLiteral("%1-%2").arg(QLatin1String(form)).arg(format), char(ending) + bytes.data());
        }
        ++ending;
    }
    // A picture of one pixel; Qt reads this kind and does not write it.
    const char gif[] = "\x04GIF89a\1\0\1\0\x80\0\0\xff\0\0\0\0\xff,\0\0\0\0\1\0\1\0\0\2\2D\1\0;";
    keep(folder, QStringLiteral("gif"), QByteArray(gif, sizeof gif - 1));
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    const QString folder = app.arguments().value(1);
    if (folder.isEmpty())
        return 2;
    makeDrawings(folder + QStringLiteral("/drawing"));
    makePictures(folder + QStringLiteral("/picture"));
    return 0;
}
