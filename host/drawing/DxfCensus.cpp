#include "host/drawing/DxfCensus.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

namespace Torvik::DXF {

namespace {

/** Nobody nests blocks deeper, and a reader that follows them in calls has a stack to lose. */
constexpr int deepestBlocks = 100;
/** By then a line has ended. */
constexpr std::size_t enoughToTell = 1 << 16;
/** No line of a drawing is longer; a longer one is no drawing's. */
constexpr std::size_t longestLine = 1 << 20;

std::string_view trimmed(const char* begin, const char* end)
{
    while (begin != end && (*begin == ' ' || *begin == '\t' || *begin == '\r' || *begin == '\n'))
        ++begin;
    while (end != begin && (end[-1] == ' ' || end[-1] == '\t' || end[-1] == '\r' || end[-1] == '\n'))
        --end;
    return {begin, std::size_t(end - begin)};
}

/** -1 for what is no group code. */
int groupCode(std::string_view text)
{
    int code = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9' || code > 100000)
            return -1;
        code = code * 10 + (digit - '0');
    }
    return text.empty() ? -1 : code;
}

int number(std::string_view text)
{
    return std::atoi(std::string(text.substr(0, 20)).c_str());
}

unsigned long long handleOf(std::string_view text)
{
    return std::strtoull(std::string(text.substr(0, 20)).c_str(), nullptr, 16);
}

/** Entities that show a block. */
bool showsBlock(const std::string& kind)
{
    return kind == "INSERT" || kind == "DIMENSION" || kind == "ACAD_TABLE";
}

} // namespace

void DxfCounter::feed(const char* data, std::size_t size)
{
    if (m_lineEnd == '\0') {
        m_start.append(data, size);
        if (m_start.find('\n') == std::string::npos && m_start.size() < enoughToTell)
            return;
        begin();
        return;
    }
    split(data, size);
}

void DxfCounter::begin()
{
    m_lineEnd = m_start.find('\n') == std::string::npos ? '\r' : '\n';
    const std::string start = std::move(m_start);
    split(start.data(), start.size());
}

void DxfCounter::split(const char* data, std::size_t size)
{
    const char* const end = data + size;
    while (data != end && !m_stopped) {
        const auto* const stop = static_cast<const char*>(std::memchr(data, m_lineEnd, std::size_t(end - data)));
        if (!stop) {
            m_rest.append(data, end);
            m_stopped = m_rest.size() > longestLine;
            return;
        }
        if (m_rest.empty()) {
            line(data, stop);
        } else {
            m_rest.append(data, stop);
            line(m_rest.data(), m_rest.data() + m_rest.size());
            m_rest.clear();
        }
        data = stop + 1;
    }
}

void DxfCounter::line(const char* begin, const char* end)
{
    ++m_line;
    if (m_valueNext) {
        pair(m_code, begin, end);
    } else {
        m_code = groupCode(trimmed(begin, end));
        // What follows a line that should be a code is unknown; the reader gives up there, too.
        m_stopped = m_code < 0;
        if (m_stopped) {
            m_census.brokenLine = m_line;
            return;
        }
    }
    m_valueNext = !m_valueNext;
}

void DxfCounter::pair(int code, const char* begin, const char* end)
{
    if (code == 0) {
        beginRecord(trimmed(begin, end));
        return;
    }
    if (m_sectionNameNext && code == 2) {
        const std::string_view name = trimmed(begin, end);
        m_section = name == "HEADER" ? Header : name == "BLOCKS" ? Blocks : name == "ENTITIES" ? Entities : Other;
        m_census.hasEntities |= m_section == Entities;
        m_census.entitiesOpen = m_section == Entities;
        m_sectionNameNext = false;
        return;
    }
    if (m_section == Header)
        takeHeader(code, trimmed(begin, end));
    else if (m_section == Blocks && m_blockNameNext && code == 2) {
        m_block = &m_blocks[std::string(trimmed(begin, end))];
        m_blockNameNext = false;
    } else if (m_entity.kind >= 0 && (code == 2 || code == 5 || code == 67 || code == 70 || code == 71)) {
        takeEntity(code, trimmed(begin, end));
    }
}

