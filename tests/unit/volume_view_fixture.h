#pragma once

#include <dlog.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "TslPlayerView.h"
#include "TslUtils.h"
#include "TslVolumeView.h"
#include "mock_platform/fake_efl_extension.h"
#include "mock_platform/fake_settings.h"
#include "mock_platform/mock_access.h"
#include "mock_platform/mock_circle.h"
#include "mock_platform/mock_i18n.h"
#include "mock_platform/mock_rotary.h"
#include "mock_platform/mock_uxt.h"
#include "screen_fixture.h"

namespace screens {

/// The volume screen above the player screen, as the program pushes it.
class VolumeViewTest : public ScreenTest {
protected:
    static constexpr char content_part[] = "tsl.volume.view.base.layout.swallow.content";
    static constexpr char mute_part[] = "swallow,volume,btn";
    static constexpr char minus_part[] = "swallow.button.minus";
    static constexpr char plus_part[] = "swallow.button.plus";
    static constexpr double close_delay_s = 3.0;
    static constexpr double degrees_per_level = 24.0;

    static constexpr FakeCircle::Rgba warning_bar{255, 1, 2, 254};
    static constexpr FakeCircle::Rgba warning_ground{255, 3, 4, 60};
    static constexpr FakeCircle::Rgba normal_ground{200, 201, 202, 50};

    void SetUp() override {
        ScreenTest::SetUp();
        TslUtils::setGlobalWindow(window());
        mock::fake_uxt().set_color("MUSIC_AO0292", warning_bar);
        mock::fake_uxt().set_color("MUSIC_AO0293", warning_ground);
        mock::fake_uxt().set_color("B065L3", normal_ground);
        ASSERT_TRUE(naviframe().push(new TslPlayerView(), "tsl_player_view"));
        support::run_loop_turns();
        forget();
    }
    void TearDown() override {
        TslUtils::setGlobalWindow(nullptr);
        ScreenTest::TearDown();
    }

    void push(int level = 5, int maximum = 15, int safety = 16) {
        m_view = new TslVolumeView(level, maximum, safety);
        m_alive = m_view->getWeakPtr();
        ASSERT_TRUE(naviframe().push(m_view, "tsl_volume_view"));
    }
    /// The same, come to rest on the screen.
    void push_shown(int level = 5, int maximum = 15, int safety = 16) {
        Evas_Object *stack = naviframe().getEvasObject();
        bool finished = false;
        const auto note = [](void *data, Evas_Object *, void *) {
            *static_cast<bool *>(data) = true;
        };
        evas_object_smart_callback_add(stack, "transition,finished", note, &finished);
        push(level, maximum, safety);
        ASSERT_TRUE(support::run_main_loop_until(
            [this, &finished] { return finished && content_visible(); }));
        evas_object_smart_callback_del_full(stack, "transition,finished", note, &finished);
        support::run_loop_turns();
        note_signals();
        forget();
    }
    /// Forgets log, emissions, frames of the bar and signals.
    void forget() {
        logs::clear();
        forget_emissions();
        m_signals.clear();
    }

    /// From now on the screen is asked and answered as the program's centre does it, with a level
    /// that anybody may change.
    void answer_with_level(int level) {
        m_sound_level = level;
        m_answering = true;
        m_answer = TslSignalMgr::getInstance()->getSignal().addListener(
            [this](TslSignalType type, void *) {
                if (m_answering && type == SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR) {
                    view().setVolume(m_sound_level);
                }
            });
    }
    void set_sound_level(int level) { m_sound_level = level; }

    [[nodiscard]] TslVolumeView &view() const { return *m_view; }
    [[nodiscard]] bool alive() const { return !m_alive.expired(); }
    [[nodiscard]] bool closes(double within_s) const {
        return support::run_main_loop_until([this] { return !alive(); }, within_s);
    }
    [[nodiscard]] Evas_Object *base() const { return m_view->getEvasObject(); }
    [[nodiscard]] Evas_Object *panel() const {
        return elm_object_part_content_get(base(), content_part);
    }
    [[nodiscard]] bool content_visible() const {
        return evas_object_visible_get(panel()) != EINA_FALSE;
    }
    [[nodiscard]] Evas_Object *button(const char *part) const {
        return elm_object_part_content_get(panel(), part);
    }
    [[nodiscard]] bool enabled(const char *part) const {
        return elm_object_disabled_get(button(part)) == EINA_FALSE;
    }
    [[nodiscard]] std::string style(const char *part) const {
        return elm_object_style_get(button(part));
    }
    [[nodiscard]] std::string text(const char *part) const {
        const char *found = elm_object_part_text_get(panel(), part);
        return found != nullptr ? found : "";
    }
    [[nodiscard]] Evas_Object *part(const char *name) const {
        return const_cast<Evas_Object *>(
            edje_object_part_object_get(elm_layout_edje_get(panel()), name));
    }
    /// The state of the mute button's picture.
    [[nodiscard]] std::string mute_icon() const {
        support::run_loop_turns();
        double value = 0.0;
        return edje_object_part_state_get(elm_layout_edje_get(button(mute_part)), "glyph", &value);
    }
    [[nodiscard]] static Evas_Object *bar_object() { return mock::fake_circle().last_bar(); }
    [[nodiscard]] static const FakeCircle::Bar &bar() {
        return mock::fake_circle().bar(bar_object());
    }
    [[nodiscard]] bool arrives_at(int level) const {
        return support::run_main_loop_until(
            [level] { return bar().angle == level * degrees_per_level; });
    }
    void press(const char *part) const {
        evas_object_smart_callback_call(button(part), "clicked", nullptr);
    }
    [[nodiscard]] std::string accessible_name(const char *part) const {
        return mock::fake_access().record(button(part)).name;
    }
    /// Signals to the panel, without their source "*", since the last forget().
    [[nodiscard]] const std::vector<std::string> &panel_signals() {
        support::run_loop_turns();
        return m_signals;
    }
    void note_signals() {
        for (const char *name : {"warning", "normal"}) {
            edje_object_signal_callback_add(elm_layout_edje_get(panel()), name, "*", note_signal,
                                            &m_signals);
        }
    }

    /// What the screen asked for with SET, in order.
    [[nodiscard]] std::vector<int> levels_set() const {
        std::vector<int> levels;
        for (const auto &[type, payload] : emissions()) {
            if (type == SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR) {
                levels.push_back(static_cast<int>(payload));
            }
        }
        return levels;
    }
    [[nodiscard]] int times_got() const {
        return static_cast<int>(
            std::count_if(emissions().begin(), emissions().end(), [](const Emission &emission) {
                return emission.first == SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR;
            }));
    }

    void stop_answering() {
        m_answering = false;
        if (m_answer != 0) {
            TslSignalMgr::getInstance()->getSignal().removeListener(m_answer);
            m_answer = 0;
        }
    }
    ~VolumeViewTest() override { stop_answering(); }

private:
    static void note_signal(void *data, Evas_Object *, const char *emission, const char *) {
        static_cast<std::vector<std::string> *>(data)->emplace_back(emission);
    }

    TslVolumeView *m_view = nullptr;
    app_assist::WViewWeakPtr m_alive;
    std::vector<std::string> m_signals;
    int m_sound_level = 0;
    bool m_answering = false;
    unsigned int m_answer = 0;
};

}  // namespace screens
