#pragma once

#include <Elementary.h>
#include <gtest/gtest.h>

namespace support {

/// A real window of the size of the screen, rendered into memory, under which a test creates what
/// it looks at. The window and all below it go at the end of the test.
class WindowTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Parent for objects; null once a test has deleted it through delete_window().
    Evas_Object *window() const { return m_window; }
    void delete_window();

    static constexpr int screen_size = 360;

private:
    Evas_Object *m_window = nullptr;
};

}  // namespace support
