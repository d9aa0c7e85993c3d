#define EFL_ACCESS_OBJECT_PROTECTED

#include <Elementary.h>
#include <gio/gio.h>
#include <gtest/gtest.h>
#include <uxt.h>

#include <cstring>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "access/screen_reader.h"
#include "common/gobject.h"
#include "main_loop.h"

namespace {

char *counted_name(void *data, Elm_Interface_Atspi_Accessible *) {
    return strdup(std::to_string(++*static_cast<int *>(data)).c_str());
}
char *no_name(void *, Elm_Interface_Atspi_Accessible *) {
    return nullptr;
}

class Accessible : public testing::Test {
protected:
    void SetUp() override {
        m_window = elm_win_add(nullptr, "access", ELM_WIN_BASIC);
        m_button = elm_button_add(m_window);
    }
    void TearDown() override { evas_object_del(m_window); }

    [[nodiscard]] std::string name() const {
        const char *found = efl_access_object_i18n_name_get(m_button);
        return found != nullptr ? found : "";
    }

    [[nodiscard]] int seen_below_window() const {
        Eina_List *children = efl_access_object_access_children_get(m_window);
        const int count = static_cast<int>(eina_list_count(children));
        eina_list_free(children);
        return count;
    }

    Evas_Object *m_window = nullptr;
    Evas_Object *m_button = nullptr;
};

TEST_F(Accessible, HasWhatIsSet) {
    elm_atspi_accessible_name_set(m_button, "Play");
    elm_atspi_accessible_description_set(m_button, "Starts the video");
    elm_atspi_accessible_role_set(m_button, EFL_ACCESS_ROLE_CHECK_BOX);
    elm_atspi_accessible_reading_info_type_set(m_button, 5);
    elm_atspi_accessible_translation_domain_set(m_button, "films");
    EXPECT_EQ(name(), "Play");
    EXPECT_STREQ(efl_access_object_description_get(m_button), "Starts the video");
    EXPECT_EQ(efl_access_object_role_get(m_button), EFL_ACCESS_ROLE_CHECK_BOX);
    EXPECT_EQ(efl_access_object_reading_info_type_get(m_button), 5u);
    EXPECT_STREQ(efl_access_object_translation_domain_get(m_button), "films");
}

TEST_F(Accessible, KeepsItsRoleForANumberThatIsNone) {
    elm_atspi_accessible_role_set(m_button, EFL_ACCESS_ROLE_CHECK_BOX);
    elm_atspi_accessible_role_set(m_button, 0);
    elm_atspi_accessible_role_set(m_button, 100000);
    EXPECT_EQ(efl_access_object_role_get(m_button), EFL_ACCESS_ROLE_CHECK_BOX);
}

TEST_F(Accessible, HasTheNumberOfAPushButton) {
    elm_atspi_accessible_role_set(m_button, 43);
    EXPECT_EQ(efl_access_object_role_get(m_button), EFL_ACCESS_ROLE_PUSH_BUTTON);
}

TEST_F(Accessible, IsAskedForItsNameAtEachQuery) {
    int queries = 0;
    elm_atspi_accessible_name_set(m_button, "Play");
    elm_atspi_accessible_name_cb_set(m_button, counted_name, &queries);
    EXPECT_EQ(name(), "1");
    EXPECT_EQ(name(), "2");
    elm_atspi_accessible_name_cb_set(m_button, nullptr, nullptr);
    EXPECT_EQ(name(), "Play");
    EXPECT_EQ(queries, 2);
}

TEST_F(Accessible, HasItsOwnNameWhereTheCallbackGivesNone) {
    elm_atspi_accessible_name_set(m_button, "Play");
    elm_atspi_accessible_name_cb_set(m_button, no_name, nullptr);
    EXPECT_EQ(name(), "Play");
}

TEST_F(Accessible, PartOfAThemeIsAskedThroughItsAccessObject) {
    int queries = 0;
    Evas_Object *plain = evas_object_rectangle_add(evas_object_evas_get(m_window));
    Evas_Object *access_object = elm_access_object_register(plain, m_window);
    elm_atspi_accessible_name_cb_set(access_object, counted_name, &queries);
    EXPECT_STREQ(efl_access_object_i18n_name_get(access_object), "1");
}

TEST_F(Accessible, IsSeenOnceThoughItIsRegisteredAgain) {
    Evas_Object *plain = evas_object_rectangle_add(evas_object_evas_get(m_window));
    elm_access_object_register(plain, m_window);
    const int before = seen_below_window();
    Evas_Object *again = elm_access_object_register(plain, m_window);
    EXPECT_EQ(elm_access_object_get(plain), again);
    EXPECT_EQ(seen_below_window(), before);
    EXPECT_EQ(elm_access_object_register(nullptr, m_window), nullptr);
}

TEST_F(Accessible, PageIsKnownAsTheWidgetAroundItsContent) {
    Evas_Object *naviframe = elm_naviframe_add(m_window);
    Evas_Object *content = elm_layout_add(naviframe);
    Elm_Object_Item *page =
        elm_naviframe_item_push(naviframe, nullptr, nullptr, nullptr, content, nullptr);
    elm_atspi_accessible_name_set(page, "Films");
    const Evas_Object *around = elm_object_parent_widget_get(content);
    EXPECT_EQ(efl_access_object_role_get(around), EFL_ACCESS_ROLE_PAGE_TAB);
    EXPECT_STREQ(efl_access_object_i18n_name_get(around), "Films");
    // One without content has nothing to be known by.
    Elm_Object_Item *empty =
        elm_naviframe_item_push(naviframe, nullptr, nullptr, nullptr, nullptr, nullptr);
    elm_atspi_accessible_name_set(empty, "None");
    EXPECT_STREQ(efl_access_object_i18n_name_get(around), "Films");
}

TEST_F(Accessible, MayBePassedOverByTheHighlight) {
    elm_atspi_accessible_can_highlight_set(m_button, EINA_FALSE);
    EXPECT_EQ(efl_access_object_access_type_get(m_button), EFL_ACCESS_TYPE_SKIPPED);
    elm_atspi_accessible_can_highlight_set(m_button, EINA_TRUE);
    EXPECT_EQ(efl_access_object_access_type_get(m_button), EFL_ACCESS_TYPE_REGULAR);
}

TEST_F(Accessible, NullAndPlainObjectsAreIgnored) {
    Evas_Object *plain = evas_object_rectangle_add(evas_object_evas_get(m_window));
    for (Evas_Object *object : {static_cast<Evas_Object *>(nullptr), plain}) {
        elm_atspi_accessible_name_set(object, "Play");
        elm_atspi_accessible_description_set(object, "Play");
        elm_atspi_accessible_role_set(object, 43);
        elm_atspi_accessible_reading_info_type_set(object, 1);
        elm_atspi_accessible_translation_domain_set(object, "films");
        elm_atspi_accessible_name_cb_set(object, no_name, nullptr);
        elm_atspi_accessible_can_highlight_set(object, EINA_TRUE);
    }
    elm_atspi_bridge_utils_say(nullptr, EINA_TRUE, nullptr, nullptr);
    EXPECT_FALSE(efl_isa(plain, EFL_ACCESS_OBJECT_MIXIN));
    EXPECT_EQ(name(), "");
}

/// A desktop that says whether a screen reader is on, on a private session bus. It serves its
/// object on a thread of its own.
class Desktop {
public:
    Desktop() : m_context(g_main_context_new()), m_loop(g_main_loop_new(m_context, FALSE)) {
        m_thread = std::thread([this] {
            g_main_context_push_thread_default(m_context);
            g_main_loop_run(m_loop);
            g_main_context_pop_thread_default(m_context);
        });
    }
    ~Desktop() {
        g_main_loop_quit(m_loop);
        m_thread.join();
        g_main_loop_unref(m_loop);
        g_main_context_unref(m_context);
    }
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// Takes the name, with the screen reader on or off.
    void appear(bool reader) {
        run([this, reader] {
            m_reader = reader;
            m_bus.reset(connect());
            const GDBusInterfaceVTable table{nullptr, &Desktop::get_property, nullptr, {}};
            g_dbus_connection_register_object(m_bus.get(), "/org/a11y/bus", interface(), &table,
                                              this, nullptr, nullptr);
            call("RequestName", g_variant_new("(su)", "org.a11y.Bus", 0u));
        });
    }
    void vanish() {
        run([this] {
            g_dbus_connection_close_sync(m_bus.get(), nullptr, nullptr);
            m_bus.reset();
        });
    }
    void set_reader(bool reader) {
        run([this, reader] {
            m_reader = reader;
            GVariantBuilder changed;
            g_variant_builder_init(&changed, G_VARIANT_TYPE("a{sv}"));
            g_variant_builder_add(&changed, "{sv}", "ScreenReaderEnabled",
                                  g_variant_new_boolean(reader));
            g_dbus_connection_emit_signal(
                m_bus.get(), nullptr, "/org/a11y/bus", "org.freedesktop.DBus.Properties",
                "PropertiesChanged",
                g_variant_new("(sa{sv}as)", "org.a11y.Status", &changed, nullptr), nullptr);
        });
    }

private:
    static GDBusConnection *connect() {
        return g_dbus_connection_new_for_address_sync(
            g_getenv("DBUS_SESSION_BUS_ADDRESS"),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
    }
    static GDBusInterfaceInfo *interface() {
        static GDBusNodeInfo *const node = g_dbus_node_info_new_for_xml(
            "<node><interface name='org.a11y.Status'>"
            "<property name='ScreenReaderEnabled' type='b' access='read'/></interface></node>",
            nullptr);
        return node->interfaces[0];
    }
    static GVariant *get_property(GDBusConnection *, const gchar *, const gchar *, const gchar *,
                                  const gchar *, GError **, gpointer self) {
        return g_variant_new_boolean(static_cast<Desktop *>(self)->m_reader);
    }
    void call(const char *method, GVariant *arguments) {
        const host::GVariantPtr answer(g_dbus_connection_call_sync(
            m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        ASSERT_TRUE(answer);
    }
    void run(const std::function<void()> &task) {
        std::packaged_task<void()> packaged(task);
        g_main_context_invoke(
            m_context,
            [](gpointer data) -> gboolean {
                (*static_cast<std::packaged_task<void()> *>(data))();
                return G_SOURCE_REMOVE;
            },
            &packaged);
        packaged.get_future().wait();
    }

    GMainContext *m_context;
    GMainLoop *m_loop;
    std::thread m_thread;
    host::GObjectPtr<GDBusConnection> m_bus;
    bool m_reader = false;
};

struct BusDown {
    void operator()(GTestDBus *bus) const {
        g_test_dbus_down(bus);
        g_object_unref(bus);
    }
};

// One test: the watch begins once in a process and follows what comes.
TEST(ScreenReader, IsFollowedWhileDesktopsComeAndGo) {
    const std::unique_ptr<GTestDBus, BusDown> bus(g_test_dbus_new(G_TEST_DBUS_NONE));
    g_test_dbus_up(bus.get());
    Desktop desktop;

    host::start_accessibility();
    EXPECT_EQ(uxt_access_is_accessibility_enabled(), 0);

    desktop.appear(true);
    EXPECT_TRUE(
        support::run_main_loop_until([] { return uxt_access_is_accessibility_enabled() != 0; }));
    elm_atspi_bridge_utils_say("7", EINA_TRUE, nullptr, nullptr);

    desktop.set_reader(false);
    EXPECT_TRUE(
        support::run_main_loop_until([] { return uxt_access_is_accessibility_enabled() == 0; }));
    desktop.set_reader(true);
    EXPECT_TRUE(
        support::run_main_loop_until([] { return uxt_access_is_accessibility_enabled() != 0; }));

    desktop.vanish();
    EXPECT_TRUE(
        support::run_main_loop_until([] { return uxt_access_is_accessibility_enabled() == 0; }));
}

}  // namespace
