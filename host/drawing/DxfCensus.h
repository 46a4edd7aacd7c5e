#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Torvik::DXF {

/** What the text of a DXF file says it holds, counted without knowing what any of it means: what a reader that is
 *  silent about its losses is held against. */
struct DxfCensus {
    struct Kind {
        std::string name;
        int inModel = 0;
        int inPaper = 0;
    };

    bool isText = false;       ///< it begins like a DXF file in text form
    bool entitiesOpen = false; ///< the file ends within its entities
    bool hasEntities = false;
    bool hasEnd = false;      ///< the end mark is there
    std::string version;      ///< AC1009 (R12) and so on; empty when the file doesn't tell
    long long brokenLine = 0; ///< where a group code should stand and doesn't, from 1; 0 when all are sound
    int unitCode = 0;         ///< $INSUNITS
    std::vector<Kind> kinds;
    /** The handles of what lies in the model, with the index of its kind; those that have one. */
    std::vector<std::pair<unsigned long long, int>> handles;
    int inModel = 0;
    int inPaper = 0;
    /** Entities in the model once every block is put where it is inserted. Infinite for blocks nested too deep. */
    double unfolded = 0.0;
};

/** Counts a DXF file that comes in pieces. */
class DxfCounter {
public:
    /** Pieces of any size, in their order. */
    void feed(const char* data, std::size_t size);
    DxfCensus finish();

private:
    enum Section { Outside, Header, Blocks, Entities, Other };
    struct Contents {
        double own = 0.0;
        std::vector<std::pair<std::string, double>> inserted; ///< a block's name, how often
    };
    struct Entity {
        int kind = -1;
        unsigned long long handle = 0;
        bool paper = false;
        std::string block;
        double columns = 1.0;
        double rows = 1.0;
    };

    void begin();
    void split(const char* data, std::size_t size);
    void line(const char* begin, const char* end);
    void pair(int code, const char* begin, const char* end);
    void beginRecord(std::string_view name);
    void endEntity();
    void takeHeader(int code, std::string_view value);
    void takeEntity(int code, std::string_view value);
    int kindOf(std::string_view name);
    double unfold(const Contents& contents, int depth);

    DxfCensus m_census;
    std::string m_start; ///< until it is known how the lines end
    std::string m_rest;
    char m_lineEnd = '\0';
    bool m_valueNext = false;
    bool m_stopped = false;
    int m_code = 0;
    long long m_line = 0;
    Section m_section = Outside;
    bool m_sectionNameNext = false;
    bool m_blockNameNext = false;
    std::string m_variable;
    Entity m_entity;
    std::unordered_map<std::string, int> m_kinds;
    std::unordered_map<std::string, Contents> m_blocks;
    Contents* m_block = nullptr;
    Contents m_model;
    std::unordered_map<const Contents*, double> m_unfolded;
};

/** Part of another entity, which it follows in the file. */
bool isPartOfAnother(const std::string& kind);
/** Drawn by GDAL, and so missed when no feature comes of it. */
bool isDrawn(const std::string& kind);

} // namespace Torvik::DXF
