#pragma once

namespace Torvik::Database {

/** The turn to write, among the threads of this process. SQLite has whoever meets a writer try again after pauses, so a
 *  thread with one statement after another would keep the rest out, who would take it for another program. Here who
 *  waits for a limited time comes before who waits without a limit. Not to be taken twice by the same thread. */
class WriteTurn {
public:
    static constexpr int withoutLimit = -1;
    /** Stands for SQLite's result code in the status of a write whose turn did not come in time. */
    static constexpr int notCome = -1;

    explicit WriteTurn(int waitMs = withoutLimit);
    ~WriteTurn();
    WriteTurn(const WriteTurn&) = delete;
    WriteTurn& operator=(const WriteTurn&) = delete;

    bool hasCome() const { return m_hasCome; }

private:
    bool m_hasCome = true;
};

} // namespace Torvik::Database
