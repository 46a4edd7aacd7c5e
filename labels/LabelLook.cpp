#include "labels/LabelLook.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>

#include <algorithm>

namespace Torvik::View3d {

namespace {

QString inOneLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char(' '));
}

/** The font in the largest size whose line is lower than that: hinted for it, where a scaled painting would be blurred.
 *  A row stays free below, since a face between two rows of the screen loses its last one: that of the underscore. */
QFont fontForLine(QFont font, double height)
{
    const double pixels = QFontInfo(font).pixelSize();
    const double line = QFontMetricsF(font).height();
    int size = std::max(1, qRound(height * pixels / std::max(line, 1.0)));
    font.setPixelSize(size);
    while (size > 1 && QFontMetricsF(font).height() > height - 1.0)
        font.setPixelSize(--size);
    return font;
}

void paintLine(QPainter& painter, const QRectF& line, const QString& text, bool fillWidth)
{
    const double width = QFontMetricsF(painter.font()).horizontalAdvance(text);
    const double stretch = width > 0.0 && (fillWidth || width > line.width()) ? line.width() / width : 1.0;
    painter.save();
    painter.translate(line.topLeft());
    painter.scale(stretch, 1.0);
    painter.drawText(QRectF(0.0, 0.0, std::max(width, line.width() / stretch), line.height()),
                     Qt::AlignTop | Qt::TextDontClip, text);
    painter.restore();
}

} // namespace

bool LabelLook::operator==(const LabelLook& other) const
{
    return text == other.text && font == other.font && textColour == other.textColour &&
           background == other.background && multiline == other.multiline;
}

float aspectOf(const QString& text, const QFont& font)
{
    if (text.isEmpty())
        return 0.0F;
    const QFontMetricsF metrics(font);
    return static_cast<float>(metrics.horizontalAdvance(inOneLine(text)) / metrics.height());
}

void paintLabel(QPainter& painter, const QSize& size, const LabelLook& look)
{
    painter.fillRect(QRect(QPoint(), size), look.background);
    painter.setPen(look.textColour);
    const QStringList lines = look.multiline ? look.text.split(QLatin1Char('\n')) : QStringList(inOneLine(look.text));
    const double height = static_cast<double>(size.height()) / lines.size();
    QFont font = look.font;
    // The narrow letters of several lines are made for a picture that is stretched to the label's width.
    if (look.multiline) {
        font.setStretch(QFont::Unstretched);
        font.setWordSpacing(0.0);
    }
    painter.setFont(fontForLine(font, height));
    for (int i = 0; i < lines.size(); ++i)
        paintLine(painter, QRectF(0.0, i * height, size.width(), height), lines.at(i), !look.multiline);
}

} // namespace Torvik::View3d
