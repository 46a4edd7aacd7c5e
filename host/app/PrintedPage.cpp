#include "host/app/PrintedPage.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QPdfWriter>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Torvik::Viewer {

namespace {

constexpr double millimetresPerInch = 25.4;
constexpr double pageWidth = 210.0;
constexpr double pageHeight = 297.0;
constexpr double left = (pageWidth - PrintedPage::pictureWidthMm) / 2.0;
constexpr double top = 34.0;
constexpr double mostPictureHeight = 180.0;
constexpr double longestBar = 60.0;
constexpr int resolution = 300;
/** Millimetres on the paper for one pixel of the view. */
constexpr double paperPerPixel = PrintedPage::pictureWidthMm / PrintedPage::pictureWidthPixels;

class Words {
    Q_DECLARE_TR_FUNCTIONS(PrintedPage)
};

/** Draws in millimetres. */
class Sheet {
public:
    explicit Sheet(QPdfWriter& writer)
        : m_painter(&writer)
    {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    }

    static double device(double mm) { return mm * resolution / millimetresPerInch; }
    QPainter& painter() { return m_painter; }

    void text(const QRectF& box, const QString& text, double points, Qt::Alignment alignment, bool bold = false,
              const QColor& colour = Qt::black)
    {
        QFont font = m_painter.font();
        font.setPointSizeF(points);
        font.setBold(bold);
        m_painter.setFont(font);
        m_painter.setPen(colour);
        const QRectF place = scaled(box);
        m_painter.drawText(place, int(alignment) | Qt::TextSingleLine,
                           m_painter.fontMetrics().elidedText(text, Qt::ElideMiddle, int(place.width())));
    }
    void line(double x1, double y1, double x2, double y2, double width = 0.25)
    {
        m_painter.setPen(QPen(Qt::black, device(width)));
        m_painter.drawLine(QPointF(device(x1), device(y1)), QPointF(device(x2), device(y2)));
    }
    static QRectF scaled(const QRectF& box)
    {
        return {device(box.x()), device(box.y()), device(box.width()), device(box.height())};
    }

private:
    QPainter m_painter;
};

/** From (x, y) to the right and downwards. */
void drawScaleBar(Sheet& sheet, const PrintedPage& page, double x, double y)
{
    const double units = PrintedPage::barLength(page.scale, page.metresPerUnit);
    const double length = units * page.metresPerUnit * 1000.0 / page.scale;
    sheet.line(x, y + 4, x + length, y + 4, 0.5);
    for (const double at : {0.0, 0.5, 1.0})
        sheet.line(x + at * length, y + 2, x + at * length, y + 4, 0.5);
    sheet.text({x + length + 2, y, 40, 5}, QStringLiteral("%1 %2").arg(QLocale().toString(units), page.unit), 9,
               Qt::AlignLeft | Qt::AlignVCenter);
}

void drawNorth(Sheet& sheet, double degrees, double x, double y)
{
    QPainter& painter = sheet.painter();
    painter.save();
    painter.translate(Sheet::device(x), Sheet::device(y));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 215));
    painter.drawEllipse(QPointF(), Sheet::device(9), Sheet::device(9));
    painter.rotate(degrees);
    QPainterPath arrow;
    arrow.moveTo(0, -Sheet::device(7));
    arrow.lineTo(Sheet::device(3), Sheet::device(5));
    arrow.lineTo(0, Sheet::device(2.5));
    arrow.lineTo(-Sheet::device(3), Sheet::device(5));
    arrow.closeSubpath();
    painter.fillPath(arrow, Qt::black);
    painter.setPen(Qt::white);
    QFont font = painter.font();
    font.setPointSizeF(7);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRectF(-Sheet::device(3), -Sheet::device(2.5), Sheet::device(6), Sheet::device(4)),
                     Qt::AlignCenter, Words::tr("N", "north"));
    painter.restore();
}

