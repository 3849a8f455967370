// Detection of status changes: every tick, every point.
#include "app/RuntimeData.h"
#include "events/EventText.h"
#include "points/ShmCtrl.h"

void CRuntimeData::DetectStatusChanges() {
    BeginEventWalk();
    for (YxPointRecord& point : m_yxPoints) {
        // The walk ends at a source it does not know and at an entry that is not there.
        std::uint8_t state = 0;
        if (!m_shm->ReadSignal(point.source, point.pointNumber, state)) break;
        point.current = state;
        if (state == point.previous) continue;
        ++m_signalGeneration;
        // Every increase is a rise; a decrease counts only where it reaches 0.
        if (state > point.previous)
            RecordChange({&point, state, true});
        else if (state == 0)
            RecordChange({&point, state, false});
        point.previous = state;
    }
    EndEventWalk();
}

void CRuntimeData::RecordChange(const StatusChange& change) {
    const YxPointRecord& point = *change.point;
    m_walk.changes.push_back(change);
    WriteEventText(m_eventText, point.level, point.name, change.rising);
    InsertSOE(change.value, point.pointNumber, point.source == kSourceYx2 ? 1 : 0, m_eventText);
}
