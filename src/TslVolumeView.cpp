#include "TslVolumeView.h"

#include <string>

#include "TslLog.h"
#include "TslScreenReaderCtrl.h"

namespace {
constexpr int NO_VOLUME = -1;
}

class TslVolumeViewInside {
public:
    TslVolumeViewInside(int nCurrentVolume, int nMaxVolume, int nSafetyVolume)
        : m_nMaxVolume(nMaxVolume),
          m_nSafetyVolume(nSafetyVolume),
          m_nCurrentVolume(nCurrentVolume),
          m_pScreenReaderCtrl(new TslScreenReaderCtrl()) {}
    ~TslVolumeViewInside() { delete m_pScreenReaderCtrl; }
    TslVolumeViewInside(const TslVolumeViewInside &) = delete;
    TslVolumeViewInside &operator=(const TslVolumeViewInside &) = delete;

    void _setVolume(int nCurrentVolume);
    void _setSafetyVolume(int nVolume);
    void _readCurrentVolumeLevel();

    int m_nMaxVolume;
    int m_nSafetyVolume;
    int m_nCurrentVolume;
    TslScreenReaderCtrl *m_pScreenReaderCtrl;
};

void TslVolumeViewInside::_setVolume(int nCurrentVolume) {
    TslInfo("nCurrentVolume : %d", nCurrentVolume);
    if (nCurrentVolume < 0 || nCurrentVolume > m_nMaxVolume) {
        TslError("The volume is not correct. It needs to check the value is right or not.");
        return;
    }
    m_nCurrentVolume = nCurrentVolume;
}

void TslVolumeViewInside::_setSafetyVolume(int nVolume) {
    TslInfo("nCurrentVolume : %d", nVolume);
    // One above the scale means that the bar never warns.
    if (nVolume < 0 || nVolume > m_nMaxVolume + 1) {
        TslError("The volume is not correct. It needs to check the value is right or not.");
        return;
    }
    m_nSafetyVolume = nVolume;
}

void TslVolumeViewInside::_readCurrentVolumeLevel() {
    m_pScreenReaderCtrl->sayManualText(std::to_string(m_nCurrentVolume));
}

TslVolumeView::TslVolumeView(int nCurrentVolume, int nMaxVolume, int nSafetyVolume)
    : m_pVolumeViewInside(new TslVolumeViewInside(nCurrentVolume, nMaxVolume, nSafetyVolume)) {}

TslVolumeView::~TslVolumeView() {
    TslInfo("");
    delete m_pVolumeViewInside;
    m_pVolumeViewInside = nullptr;
}

bool TslVolumeView::onCreate(void * /*viewParam*/) {
    TslInfo("");
    return true;
}

Evas_Object *TslVolumeView::onCreateView(Evas_Object * /*pParent*/, void * /*viewParam*/) {
    TslInfo("");
    return nullptr;
}

void TslVolumeView::onDestroy() {
    TslInfo("");
}

void TslVolumeView::setVolume(int nCurrentVolume) {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return;
    }
    m_pVolumeViewInside->_setVolume(nCurrentVolume);
}

int TslVolumeView::getVolume() {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return NO_VOLUME;
    }
    return m_pVolumeViewInside->m_nCurrentVolume;
}

void TslVolumeView::setSafetyVolume(int nVolume) {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return;
    }
    m_pVolumeViewInside->_setSafetyVolume(nVolume);
}

int TslVolumeView::getSafetyVolume() {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return NO_VOLUME;
    }
    return m_pVolumeViewInside->m_nSafetyVolume;
}

void TslVolumeView::setMaxVolume(int nMaxVolume) {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return;
    }
    m_pVolumeViewInside->m_nMaxVolume = nMaxVolume;
}

int TslVolumeView::getMaxVolume() {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return NO_VOLUME;
    }
    return m_pVolumeViewInside->m_nMaxVolume;
}

void TslVolumeView::readCurrentVolumeLevel() {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return;
    }
    m_pVolumeViewInside->_readCurrentVolumeLevel();
}

void TslVolumeView::pop() {
    TslInfo("");
    if (m_pVolumeViewInside == nullptr) {
        TslError("m_pVolumeViewInside is not existed.");
        return;
    }
    popOut();
}
