#include "host/drawing/DrawingTexts.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace Torvik::DXF {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Torvik::DXF", text);
}

QString nameOf(const QString& path)
{
    return QFileInfo(path).fileName();
}

QString helpBySaving()
{
    return QLatin1Char(' ') + tr("Save it as DXF in text form (ASCII DXF) and choose that file.");
}

QString release(const DrawingFile& file)
{
    const QString known = releaseOf(file.version);
    return known.isEmpty() ? QString() : QLatin1Char(' ') + known;
}

QString explainOtherKind(const DrawingFile& file, const QString& name)
{
    if (file.instead.isEmpty())
        return tr("%1 is no DXF or DWG drawing, whatever its name says.").arg(name) + helpBySaving();
    return tr("%1 is no drawing, whatever its name says, but a %2 file. Rename it so that its name ends in .%3, and "
              "choose it again.")
        .arg(name, file.instead.toUpper(), file.instead);
}

} // namespace

QString explain(const DrawingFile& file, const QString& path)
{
    const QString name = nameOf(path);
    switch (file.problem) {
    case DrawingProblem::None:
    case DrawingProblem::Cancelled:
        return {};
    case DrawingProblem::Missing:
        return tr("%1 is not there any more.").arg(name);
    case DrawingProblem::NotReadable:
        return tr("%1 cannot be read. Look whether it is a file, whether you may open it, and whether its disk is "
                  "connected.")
            .arg(name);
    case DrawingProblem::Empty:
        return tr("%1 is empty. Copy it again from where it came.").arg(name);
    case DrawingProblem::NoDrawing:
        return explainOtherKind(file, name);
    case DrawingProblem::BinaryDxf:
        return tr("%1 is a DXF in binary form, which cannot be read here.").arg(name) + helpBySaving();
    case DrawingProblem::DwgVersion:
        return tr("%1 is a DWG%2 drawing (%3); only DWG 2000 can be read here.")
                   .arg(name, release(file), file.version) +
               helpBySaving();
    case DrawingProblem::Damaged:
        return tr("%1 is damaged in line %2. Copy it again from where it came, or save the drawing again.")
            .arg(name)
            .arg(file.census.brokenLine);
    case DrawingProblem::CutOff:
        return tr("%1 is cut off: it ends before its drawing does. Copy it again from where it came.").arg(name);
    case DrawingProblem::TooMuch:
        return tr("%1 holds more lines than can be shown, most of them in blocks. Save the part that is needed as a "
                  "drawing of its own.")
            .arg(name);
    case DrawingProblem::Unread:
        return file.kind == DrawingFile::Dwg
                   ? tr("%1 (DWG%2) cannot be read.").arg(name, release(file)) + helpBySaving()
                   : tr("%1 cannot be read.").arg(name) + helpBySaving();
    case DrawingProblem::NothingToDraw:
        return tr("%1 holds nothing that can be drawn, or only on layers that are frozen or off.").arg(name);
    }
    return {};
}

QString explainLosses(const DrawingFile& file, const DrawingLosses& losses, const QString& path)
{
    return tr("%1: only %2 of %3 entities can be read, too few for a plan.")
               .arg(nameOf(path))
               .arg(file.census.inModel - losses.lostAtLeast)
               .arg(file.census.inModel) +
           helpBySaving();
}

QStringList warningsOf(const DrawingFile& file, const DrawingLosses& losses, const QString& path)
{
    const QString name = nameOf(path);
    QStringList warnings;
    if (losses.lostAtLeast > 0) {
        const QString kinds = losses.lost.empty() ? QString() : QStringLiteral(" (%1)").arg(listed(losses.lost));
        warnings << tr("%1: %2 of %3 entities could not be read%4. Save it again as DXF in text form if something is "
                       "missing.")
                        .arg(name)
                        .arg(losses.lostAtLeast)
                        .arg(file.census.inModel)
                        .arg(kinds);
    }
    const auto missed = missedByTheUser(losses.passedOver);
    if (!missed.empty())
        warnings << tr("%1: some kinds of entities cannot be drawn here and are left out: %2. Where they matter, break "
                       "them up into lines in the CAD program, and save the drawing again.")
                        .arg(name, listed(missed));
    if (file.kind == DrawingFile::TextDxf && !file.census.hasEnd)
        warnings << tr("%1 has no end mark; what comes after its entities may be missing.").arg(name);
    if (file.kind == DrawingFile::Dwg)
        warnings << tr("%1 is a DWG, of which only a part of the entities can be read. Save it as DXF in text form if "
                       "something is missing.")
                        .arg(name);
    return warnings;
}

std::map<std::string, int> missedByTheUser(const std::map<std::string, int>& passedOver)
{
    std::map<std::string, int> missed = passedOver;
    for (const char* unseen : {"ATTDEF", "CAMERA", "INSERT", "LIGHT", "SUN", "VIEWPORT", "WIPEOUT"})
        missed.erase(unseen);
    return missed;
}

} // namespace Torvik::DXF
