#pragma once

#include <QString>

/** What kinds of observations the codes of a coding system stand for, as the view's bits. Begins with the main codes of
 *  EN 13508-2 that change a pipe's course or connect others to it. Main thread only. */
namespace Torvik::Database::ObservationCodes {

constexpr unsigned bend = 0x400;
constexpr unsigned endOfInspection = 0x4;
constexpr unsigned connection = 0x8;

/** Bits of a code, 0 for an unknown one. Blanks around it and its case do not matter. A code with characterisations
 *  attached ("BCCAA") counts as the longest known code that it begins with. */
unsigned flags(const QString& code);
/** Adds or replaces a code of the host's own. */
void setFlags(const QString& code, unsigned bits);

} // namespace Torvik::Database::ObservationCodes
