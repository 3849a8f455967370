// Commands of a transcript around zorctl: what is done with it, and what stands around it.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/unit/Commands.h"
#include "tests/unit/tools/OnTerminal.h"

class CToolCommands {
  public:
    explicit CToolCommands(CCommandLine& line);
    ~CToolCommands();
    CToolCommands(const CToolCommands&) = delete;
    CToolCommands& operator=(const CToolCommands&) = delete;

    const Commands& Table() const { return m_table; }
    // `text` with names in place of the ids of this process and of those that it started, and with TIME in
    // place of the times that the kernel keeps.
    std::string Masked(std::string text) const;

  private:
    struct Play;

    void Zorctl(const std::string& arguments);
    static void Complete(const std::string& words);
    void StartProcess(const std::string& name);
    void StartPlay(const std::string& options);
    void GoOnUntil(double seconds);

    CCommandLine& m_line;
    std::vector<pid_t> m_processes;
    std::unique_ptr<Play> m_play;
    std::unique_ptr<COnTerminal> m_terminal;
    const Commands m_table;
};