void drawFacts(Sheet& sheet, const PrintedPage& page, double y)
{
    constexpr double lineHeight = 5.5;
    constexpr double nameWidth = 38;
    const int rows = (page.facts.size() + 1) / 2;
    for (int i = 0; i < page.facts.size(); ++i) {
        const double x = left + (i < rows ? 0 : PrintedPage::pictureWidthMm / 2.0);
        const double at = y + (i % rows) * lineHeight;
        sheet.text({x, at, nameWidth, lineHeight}, page.facts[i].first, 8.5, Qt::AlignLeft | Qt::AlignVCenter, false,
                   Qt::darkGray);
        sheet.text({x + nameWidth, at, PrintedPage::pictureWidthMm / 2.0 - nameWidth - 2, lineHeight},
                   page.facts[i].second, 8.5, Qt::AlignLeft | Qt::AlignVCenter);
    }
}

} // namespace

QByteArray PrintedPage::pdf() const
{
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    QPdfWriter writer(&bytes);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins({0, 0, 0, 0});
    writer.setResolution(resolution);
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("kxviewer"));
    {
        Sheet sheet(writer);
        const QImage shown = cropped(picture, pixelRatio);
        const double width = shown.width() / pixelRatio * paperPerPixel;
        const double height = shown.height() / pixelRatio * paperPerPixel;
        const QRectF place(left + (pictureWidthMm - width) / 2.0, top, width, height);
        sheet.text({left, 16, pictureWidthMm - 45, 9}, title, 18, Qt::AlignLeft | Qt::AlignVCenter, true);
        sheet.text({left + pictureWidthMm - 45, 16, 45, 9}, date, 10, Qt::AlignRight | Qt::AlignVCenter);
        sheet.line(left, 28, left + pictureWidthMm, 28, 0.4);
        sheet.painter().drawImage(Sheet::scaled(place), shown);
        sheet.painter().setPen(QPen(Qt::darkGray, Sheet::device(0.2)));
        sheet.painter().setBrush(Qt::NoBrush);
        sheet.painter().drawRect(Sheet::scaled(place));
        if (north)
            drawNorth(sheet, *north, place.right() - 12, place.top() + 12);
        const double below = place.bottom() + 5;
        drawScaleBar(sheet, *this, left, below);
        sheet.text({left + pictureWidthMm - 50, below, 50, 6},
                   QStringLiteral("1 : %1").arg(QLocale().toString(scale, 'f', 0)), 12,
                   Qt::AlignRight | Qt::AlignVCenter, true);
        drawFacts(sheet, *this, below + 12);
        sheet.text({left, pageHeight - 14, pictureWidthMm, 5}, QStringLiteral("kxviewer"), 7.5,
                   Qt::AlignRight | Qt::AlignVCenter, false, Qt::gray);
    }
    return bytes.data();
}

QImage PrintedPage::cropped(const QImage& picture, double pixelRatio)
{
    const int width = std::min(picture.width(), qRound(pictureWidthPixels * pixelRatio));
    const int height = std::min(picture.height(), qRound(mostPictureHeight / paperPerPixel * pixelRatio));
    return picture.copy((picture.width() - width) / 2, (picture.height() - height) / 2, width, height);
}

double PrintedPage::barLength(double scale, double metresPerUnit)
{
    const double longest = longestBar * scale / 1000.0 / metresPerUnit;
    const double power = std::pow(10.0, std::floor(std::log10(longest)));
    for (const double step : {5.0, 2.0}) {
        if (step * power <= longest)
            return step * power;
    }
    return power;
}

std::optional<double> PrintedPage::northOf(const QVector3D& view, const QVector3D& up)
{
    constexpr float shortestArrow = 0.05F;
    const QVector3D north(0, 0, 1);
    const QVector3D right = QVector3D::crossProduct(view, up).normalized();
    const QVector3D upwards = QVector3D::crossProduct(right, view).normalized();
    const float x = QVector3D::dotProduct(north, right);
    const float y = QVector3D::dotProduct(north, upwards);
    if (std::hypot(x, y) < shortestArrow)
        return std::nullopt;
    return qRadiansToDegrees(std::atan2(double(x), double(y)));
}

} // namespace Torvik::Viewer
