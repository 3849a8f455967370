// The terminal as a full screen, and everything that can end or change it.
#pragma once

#include <csignal>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/zorctl/messages/MainChannel.h"
#include "tools/zorctl/watch/ViewLayout.h"

class CTerminal {
  public:
    CTerminal() = default;
    // Leaves the terminal as it was found.
    ~CTerminal();
    CTerminal(const CTerminal&) = delete;
    CTerminal& operator=(const CTerminal&) = delete;

    // Takes over the terminal of standard input and output. Returns an empty text, or why there is none. From
    // then on Ctrl-C, SIGTERM and SIGHUP end no more than a wait, and standard error is silent where it is a
    // terminal too.
    std::string Open();

    int Lines() const;
    int Columns() const;
    void Draw(const std::vector<ScreenLine>& screen);

    enum class EWake : std::uint8_t {
        Time,     // it is `until`
        Changed,  // the screen has another size, or is to be drawn anew
        Quit,     // by key or signal
        Lost      // there is no terminal any more
    };
    EWake Wait(CDeadline until);

  private:
    EWake TakeSignals();
    EWake TakeKeys();
    void FollowSize();
    void TakeBack();

    void* m_screen = nullptr;
    int m_signals = -1;  // descriptor
    int m_errors = -1;   // descriptor of what was standard error
    sigset_t m_before{};
};
