#pragma once

#include <QColor>
#include <QFont>
#include <QSize>
#include <QString>

class QPainter;

namespace Torvik::View3d {

/** What is painted of a label. */
struct LabelLook {
    QString text;
    QFont font;
    QColor textColour = Qt::white;
    QColor background;
    /** One line below the other, whatever the font's size; otherwise all in one line. */
    bool multiline = false;

    bool operator==(const LabelLook& other) const;
    bool operator!=(const LabelLook& other) const { return !(*this == other); }
};

/** Width of the text in one line, by the height of a line. */
float aspectOf(const QString& text, const QFont& font);

/** Fills the size with the background and the text: its height is the row's, its width the text's. */
void paintLabel(QPainter& painter, const QSize& size, const LabelLook& look);

} // namespace Torvik::View3d
