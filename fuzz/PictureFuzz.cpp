// libFuzzer's target: any bytes as a picture that is to lie under the network. The first byte chooses the ending of its
// name, which decoders go by before they look into the file. scripts/fuzz.sh builds and runs it.
#include "fuzz/Scratch.h"
#include "plans/PictureReader.h"

#include <QGuiApplication>

namespace {

constexpr const char* endings[] = {"png", "jpg", "tiff", "bmp", "gif", "exif", "jpeg", "tif"};

/** The decoders are plug-ins, which only an application finds. */
void haveApplication()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        new QGuiApplication(argc, argv);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    using namespace Torvik::View3d;
    using namespace Kx::Fuzz;
    if (size == 0)
        return 0;
    haveApplication();
    const QString path =
        scratchName("picture") + QLatin1Char('.') + QLatin1String(endings[data[0] % std::size(endings)]);
    write(path, data + 1, size - 1);
    const std::atomic_bool abandoned(data[0] >= 248);
    const PictureReader::Reading reading = PictureReader::read(path, abandoned);
    if (reading.outcome == PictureReader::Outcome::Read) {
        promise(!abandoned);
        promise(!reading.image.isNull() && reading.image.format() == QImage::Format_RGBA8888);
        promise(PictureReader::validateImageSize(reading.image.size()).fits);
        // All of it is there to be read by the texture.
        unsigned sum = 0;
        for (int y = 0; y < reading.image.height(); ++y) {
            const uchar* const line = reading.image.constScanLine(y);
            sum += line[0] + unsigned(line[reading.image.width() * PictureReader::bytesPerPixel - 1]);
        }
        promise(sum <= 510U * unsigned(PictureReader::maxHeight));
    } else {
        promise(reading.image.isNull());
    }
    std::remove(qPrintable(path));
    return 0;
}
