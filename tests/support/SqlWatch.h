// Looks over the shoulder of every SQLite connection that the test program opens, and can get in its way.
#pragma once

#include <sqlite3.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

// Watches the connections that are opened while it lives; one at a time.
class CSqlWatch {
  public:
    CSqlWatch() { Watch(this); }
    ~CSqlWatch() { Watch(nullptr); }
    CSqlWatch(const CSqlWatch&) = delete;
    CSqlWatch& operator=(const CSqlWatch&) = delete;

    // Statements that began to run since the last call, in order. One that SQLite refused to prepare is not
    // among them.
    std::vector<std::string> Take() { return std::exchange(m_statements, {}); }
    // Calls `act` once, when the next statement that starts with `text` is about to run.
    void Before(const std::string& text, std::function<void()> act) { m_before[text] = std::move(act); }

  private:
    static void Watch(CSqlWatch* watch);
    void Begins(const std::string& sql);

    std::vector<std::string> m_statements;
    std::map<std::string, std::function<void()>> m_before;
};
