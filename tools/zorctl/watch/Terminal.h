// The terminal as a full screen.
#pragma once

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

    // Takes over the terminal of standard input and output; standard error is silent from then on where it is
    // a terminal too. Returns an empty text, or why there is none. Signals that end the program have to be
    // stopped before.
    std::string Open();

    int Lines() const;
    int Columns() const;
    void Draw(const std::vector<ScreenLine>& screen);

    enum class EWake : std::uint8_t {
        Time,     // nothing has happened
        Changed,  // the screen has another size, or is to be drawn anew
        Quit,     // by key or signal
        Lost      // there is no terminal any more
    };
    // Waits 5 ms, or until a signal has come.
    static EWake Wait(CStopSignals& stop);

  private:
    void* m_screen = nullptr;
    int m_errors = -1;  // descriptor of what was standard error
};
