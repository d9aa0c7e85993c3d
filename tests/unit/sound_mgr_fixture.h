#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "TslSignalMgr.h"
#include "TslSoundMgr.h"
#include "TslSoundMgrInside.h"
#include "log_lines.h"
#include "main_loop.h"
#include "mock_platform/mock_sound.h"
#include "private_member.h"

using SoundMgrHandle =
    support::PrivateMember<struct SoundMgrHandleTag, TslSoundMgrInside * TslSoundMgr::*>;
template struct support::OpenMember<SoundMgrHandle, &TslSoundMgr::m_pTslSoundMgrHandle>;

/// A sound manager over the fake platform, and what it emits on the bus.
class SoundMgrTest : public testing::Test {
protected:
    struct Signal {
        TslSignalType type;
        void *payload;
        float faded;  ///< the value behind the payload of a fade step
        std::thread::id thread;
        std::chrono::steady_clock::time_point when;
    };

    void SetUp() override {
        m_listener = TslSignalMgr::getInstance()->getSignal().addListener(
            [this](TslSignalType type, void *payload) {
                const std::lock_guard lock(m_mutex);
                const float faded =
                    type == SIGNAL_SOUND_MGR_FADE_VOLUME ? *static_cast<float *>(payload) : -1.0F;
                m_signals.push_back({type, payload, faded, std::this_thread::get_id(),
                                     std::chrono::steady_clock::now()});
            });
    }

    void TearDown() override {
        m_mgr.reset();
        TslSignalMgr::getInstance()->getSignal().removeListener(m_listener);
    }

    // With an empty log.
    void create() {
        m_mgr = std::make_unique<TslSoundMgr>();
        logs::clear();
    }

    TslSoundMgrInside &inside() { return *((*m_mgr).*member(SoundMgrHandle{})); }

    std::vector<Signal> signals() {
        const std::lock_guard lock(m_mutex);
        return m_signals;
    }

    void forget_signals() {
        const std::lock_guard lock(m_mutex);
        m_signals.clear();
    }

    std::vector<TslSignalType> types() {
        std::vector<TslSignalType> list;
        for (const auto &signal : signals()) {
            list.push_back(signal.type);
        }
        return list;
    }

    bool emitted(std::size_t count, double deadline_s = 5.0) {
        return support::run_main_loop_until([&] { return signals().size() >= count; }, deadline_s);
    }

    static void verify() { testing::Mock::VerifyAndClearExpectations(&mock::sound()); }

    std::unique_ptr<TslSoundMgr> m_mgr;

private:
    std::mutex m_mutex;
    std::vector<Signal> m_signals;
    unsigned int m_listener = 0;
};

/// An object whose handle is missing.
class SoundMgrWithoutHandle {
public:
    SoundMgrWithoutHandle() : m_handle(m_mgr.*member(SoundMgrHandle{})) {
        m_mgr.*member(SoundMgrHandle{}) = nullptr;
        logs::clear();
    }
    ~SoundMgrWithoutHandle() { delete m_handle; }
    TslSoundMgr &operator*() { return m_mgr; }

private:
    TslSoundMgr m_mgr;
    TslSoundMgrInside *m_handle;
};
