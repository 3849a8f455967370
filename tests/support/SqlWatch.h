// Looks over the shoulder of every SQLite connection that the test program opens, and can get in its way.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

// Watches the connections that are opened while it lives; one at a time.
class CSqlWatch {
  public:
    CSqlWatch();
    ~CSqlWatch();
    CSqlWatch(const CSqlWatch&) = delete;
    CSqlWatch& operator=(const CSqlWatch&) = delete;

    // Statements that began to run since the last call, in order. One that SQLite refused to prepare is not
    // among them.
    std::vector<std::string> Take();
    // Calls `act` once, when the next statement that starts with `text` is about to run.
    void Before(const std::string& text, std::function<void()> act) { m_before[text] = std::move(act); }

  private:
    friend struct SqlWatchHooks;

    std::vector<std::string> m_statements;
    std::map<std::string, std::function<void()>> m_before;
};
