#pragma once

#include <QString>

/** What kinds of observations the codes of a coding system stand for, as the view's bits. Begins with the codes of
 *  EN 13508-2 that change a pipe's course, end an inspection or connect a lateral. Main thread only. */
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

} // namespace Torvik::Database::ObservationCodes
