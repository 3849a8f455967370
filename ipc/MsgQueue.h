// The in-process queue of messages that wait for the drain, and the two synchronisation classes it stands on.
#pragma once

#include <pthread.h>
#include <semaphore.h>

#include <cstdint>
#include <deque>

class CMutex {
  public:
    explicit CMutex(const char* name);
    virtual bool Lock() = 0;
    virtual bool Unlock() = 0;

  protected:
    char* m_name;  // a malloc copy; like everything here it lives until the process ends
};

// Error-checking mutex: locking it twice from one thread succeeds and needs one unlock.
class CLinuxMutex : public CMutex {
  public:
    explicit CLinuxMutex(const char* name);
    // False only for an error other than being the holder already.
    bool Lock() override;
    // False, with a line on standard output, when the caller is not the last one that locked it.
    bool Unlock() override;

  private:
    pthread_t m_owner{};
    pthread_mutex_t m_mutex{};
    pthread_mutexattr_t m_attributes{};
};

class CCountingSem {
  public:
    virtual bool Wait(int blocking, std::uint32_t timeout) = 0;
    virtual bool Post() = 0;
};

class CLinuxCountingSem : public CCountingSem {
  public:
    explicit CLinuxCountingSem(unsigned count);
    // `blocking` 1 waits as long as it takes; otherwise a `timeout` of 0 tries once. Any other timeout
    // returns true at once without touching the semaphore: a timed wait is not provided.
    bool Wait(int blocking, std::uint32_t timeout) override;
    bool Post() override;

  private:
    sem_t m_sem{};
};

class CMsgQueue {
  public:
    static constexpr std::uint32_t kAnyCode = 0xFFFF;

    explicit CMsgQueue(const char* name);
    virtual int PopByCode(std::uint32_t filter, std::uint32_t& code, void*& buffer) = 0;
    virtual int Pop(std::uint32_t& code, void*& buffer) = 0;
    virtual int Push(std::uint32_t code, void* buffer) = 0;

  protected:
    char* m_name;
};

// First in, first out, without bound; safe for several producers and consumers. It never blocks.
class CLinuxMsgQueue : public CMsgQueue {
  public:
    explicit CLinuxMsgQueue(const char* name);
    // As Pop, but takes the oldest entry whose low 16 bits equal `filter` (kAnyCode: the oldest of all).
    // Returns 0 when the queue is empty. Where no entry matches it returns 1, leaves the outputs as they
    // were, and its semaphore token stays consumed: preset `code` to 0 to tell.
    int PopByCode(std::uint32_t filter, std::uint32_t& code, void*& buffer) override;
    // Returns 1 with the oldest entry, or 0 with untouched outputs. The buffer passes to the caller, who
    // frees it.
    int Pop(std::uint32_t& code, void*& buffer) override;
    // Takes over `buffer` (a malloc block) and returns 1; 0 without taking it when memory has run out.
    int Push(std::uint32_t code, void* buffer) override;

  private:
    struct Entry {
        std::uint32_t code;
        void* buffer;
    };

    std::deque<Entry> m_entries;
    CLinuxMutex* m_mutex;
    CLinuxCountingSem* m_sem;
};
