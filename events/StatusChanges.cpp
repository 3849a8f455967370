// Detection of status changes: every tick, every point.
#include "app/RuntimeData.h"
#include "points/ShmCtrl.h"

void CRuntimeData::DetectStatusChanges() {
    for (YxPointRecord& point : m_yxPoints) {
        // The walk ends at a source it does not know and at an entry that is not there.
        std::uint8_t state = 0;
        if (!m_shm->ReadSignal(point.source, point.pointNumber, state)) break;
        point.current = state;
        if (state == point.previous) continue;
        // Every increase is a rise; a decrease counts only where it reaches 0.
        if (state > point.previous || state == 0) m_walk.Add(point, state > point.previous, *m_shm);
        point.previous = state;
    }
    if (!m_walk.IsEmpty()) StoreChanges();
}

void CRuntimeData::StoreChanges() {
    if (!m_walk.Open()) return;
    for (const StatusChange* change = m_walk.NewBegin(); change != m_walk.NewEnd(); ++change)
        CountSwitching(change->point->pointNumber, change->point->source == kSourceYx2 ? 1 : 0);
    m_walk.Store();
    m_recordValue = static_cast<std::int32_t>(m_walk.LastId());
}