void DxfCounter::beginRecord(std::string_view name)
{
    endEntity();
    if (name == "SECTION") {
        m_census.isText = true;
        m_sectionNameNext = true;
        m_section = Outside;
    } else if (name == "ENDSEC") {
        m_census.entitiesOpen = false;
        m_section = Outside;
        m_block = nullptr;
    } else if (name == "EOF") {
        m_census.hasEnd = true;
        m_stopped = true;
    } else if (m_section == Blocks && name == "BLOCK") {
        m_block = nullptr;
        m_blockNameNext = true;
    } else if (m_section == Blocks && name == "ENDBLK") {
        m_block = nullptr;
    } else if (m_section == Entities || (m_section == Blocks && m_block)) {
        m_entity.kind = kindOf(name);
    }
}

void DxfCounter::takeHeader(int code, std::string_view value)
{
    if (code == 9)
        m_variable = std::string(value);
    else if (code == 1 && m_variable == "$ACADVER")
        m_census.version = std::string(value);
    else if (code == 70 && m_variable == "$INSUNITS")
        m_census.unitCode = number(value);
}

void DxfCounter::takeEntity(int code, std::string_view value)
{
    if (code == 5)
        m_entity.handle = handleOf(value);
    else if (code == 67)
        m_entity.paper = number(value) == 1;
    else if (!showsBlock(m_census.kinds[std::size_t(m_entity.kind)].name))
        return;
    else if (code == 2)
        m_entity.block = std::string(value);
    else if (m_census.kinds[std::size_t(m_entity.kind)].name != "INSERT")
        return;
    else if (code == 70)
        m_entity.columns = std::max(1, number(value));
    else if (code == 71)
        m_entity.rows = std::max(1, number(value));
}

void DxfCounter::endEntity()
{
    if (m_entity.kind < 0)
        return;
    auto& kind = m_census.kinds[std::size_t(m_entity.kind)];
    const bool whole = !isPartOfAnother(kind.name);
    Contents* const into = m_section == Entities ? &m_model : m_block;
    if (into && whole) {
        into->own += 1.0;
        if (!m_entity.block.empty())
            into->inserted.emplace_back(m_entity.block, m_entity.columns * m_entity.rows);
    }
    if (m_section == Entities && whole) {
        (m_entity.paper ? kind.inPaper : kind.inModel) += 1;
        (m_entity.paper ? m_census.inPaper : m_census.inModel) += 1;
        if (!m_entity.paper && m_entity.handle != 0)
            m_census.handles.emplace_back(m_entity.handle, m_entity.kind);
    }
    m_entity = Entity();
}

int DxfCounter::kindOf(std::string_view name)
{
    const auto [found, isNew] = m_kinds.try_emplace(std::string(name), int(m_census.kinds.size()));
    if (isNew)
        m_census.kinds.push_back({std::string(name), 0, 0});
    return found->second;
}

double DxfCounter::unfold(const Contents& contents, int depth)
{
    if (depth > deepestBlocks)
        return std::numeric_limits<double>::infinity();
    // A block that holds itself counts nothing there: this entry stands while its contents are counted.
    const auto [known, isNew] = m_unfolded.try_emplace(&contents, 0.0);
    if (!isNew)
        return known->second;
    double sum = contents.own;
    for (const auto& [name, times] : contents.inserted) {
        const auto block = m_blocks.find(name);
        if (block != m_blocks.end())
            sum += times * unfold(block->second, depth + 1);
    }
    return m_unfolded[&contents] = sum;
}

DxfCensus DxfCounter::finish()
{
    if (m_lineEnd == '\0')
        begin();
    if (!m_rest.empty() && !m_stopped)
        line(m_rest.data(), m_rest.data() + m_rest.size());
    endEntity();
    m_census.unfolded = unfold(m_model, 0);
    return std::move(m_census);
}

bool isPartOfAnother(const std::string& kind)
{
    return kind == "VERTEX" || kind == "SEQEND" || kind == "ATTRIB";
}

bool isDrawn(const std::string& kind)
{
    static const char* const kinds[] = {"LINE",     "ARC",    "CIRCLE", "ELLIPSE", "SPLINE",     "LWPOLYLINE",
                                        "POLYLINE", "POINT",  "TEXT",   "MTEXT",   "HATCH",      "SOLID",
                                        "3DFACE",   "LEADER", "MLINE",  "HELIX",   "MULTILEADER"};
    return std::any_of(std::begin(kinds), std::end(kinds), [&kind](const char* drawn) { return kind == drawn; });
}

} // namespace Torvik::DXF
