// Bodies of the signal reports A1_13, A1_11 and A1_15, and which points of which port they carry.
#pragma once

#include <cstdint>
#include <list>
#include <vector>

#include "ipc/ListBody.h"
#include "points/LiveEntry.h"
#include "points/PointRecords.h"

// All three begin alike.
inline constexpr BodyField kListEquipment{0, kEquipmentSize, EFieldForm::Reversed, "equipment"};
inline constexpr BodyField kListPort{8, 1, EFieldForm::Number, "port"};

// A1_13, every selected point.
inline constexpr BodyField kSnapshotCount{9, 1, EFieldForm::Number, "count"};
inline constexpr BodyField kSnapshotFaultA{11, 1, EFieldForm::Number, "faultA"};
inline constexpr BodyField kSnapshotFaultB{12, 1, EFieldForm::Number, "faultB"};
inline constexpr BodyField kSnapshotHead[] = {kListEquipment, kListPort, kSnapshotFaultA, kSnapshotFaultB};
inline constexpr BodyField kSnapshotEntry[] = {
    {0, 3, EFieldForm::Number, "address"},
    {3, 1, EFieldForm::Number, "value"},
};
inline constexpr ListBodyLayout kSnapshotLayout{13, 4, 0, 1024, kSnapshotCount};

// A1_11, changed points.
inline constexpr BodyField kChangesFaultA{9, 1, EFieldForm::Number, "faultA"};
inline constexpr BodyField kChangesFaultB{10, 1, EFieldForm::Number, "faultB"};
inline constexpr BodyField kChangesCount{11, 1, EFieldForm::Number, "count"};
inline constexpr BodyField kChangesHead[] = {kListEquipment, kListPort, kChangesFaultA, kChangesFaultB};
inline constexpr BodyField kChangesEntry[] = {
    {0, 2, EFieldForm::Number, "address"},
    {2, 1, EFieldForm::Number, "value"},
};
inline constexpr ListBodyLayout kChangesLayout{12, 3, 0, 512, kChangesCount};

// A1_15, changed gun signals. Bytes of an entry that are not named are fixed.
inline constexpr BodyField kGunCount{9, 2, EFieldForm::Number, "count"};
inline constexpr BodyField kGunHead[] = {kListEquipment, kListPort};
inline constexpr BodyField kGunSignal{0, 1, EFieldForm::Number, "signal"};
inline constexpr BodyField kGunMark{1, 1, EFieldForm::Fixed, nullptr};
inline constexpr BodyField kGunValue{3, 1, EFieldForm::Number, "value"};
inline constexpr BodyField kGunEntry[] = {kGunSignal, kGunValue};
inline constexpr ListBodyLayout kGunLayout{11, 5, 1, 512, kGunCount};
inline constexpr std::uint8_t kGunEntryMark = 7;     // second byte of an entry
inline constexpr std::uint8_t kGunClosing = 4;       // last byte of the body
inline constexpr std::uint8_t kGunFirstCode = 0xD0;  // gun connected; the others follow in the points' order
inline constexpr int kGunSignals = 4;

// What a point does to the two fault summaries of a report.
enum class ESummary : std::uint8_t { None, SetsA, SetsB, RaisesA, RaisesB };

// A point that the signal reports of one port look at.
struct SelectedPoint {
    static constexpr std::uint32_t kNoSlot = 0xFFFFFFFF;

    const YxPointRecord* record;
    std::uint32_t slot;  // of its last-reported byte; kNoSlot for a point that is never an entry
    ESummary summary;
};

struct GunPoint {
    const YxPointRecord* record;
    std::uint8_t signal;  // 0 to 3: connected, in holder, locked, control
};

// The points of one port, in list order, and what was last reported of them. Fixed once the settings are
// loaded.
struct PortSignals {
    std::vector<SelectedPoint> points;
    std::vector<std::uint8_t> lastReported;  // by slot: points that share a number share the byte
    std::vector<GunPoint> gunPoints;
    std::uint8_t lastGun[kGunSignals] = {};
};

// Selects from `list`, which must outlive the result.
PortSignals SelectSignals(const std::list<YxPointRecord>& list, int port);

struct FaultSummaries {
    std::uint8_t a = 0;
    std::uint8_t b = 0;

    void Take(const SelectedPoint& point) {
        const std::uint8_t value = point.record->current;
        switch (point.summary) {
            case ESummary::SetsA:
                a = value;
                break;
            case ESummary::SetsB:
                b = value;
                break;
            case ESummary::RaisesA:
                if (value != 0) a = 1;
                break;
            case ESummary::RaisesB:
                if (value != 0) b = 1;
                break;
            case ESummary::None:
                break;
        }
    }
};
