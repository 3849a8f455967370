// A program on a pseudo-terminal of its own, and what stands on its screen.
#pragma once

#include <sys/ioctl.h>
#include <sys/types.h>
#include <termios.h>

#include <functional>
#include <string>

class COnTerminal {
  public:
    // Runs `program` in a process of its own, which ends with what it returns.
    explicit COnTerminal(const std::function<int()>& program);
    ~COnTerminal();
    COnTerminal(const COnTerminal&) = delete;
    COnTerminal& operator=(const COnTerminal&) = delete;

    void Resize(unsigned short lines, unsigned short columns);
    void Type(const std::string& text);
    void Signal(int number);
    // The screen once `text` stands on it, times as "TIME", empty lines as "~". What is in reverse is in
    // brackets, in the place of a blank before and behind it.
    std::string Until(const std::string& text);
    // How the program ends: its exit code, or minus a signal. The terminal must then be as it was.
    int End();

  private:
    bool Read(int milliseconds);
    std::string Screen() const;

    winsize m_size{24, 80, 0, 0};
    termios m_before{};
    int m_master = -1;
    int m_slave = -1;
    pid_t m_process = -1;
    std::string m_output;
    std::size_t m_since = 0;  // where the output for the present size begins
};
