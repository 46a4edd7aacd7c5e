#pragma once

#include <QString>

#include <atomic>
#include <memory>
#include <string>

namespace Torvik::DXF {

/** A file as GDAL is to read it: under a name of its own, which tells the driver what it is, and unreadable from the
 *  moment on in which its flag is set, so that whatever GDAL is about comes to an end. */
class StoppableFile {
public:
    /** `ending` without a dot, for drivers that go by the name. */
    StoppableFile(const QString& path, const char* ending, std::shared_ptr<const std::atomic<bool>> stopped);
    ~StoppableFile();
    StoppableFile(const StoppableFile&) = delete;
    StoppableFile& operator=(const StoppableFile&) = delete;

    /** What to give to GDAL. Good while this lives. */
    const std::string& name() const { return m_name; }

private:
    std::string m_key;
    std::string m_name;
};

} // namespace Torvik::DXF
