#include "host/drawing/StoppableFile.h"

#include <QFile>

#include <cpl_vsi.h>

#include <cstdio>
#include <map>
#include <mutex>

namespace Torvik::DXF {

namespace {

constexpr const char* prefix = "/vsikxdrawing/";

struct Source {
    std::string path;
    std::shared_ptr<const std::atomic<bool>> stopped;
};

struct Sources {
    std::mutex mutex;
    std::map<std::string, Source> byKey;
    int made = 0;

    bool find(const std::string& key, Source& source)
    {
        const std::lock_guard lock(mutex);
        const auto found = byKey.find(key);
        if (found != byKey.end())
            source = found->second;
        return found != byKey.end();
    }
};

Sources& sources()
{
    static Sources all;
    return all;
}

struct OpenFile {
    std::FILE* file = nullptr;
    std::shared_ptr<const std::atomic<bool>> stopped;
};

OpenFile* asFile(void* file)
{
    return static_cast<OpenFile*>(file);
}

void* openFile(void*, const char* name, const char* access)
{
    Source source;
    if (!sources().find(name, source) || access[0] != 'r' || *source.stopped)
        return nullptr;
    std::FILE* const file = std::fopen(source.path.c_str(), "rb");
    return file ? new OpenFile {file, source.stopped} : nullptr;
}

int statFile(void*, const char* name, VSIStatBufL* result, int)
{
    Source source;
    return sources().find(name, source) ? VSIStatL(source.path.c_str(), result) : -1;
}

size_t readFile(void* file, void* into, size_t size, size_t count)
{
    return *asFile(file)->stopped ? 0 : std::fread(into, size, count, asFile(file)->file);
}

int seekFile(void* file, vsi_l_offset offset, int whence)
{
    return *asFile(file)->stopped ? -1 : fseeko(asFile(file)->file, off_t(offset), whence);
}

vsi_l_offset tellFile(void* file)
{
    return vsi_l_offset(ftello(asFile(file)->file));
}

int atEndOfFile(void* file)
{
    return *asFile(file)->stopped ? 1 : std::feof(asFile(file)->file);
}

int closeFile(void* file)
{
    const std::unique_ptr<OpenFile> open(asFile(file));
    return std::fclose(open->file);
}

void installOnce()
{
    static const bool installed = [] {
        auto* const callbacks = VSIAllocFilesystemPluginCallbacksStruct();
        callbacks->open = openFile;
        callbacks->stat = statFile;
        callbacks->read = readFile;
        callbacks->seek = seekFile;
        callbacks->tell = tellFile;
        callbacks->eof = atEndOfFile;
        callbacks->close = closeFile;
        const bool good = VSIInstallPluginHandler(prefix, callbacks) == 0;
        VSIFreeFilesystemPluginCallbacksStruct(callbacks);
        return good;
    }();
    Q_UNUSED(installed)
}

} // namespace

StoppableFile::StoppableFile(const QString& path, const char* ending, std::shared_ptr<const std::atomic<bool>> stopped)
{
    installOnce();
    Sources& all = sources();
    const std::lock_guard lock(all.mutex);
    m_key = std::to_string(++all.made) + "." + ending;
    m_name = prefix + m_key;
    all.byKey[m_key] = {QFile::encodeName(path).toStdString(), std::move(stopped)};
}

StoppableFile::~StoppableFile()
{
    Sources& all = sources();
    const std::lock_guard lock(all.mutex);
    all.byKey.erase(m_key);
}

} // namespace Torvik::DXF
