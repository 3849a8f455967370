// Stand-in for the unit's closed shared-memory library: the same class over one System V segment, for
// machines that have no acquisition processes.
#pragma once

#include <cstddef>
#include <cstdint>

// The segment, fixed to the byte: whoever attaches first creates it, nobody removes it. Little-endian
// throughout.
struct CShmLayout {
    struct Table {
        std::size_t offset;
        int entries;
        std::size_t entrySize;
    };
    static constexpr int kKey = 0x5A53;
    static constexpr unsigned kPermissions = 0660;
    static constexpr char kMagic[] = "CSHM";  // bytes 0 to 3 of the header, written last by the creator
    static constexpr std::uint32_t kVersion = 1;
    static constexpr std::size_t kVersionOffset = 4;
    static constexpr std::size_t kSizeOffset = 8;
    static constexpr Table kHeader{0, 1, 64};
    static constexpr Table kYc{64, 8192, 52};
    static constexpr Table kYx{426048, 8192, 48};
    static constexpr Table kYx2{819264, 8192, 48};
    static constexpr Table kDd{1212480, 256, 56};
    static constexpr Table kGunState{1226816, 8, 4};
    static constexpr Table kDevice{1226848, 1, 64};
    static constexpr Table kCharge{1226912, 8, 344};
    static constexpr std::size_t kSize = 1229664;
};

// Attaches the shared tables. Where the segment cannot be had, one line on standard error says why, every
// accessor returns null and the three data members are null.
class CShm {
  public:
    CShm();
    ~CShm();
    CShm(const CShm&) = delete;
    CShm& operator=(const CShm&) = delete;

    // Pointers into shared memory, valid as long as this object; null outside the table (0 to 8191, DD 0 to
    // 255).
    void* getYc(int index);
    void* getYx(int index);
    void* getYx2(int index);
    void* getDd(int index);

  protected:
    void* m_pGunState = nullptr;  // 8 entries of 4 bytes, one per port
    void* m_pDevice = nullptr;    // the station's device area, 64 bytes
    void* m_pCharge = nullptr;    // 8 charging areas of 344 bytes, one per port

  private:
    unsigned char* Entry(const CShmLayout::Table& table, int index) const;

    unsigned char* m_base = nullptr;
};
