#pragma once

#include "domain/DomainReader.h"

#include <QStringList>

namespace Kx::Test {

/** Writes down the reader's signals as "signal key". */
class ReaderDiary : public QObject {
public:
    explicit ReaderDiary(Torvik::View3d::DomainReader& reader)
    {
        note(reader, &Torvik::View3d::DomainReader::nodeInserted, QStringLiteral("node"));
        note(reader, &Torvik::View3d::DomainReader::sectionInspectionInserted, QStringLiteral("section"));
        note(reader, &Torvik::View3d::DomainReader::nodeModified, QStringLiteral("node modified"));
        note(reader, &Torvik::View3d::DomainReader::sectionModified, QStringLiteral("section modified"));
        note(reader, &Torvik::View3d::DomainReader::inspectionModified, QStringLiteral("inspection modified"));
        note(reader, &Torvik::View3d::DomainReader::observationModified, QStringLiteral("observation modified"));
        note(reader, &Torvik::View3d::DomainReader::activeInspectionChanged, QStringLiteral("active"));
        connect(&reader, &Torvik::View3d::DomainReader::lateralInspectionInserted, this,
                [this](const CDomainObjectPointer& object, bool fromDB) {
                    entries << QStringLiteral("lateral %1 %2").arg(nameOf(object)).arg(fromDB);
                });
        connect(&reader, &Torvik::View3d::DomainReader::observationInserted, this,
                [this](const CDomainObjectPointer& object, bool fromDB) {
                    entries << QStringLiteral("observation %1 %2").arg(nameOf(object)).arg(fromDB);
                });
        connect(&reader, &Torvik::View3d::DomainReader::objectRemoved, this,
                [this](const QString& id) { entries << QStringLiteral("removed ") + id; });
        connect(&reader, &Torvik::View3d::DomainReader::allRowsRemoved, this,
                [this] { entries << QStringLiteral("all removed"); });
        connect(&reader, &Torvik::View3d::DomainReader::loadingFinished, this,
                [this] { entries << QStringLiteral("loaded"); });
    }

    QStringList take()
    {
        QStringList taken;
        taken.swap(entries);
        return taken;
    }

    QStringList entries;

private:
    template <typename Signal>
    void note(Torvik::View3d::DomainReader& reader, Signal signal, const QString& word)
    {
        connect(&reader, signal, this,
                [this, word](const CDomainObjectPointer& object) { entries << word + QChar(' ') + nameOf(object); });
    }

    static QString nameOf(const CDomainObjectPointer& object)
    {
        const QString key = object->readValue(QStringLiteral("OBJ_Key")).toString();
        if (!key.isEmpty())
            return key;
        const auto parent = object->parentObject().toStrongRef();
        return parent ? parent->readValue(QStringLiteral("OBJ_Key")).toString() : QString();
    }
};

} // namespace Kx::Test
