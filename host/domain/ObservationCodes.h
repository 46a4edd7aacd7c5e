#pragma once

#include <QString>
#include <QStringList>

/** What kinds of observations the codes of a coding system stand for, as the view's bits. Begins with the codes of
 *  EN 13508-2 that change a pipe's course, end an inspection or connect a lateral; files add others. Main thread only.
 */
namespace Torvik::Database::ObservationCodes {

constexpr unsigned bend = 0x400;
constexpr unsigned endOfInspection = 0x4;
constexpr unsigned connection = 0x8;

/** Bits of a code, 0 for an unknown one. Case does not matter, nor does anything that is neither letter nor digit. A
 *  code with characterisations, attached ("BCC A.A") or given apart, counts as the longest known code that it begins
 *  with. */
unsigned flags(const QString& code, const QString& ch1 = {}, const QString& ch2 = {});
/** Adds or replaces a code of the host's own. Bits 0 make a code a plain finding, also where it begins like another. */
void setFlags(const QString& code, unsigned bits);

/** Name of the file with codes of one's own, in the folder of the settings and in that of a project. */
QString fileName();
/** That file in the folder of the settings. */
QString settingsFile();
/** Codes of these files from now on, instead of those of the files before. Each line has a code and its kind: bend,
 * end, connection or plain. Files that do not exist hold nothing; later ones overrule earlier ones, and all overrule
 * what is built in. Gives the lines that cannot be used, as "FILE:LINE: reason". */
QStringList useFiles(const QStringList& files);

} // namespace Torvik::Database::ObservationCodes
