#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>

/** The text of plan.xml: a SOAP envelope around the settings of one plan. Axes and units are the file's own, z upward.
 */
namespace Torvik::View3d::PlanXml {

using Triple = std::array<double, 3>;

struct Values {
    /** The negative of the point to which the plan is relative. */
    Triple mqTranslation {};
    Triple translation {};
    Triple scale {{1.0, 1.0, 1.0}};
    /** Degrees. */
    Triple rotation {};
    /** Path of the plan's file as it stands in the text, mostly in Windows form. */
    QString planData;
};

struct Reading {
    /** The defaults where an element is missing or no three finite numbers, and everywhere after an error. */
    Values values;
    /** MQTranslation is there and no three numbers. */
    bool badReference = false;
    /** Texts that should have been three numbers, in the order of the file. */
    QStringList badVectors;
    /** Why the text as a whole could not be read, with its line; empty when it could. */
    QString error;

    bool damaged() const { return !error.isEmpty() || !badVectors.isEmpty(); }
};

/** Significant digits of the rotation. */
constexpr int angleDigits = 8;

/** Larger than any plan.xml in earnest; more is refused unread. */
constexpr qint64 largestFile = 1024 * 1024;

/** Twelve lines, UTF-8, each with its line end. 15 significant digits, the rotation angleDigits. */
QByteArray write(const Values& values);

/** Elements count by their name and depth, whatever ids, namespaces and parents they have. UTF-8 or UTF-16 with or
 *  without a byte order mark, any encoding that the declaration names; without a declaration also Windows-1252. */
Reading read(const QByteArray& bytes);

/** "x,y,z", by no locale. */
QString textFromTriple(const Triple& triple, int digits);

/** True, and `out` set, for exactly three finite numbers between commas, blanks around them allowed, each of a float's
 *  range. */
bool tripleFromText(const QString& text, Triple& out);

} // namespace Torvik::View3d::PlanXml
