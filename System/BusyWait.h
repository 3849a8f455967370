// How long SQLite may wait for files that other processes hold locked.
#pragma once

struct sqlite3;

// How long a statement waits for a file that another process holds locked, milliseconds.
inline constexpr int kBusyAtStartUpMs = 10000;
inline constexpr int kBusyInLoopMs = 1000;

// A budget of waiting that any number of connections and statements share: what one of them waits, the others
// no longer can. Must outlive the connections that use it.
class CBusyWait {
  public:
    explicit CBusyWait(int milliseconds) : m_limitMs(milliseconds) {}

    // Lets `database` wait out of this budget, and no longer.
    void Serve(sqlite3* database);

    // The whole budget is there again.
    void Renew() {
        m_waitedMs = 0;
        m_refused = false;
    }
    // Whoever finds a lock from now on fails at once.
    void Refuse() { m_refused = true; }
    // Somebody has waited in vain.
    bool IsSpent() const { return m_waitedMs >= m_limitMs; }
    int WaitedMs() const { return m_waitedMs; }

  private:
    static int Wait(void* self, int tries);

    int m_limitMs;
    int m_waitedMs = 0;
    bool m_refused = false;
};
