#pragma once

#include <QImage>
#include <QVector>

namespace Kx::Test {

/** As the grid's lines are, on the ground's grey. */
inline bool isDark(QRgb colour)
{
    return qRed(colour) < 150 && qGreen(colour) < 150 && qBlue(colour) < 150;
}

/** Middles of the dark lines that cross the picture from top to bottom. */
inline QVector<float> columnsOfLines(const QImage& picture)
{
    QVector<float> middles;
    int begin = -1;
    for (int x = 0; x <= picture.width(); ++x) {
        int rows = 0;
        for (int y = 0; x < picture.width() && y < picture.height(); ++y)
            rows += isDark(picture.pixel(x, y)) ? 1 : 0;
        const bool line = rows > picture.height() * 9 / 10;
        if (line && begin < 0)
            begin = x;
        if (!line && begin >= 0) {
            middles << static_cast<float>(begin + x - 1) / 2.0F;
            begin = -1;
        }
    }
    return middles;
}

} // namespace Kx::Test
