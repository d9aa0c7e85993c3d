#include "window_fixture.h"

#include "main_loop.h"

namespace support {

namespace {

void window_deleted(void *data, Evas *, Evas_Object *, void *) {
    *static_cast<Evas_Object **>(data) = nullptr;
}

}  // namespace

void WindowTest::SetUp() {
    m_window = elm_win_add(nullptr, "test", ELM_WIN_BASIC);
    ASSERT_NE(m_window, nullptr);
    evas_object_event_callback_add(m_window, EVAS_CALLBACK_DEL, window_deleted, &m_window);
    evas_object_resize(m_window, screen_size, screen_size);
    evas_object_show(m_window);
    run_loop_turns();
}

void WindowTest::TearDown() {
    delete_window();
}

void WindowTest::delete_window() {
    if (m_window != nullptr) {
        evas_object_del(m_window);
    }
    run_loop_turns();
}

}  // namespace support
