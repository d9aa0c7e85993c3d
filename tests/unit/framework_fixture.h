#pragma once

#include <Elementary.h>
#include <dlog.h>
#include <gmock/gmock.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app-assist/WContentViewController.h"
#include "app-assist/WViewController.h"
#include "app-assist/WWindowController.h"
#include "log_lines.h"
#include "main_loop.h"

/// Views and windows that write down what happens to them, and the window under which they live.
namespace framework {

/// What happened, in order: "view.onCreate", "view.gone" ...
using Journal = std::vector<std::string>;

/// A view of any class that writes down its common operations and does what the test asks in them.
template <typename Base>
class Recording : public Base {
public:
    explicit Recording(Journal &journal, std::string name = "view")
        : m_journal(journal), m_name(std::move(name)) {}

    bool accept_creation = true;
    bool make_object = true;
    std::function<void()> in_created;
    std::function<void()> in_destroy;
    void *seen_param = nullptr;

protected:
    ~Recording() override { note("gone"); }

    void note(const std::string &what) { m_journal.push_back(m_name + "." + what); }

    bool onCreate(void *param) override {
        note("onCreate");
        seen_param = param;
        return accept_creation;
    }

    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        note("onCreateView");
        if (!make_object) {
            return nullptr;
        }
        Evas_Object *layout = elm_layout_add(parent);
        elm_layout_theme_set(layout, "layout", "application", "titlebar");
        evas_object_show(layout);
        return layout;
    }

    void onCreated() override {
        note("onCreated");
        if (in_created) {
            in_created();
        }
    }

    void onDestroy() override {
        note("onDestroy");
        if (in_destroy) {
            in_destroy();
        }
    }

private:
    Journal &m_journal;
    std::string m_name;
};

using View = Recording<app_assist::WViewController>;

/// A window with a base layout that has the part "elm.swallow.content".
class Window : public app_assist::WWindowController {
public:
    explicit Window(Journal &journal, const char *name = "window")
        : WWindowController(name, ELM_WIN_BASIC), m_journal(journal) {}

    bool make_base_layout = true;

protected:
    ~Window() override { m_journal.emplace_back("window.gone"); }

    Evas_Object *onCreateBaseLayout(Evas_Object *win, Evas_Object **) override {
        if (!make_base_layout) {
            return nullptr;
        }
        Evas_Object *layout = elm_layout_add(win);
        elm_layout_theme_set(layout, "layout", "application", "titlebar");
        evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        elm_win_resize_object_add(win, layout);
        evas_object_show(layout);
        return layout;
    }

    void onDestroy() override { m_journal.emplace_back("window.onDestroy"); }
    void onDetachBaseViewController(app_assist::WViewController *view) override {
        m_journal.emplace_back(view != nullptr ? "window.detached" : "window.detached nothing");
    }

private:
    Journal &m_journal;
};

/// One shown window, gone with all that is below it at the end of the test.
class WindowedTest : public testing::Test {
protected:
    void SetUp() override {
        m_window = new Window(m_journal);
        m_window->make_base_layout = with_base_layout();
        ASSERT_TRUE(m_window->createAndShow());
        evas_object_event_callback_add(win(), EVAS_CALLBACK_DEL, gone, &m_window);
        evas_object_resize(win(), 360, 360);
        support::run_loop_turns();
        m_journal.clear();
    }

    void TearDown() override {
        if (m_window != nullptr) {
            m_window->destroy();
        }
        support::run_loop_turns();
    }

    virtual bool with_base_layout() const { return true; }

    Window &window() { return *m_window; }
    Evas_Object *win() { return m_window->getEvasObject(); }
    Evas_Object *base_layout() { return m_window->getBaseLayoutEvasObject(); }
    void delete_window() { evas_object_del(win()); }

    Journal m_journal;

private:
    static void gone(void *data, Evas *, Evas_Object *, void *) {
        *static_cast<Window **>(data) = nullptr;
    }

    Window *m_window = nullptr;
};

/// Writes the framework's log of a process that aborts to standard error, where a death test can
/// read it. Called first in the statement of a death test.
inline void show_log_at_abort() {
    std::signal(SIGABRT, [](int) {
        for (const auto &line : logs::all()) {
            std::fprintf(stderr, "[%d] %s %s\n", line.level, line.tag.c_str(),
                         line.message.c_str());
        }
        std::signal(SIGABRT, SIG_DFL);
        std::raise(SIGABRT);
    });
}

/// The process has ended by a failed assertion with these texts.
inline auto assertion(const std::string &expression, const std::string &message) {
    return testing::AllOf(testing::HasSubstr("Assertion `" + expression + "' failed."),
                          testing::HasSubstr("[" + std::to_string(DLOG_ERROR) +
                                             "] WAPP * Critical * WASSERT! " + message + "\n"));
}

/// Death tests that start anew: the toolkit has threads, which a fork alone would lose.
#define EXPECT_ASSERTION(statement, expression, message) \
    do {                                                 \
        GTEST_FLAG_SET(death_test_style, "threadsafe");  \
        EXPECT_DEATH(                                    \
            {                                            \
                framework::show_log_at_abort();          \
                statement;                               \
            },                                           \
            framework::assertion(expression, message));  \
    } while (false)

/// Ends the process with status 7 when the statement throws std::bad_function_call through the
/// toolkit, which isn't fit to go on after that.
#define EXPECT_BAD_FUNCTION_CALL(statement)                \
    do {                                                   \
        GTEST_FLAG_SET(death_test_style, "threadsafe");    \
        EXPECT_EXIT(                                       \
            {                                              \
                try {                                      \
                    statement;                             \
                } catch (const std::bad_function_call &) { \
                    std::_Exit(7);                         \
                }                                          \
                std::_Exit(0);                             \
            },                                             \
            testing::ExitedWithCode(7), "");               \
    } while (false)

}  // namespace framework
