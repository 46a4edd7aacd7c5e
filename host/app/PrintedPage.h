#pragma once

#include <QImage>
#include <QPair>
#include <QString>
#include <QVector3D>
#include <QVector>

#include <optional>

namespace Torvik::Viewer {

/** A page of A4 with a picture of the view, true to its scale. */
struct PrintedPage {
    QString title;
    QImage picture;
    /** Of the picture for one pixel of the view. */
    double pixelRatio = 1.0;
    /** The n of 1 : n. */
    double scale = 1.0;
    /** Of the bar below the picture: "m" or "ft", and how many metres one is. */
    QString unit {QStringLiteral("m")};
    double metresPerUnit = 1.0;
    /** Where north is, in degrees clockwise from the upper edge; none when it lies along the view. */
    std::optional<double> north;
    /** What the page tells of the project, each with its name. */
    QVector<QPair<QString, QString>> facts;
    QString date;

    /** The PDF. */
    QByteArray pdf() const;

    /** Width of the picture on the paper, and of the view that it shows in pixels. What is broader is cut off at both
     * sides, since the scale counts for this width. */
    static constexpr double pictureWidthMm = 173.0375;
    static constexpr double pictureWidthPixels = 613.0;

    /** The middle of a picture as far as it has room on the page. */
    static QImage cropped(const QImage& picture, double pixelRatio);
    /** Round number of units that is at most 60 mm long on the paper. */
    static double barLength(double scale, double metresPerUnit);
    /** For a camera in the scene, where north is +z and up is +y. */
    static std::optional<double> northOf(const QVector3D& view, const QVector3D& up);
};

} // namespace Torvik::Viewer
