#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QSet>

#include <cmath>
#include <limits>

namespace Kx::Test {

/** Reads a label's letters out of a picture: each place of the fixed pitch is held against every letter of the
 * alphabet, painted on its own. */
class LabelReader {
public:
    explicit LabelReader(const QString& letters)
        : m_alphabet(plain(letters) + QLatin1Char(' '))
    {
        const QSet<QChar> once(m_alphabet.begin(), m_alphabet.end());
        m_alphabet = QString();
        for (const QChar letter : once)
            m_alphabet.append(letter);
    }

    /** @param area   the whole label in pixels of the picture
     *  @param count  letters that it has
     *  A place that the picture does not hold as a whole is left out. */
    QString read(const QImage& picture, const QRectF& area, int count) const
    {
        const double pitch = area.width() / count;
        const int left = static_cast<int>(std::round(area.left()));
        const int top = static_cast<int>(std::round(area.top()));
        const int height = static_cast<int>(std::round(area.height()));
        QString text;
        for (int i = 0; i < count; ++i) {
            const double begin = i * pitch;
            const QRect cell(left + static_cast<int>(begin), top, static_cast<int>(std::ceil(pitch)), height);
            if (picture.rect().contains(cell))
                text.append(nearest(picture.copy(cell), begin - std::floor(begin), pitch));
        }
        return text;
    }

    /** Letters that look the same in several alphabets as those of the first. */
    static QString plain(QString text)
    {
        const QString alike = QStringLiteral("ΑAΕEΟOΡPοoАAЕEКKОOРPаaеeоoрp");
        for (int i = 0; i < alike.size(); i += 2)
            text.replace(alike.at(i), alike.at(i + 1));
        return text;
    }

private:
    QChar nearest(const QImage& cell, double shift, double pitch) const
    {
        QChar found;
        double least = std::numeric_limits<double>::max();
        for (const QChar letter : m_alphabet) {
            const QImage image = painted(letter, cell.size(), shift, pitch);
            for (int step = 0; step < 9; ++step) {
                const double distance = difference(cell, image, step % 3 - 1, step / 3 - 1);
                if (distance < least) {
                    least = distance;
                    found = letter;
                }
            }
        }
        return found;
    }
    static QImage painted(QChar letter, const QSize& size, double shift, double pitch)
    {
        QFont font(QStringLiteral("DejaVu Sans Mono"));
        // A label's letters leave the last row free.
        int pixels = size.height();
        font.setPixelSize(pixels);
        while (QFontMetricsF(font).height() > size.height() - 1)
            font.setPixelSize(--pixels);
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::black);
        QPainter painter(&picture);
        painter.setPen(Qt::white);
        painter.setFont(font);
        painter.translate(shift, 0);
        const double advance = QFontMetricsF(font).horizontalAdvance(letter);
        painter.scale(pitch / advance, 1.0);
        painter.drawText(QRectF(0, 0, advance, size.height()), Qt::AlignTop | Qt::TextDontClip, QString(letter));
        return picture;
    }
    /** How much there is of a letter's white, apart from the background's blue: 0 to 255. */
    static int ink(QRgb pixel)
    {
        constexpr int redOfBackground = 64;
        return std::max(0, (qRed(pixel) - redOfBackground) * 255 / (255 - redOfBackground));
    }
    static double difference(const QImage& cell, const QImage& letter, int right, int down)
    {
        double sum = 0.0;
        for (int y = 0; y < cell.height(); ++y) {
            // The neighbours' letters reach in at the sides.
            for (int x = 1; x < cell.width() - 1; ++x) {
                const QPoint there(x - right, y - down);
                const int expected = letter.rect().contains(there) ? qGray(letter.pixel(there)) : 0;
                sum += std::pow(ink(cell.pixel(x, y)) - expected, 2);
            }
        }
        return sum;
    }

    QString m_alphabet;
};

} // namespace Kx::Test
