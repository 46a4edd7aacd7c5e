#include "labels/LabelsPositionsLoader.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CProjectObject.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <utility>

namespace Torvik::View3d {

namespace {

/** Room for some 200,000 moved labels. A longer file is none of ours, and is not worth the memory and the wait. */
constexpr qint64 maxFileBytes = 32 * 1024 * 1024;

/** Nothing if the file cannot be opened. */
std::optional<QByteArray> contentOf(const QString& path)
{
    QFile file(path);
    // Opening a pipe would wait for someone to write into it.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return std::nullopt;
    }
    return file.size() > maxFileBytes ? QByteArray() : file.readAll();
}

QString fileOf(const Database::CProjectObject& project)
{
    return QDir(project.projectPath()).filePath(QStringLiteral("labelPosition.json"));
}

void write(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    // In a folder that takes no new files, the one that is there is written in place.
    file.setDirectWriteFallback(true);
    // commit() does not see that what was still buffered found no room.
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush()) {
        file.commit();
    }
}

} // namespace

LabelsPositionsLoader& LabelsPositionsLoader::instance()
{
    static LabelsPositionsLoader loader;
    return loader;
}

std::optional<QVector3D> LabelsPositionsLoader::getLabelPosition(const QString& key) const
{
    const auto entry = m_positions.find(key);
    return entry == m_positions.end() ? std::nullopt : std::make_optional(entry.value());
}

void LabelsPositionsLoader::takeUpActiveProject()
{
    const auto active = Database::CDomainObject::projectFromObject(AppState::instance().getActiveProject());
    if (!m_filePath.isEmpty() || !active || !active->is3dProject())
        return;
    m_filePath = fileOf(*active);
    const LabelPositions read = labelPositionsFromJson(contentOf(m_filePath).value_or(QByteArray()));
    for (auto entry = read.begin(); entry != read.end(); ++entry) {
        if (!m_positions.contains(entry.key()))
            m_positions.insert(entry.key(), entry.value());
    }
}

void LabelsPositionsLoader::storeLabelPosition(const QString& key, QVector3D position)
{
    takeUpActiveProject();
    const auto entry = m_positions.find(key);
    // Exactly: a label that was not moved gives back the very numbers that it got.
    const bool same = entry != m_positions.end() && entry->x() == position.x() && entry->y() == position.y() &&
                      entry->z() == position.z();
    if (!same) {
        m_positions.insert(key, position);
        m_moved = true;
    }
}

void LabelsPositionsLoader::removeLabelPosition(const QString& key)
{
    if (m_positions.remove(key) > 0)
        m_moved = true;
}

void LabelsPositionsLoader::resetLabelsPositions()
{
    m_positions.clear();
    m_moved = false;
    if (!m_filePath.isEmpty()) {
        QFile::remove(m_filePath);
        emit labelsPositionsReset();
    }
}

void LabelsPositionsLoader::readLabelsPositionsForProject(const QSharedPointer<Database::CDomainObject>& project)
{
    const auto opened = Database::CDomainObject::projectFromObject(project);
    if (!opened || !opened->is3dProject()) {
        return;
    }
    m_filePath = fileOf(*opened);
    m_moved = false;
    const auto content = contentOf(m_filePath);
    if (!content) {
        return;
    }
    const LabelPositions read = labelPositionsFromJson(*content);
    for (auto entry = read.begin(); entry != read.end(); ++entry) {
        m_positions.insert(entry.key(), entry.value());
    }
    emit labelsPositionsReset();
}

void LabelsPositionsLoader::saveLabelsPositionsForPreviousProject()
{
    // Also without positions: a reset after this must not touch the file of the project that was left.
    const QString path = std::exchange(m_filePath, {});
    if (path.isEmpty()) {
        // What was moved in a project without a file must not get into the file of the next one.
        m_positions.clear();
        m_moved = false;
        return;
    }
    if (m_positions.isEmpty()) {
        // The last one that had been moved was put back.
        if (m_moved) {
            QFile::remove(path);
        }
        m_moved = false;
        return;
    }
    if (m_moved) {
        write(path, jsonFromLabelPositions(m_positions));
    }
    m_positions.clear();
    m_moved = false;
    emit labelsPositionsReset();
}

} // namespace Torvik::View3d
