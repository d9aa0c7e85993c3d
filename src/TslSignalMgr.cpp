#include "TslSignalMgr.h"

template class app_assist::WSignal<void(TslSignalType, void *)>;
template class TSingleton<TslSignalMgr>;

TslSignalMgr::TslSignalMgr() = default;

TslSignalMgr::~TslSignalMgr() = default;

app_assist::WSignal<void(TslSignalType, void *)> &TslSignalMgr::getSignal() {
    return m_signal;
}
