#include "app-assist/WMenuPopupController.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "framework_fixture.h"
#include "mock_platform/mock_keys.h"

namespace {

int g_rotation = 0;
int g_placements = 0;

}  // namespace

// The program's calls come here: the engine has neither a screen nor a side up.
extern "C" {

void elm_win_screen_size_get(const Evas_Object *, int *x, int *y, int *w, int *h) {
    if (x != nullptr) {
        *x = 0;
    }
    if (y != nullptr) {
        *y = 0;
    }
    *w = 360;
    *h = 480;
    ++g_placements;
}

int elm_win_rotation_get(const Evas_Object *) {
    return g_rotation;
}

}  // extern "C"

namespace {

using app_assist::WMenuPopupController;
using framework::Journal;

constexpr std::string_view tag = logs::framework_tag;

class Menu : public WMenuPopupController {
public:
    explicit Menu(Journal &journal, std::string name = "menu")
        : m_journal(journal), m_name(std::move(name)) {}

protected:
    ~Menu() override { m_journal.push_back(m_name + ".gone"); }

private:
    Journal &m_journal;
    std::string m_name;
};

class MenuTest : public framework::WindowedTest {
protected:
    void SetUp() override {
        WindowedTest::SetUp();
        g_rotation = 0;
        m_naviframe = elm_naviframe_add(win());
        evas_object_show(m_naviframe);
    }

    Menu *created(const std::string &name = "menu") {
        auto *menu = new Menu(m_journal, name);
        EXPECT_TRUE(menu->createMenu(win(), m_naviframe));
        return menu;
    }

    // The toolkit keeps the items of a menu in a list of its own, which a finger would touch.
    static void select(WMenuPopupController *menu, int index) {
        Evas_Object *list = list_below(menu->getEvasObject());
        ASSERT_NE(list, nullptr);
        Elm_Object_Item *item = elm_list_first_item_get(list);
        for (int i = 0; i < index; ++i) {
            item = elm_list_item_next(item);
        }
        elm_list_item_selected_set(item, EINA_TRUE);
    }

    static Evas_Object *list_below(Evas_Object *object) {
        const char *type = elm_object_widget_type_get(object);
        if (type != nullptr && std::strcmp(type, "Elm_List") == 0) {
            return object;
        }
        Evas_Object *found = nullptr;
        Eina_List *members = evas_object_smart_members_get(object);
        for (Eina_List *node = members; node != nullptr && found == nullptr;
             node = eina_list_next(node)) {
            found = list_below(static_cast<Evas_Object *>(eina_list_data_get(node)));
        }
        eina_list_free(members);
        return found;
    }

    static std::pair<int, int> place_of(WMenuPopupController *menu) {
        int x = 0;
        int y = 0;
        evas_object_geometry_get(menu->getEvasObject(), &x, &y, nullptr, nullptr);
        return {x, y};
    }

    Evas_Object *m_naviframe = nullptr;
};

TEST_F(MenuTest, IsMadeHidden) {
    Menu *menu = created();
    EXPECT_STREQ(menu->getClassName(), "WViewController");
    EXPECT_STREQ(elm_object_widget_type_get(menu->getEvasObject()), "Elm_Ctxpopup");
    EXPECT_STREQ(elm_object_style_get(menu->getEvasObject()), "more/default");
    EXPECT_FALSE(evas_object_visible_get(menu->getEvasObject()));
    EXPECT_TRUE(elm_ctxpopup_auto_hide_disabled_get(menu->getEvasObject()));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(MenuTest, PrefersToOpenDownThenUp) {
    Menu *menu = created();
    Elm_Ctxpopup_Direction order[4] = {};
    elm_ctxpopup_direction_priority_get(menu->getEvasObject(), &order[0], &order[1], &order[2],
                                        &order[3]);
    const int expected[] = {0, 3, 4, 4};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(static_cast<int>(order[i]), expected[i]);
    }
}

TEST_F(MenuTest, CreationWithoutTheWindowIsAnError) {
    auto *menu = new Menu(m_journal);
    EXPECT_FALSE(menu->create(base_layout(), nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Call createMenu first!"),
                                  logs::error("* Critical * No view object created!")},
                                 tag));
    menu->destroy();
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
}

TEST_F(MenuTest, ItemsNeedTheMenu) {
    auto *menu = new Menu(m_journal);
    EXPECT_EQ(menu->appendItem("item", [] {}), nullptr);
    EXPECT_TRUE(LoggedIn("appendItem", DLOG_ERROR, "* Critical * Create pop-up first!", tag));
    menu->destroy();
}

TEST_F(MenuTest, ShowingNeedsTheMenu) {
    auto *menu = new Menu(m_journal);
    EXPECT_FALSE(menu->showMenu());
    EXPECT_TRUE(LoggedIn("showMenu", DLOG_ERROR, "* Critical * Pop-up is Not created!", tag));
    menu->destroy();
}

TEST_F(MenuTest, SelectedItemCallsItsHandlerAndDeletesTheMenu) {
    Menu *menu = created();
    std::vector<int> selected;
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(menu->appendItem("item", [&selected, i] { selected.push_back(i); }), nullptr);
    }
    menu->showMenu();
    select(menu, 1);
    ASSERT_TRUE(support::run_main_loop_until([&] { return !selected.empty(); }));
    EXPECT_EQ(selected, std::vector<int>{1});
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
}

TEST_F(MenuTest, HandlerMayDestroyTheMenuItself) {
    Menu *menu = created();
    bool called = false;
    menu->appendItem("item", [&called, menu] {
        menu->destroy();
        called = true;
    });
    menu->showMenu();
    select(menu, 0);
    ASSERT_TRUE(support::run_main_loop_until([&] { return called; }));
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
}

TEST_F(MenuTest, ItemWithoutHandlerThrowsWhenSelected) {
    EXPECT_BAD_FUNCTION_CALL({
        Menu *menu = created();
        menu->appendItem("item", nullptr);
        menu->showMenu();
        select(menu, 0);
        // The throw ends it.
        EXPECT_TRUE(support::run_main_loop_until([] { return false; }));
    });
}

// ---- place

TEST_F(MenuTest, StandsAtTheMiddleOfTheBottomEdge) {
    Menu *menu = created();
    EXPECT_TRUE(menu->showMenu());
    EXPECT_TRUE(evas_object_visible_get(menu->getEvasObject()));
    EXPECT_EQ(place_of(menu), std::pair(180, 480));
}

TEST_F(MenuTest, StandsAtTheBottomEdgeOfATurnedScreen) {
    for (const int rotation : {90, 270}) {
        g_rotation = rotation;
        Menu *menu = created();
        EXPECT_TRUE(menu->showMenu());
        EXPECT_EQ(place_of(menu), std::pair(240, 360));
        menu->destroy();
    }
}

TEST_F(MenuTest, UpsideDownIsAsUpright) {
    g_rotation = 180;
    Menu *menu = created();
    menu->showMenu();
    EXPECT_EQ(place_of(menu), std::pair(180, 480));
}

TEST_F(MenuTest, FollowsAResizeAndIsShownByIt) {
    Menu *menu = created();
    evas_object_resize(m_naviframe, 100, 100);
    EXPECT_TRUE(evas_object_visible_get(menu->getEvasObject()));
    EXPECT_EQ(place_of(menu), std::pair(180, 480));
}

TEST_F(MenuTest, FollowsARotationAndIsShownByIt) {
    Menu *menu = created();
    g_rotation = 90;
    evas_object_smart_callback_call(win(), "rotation,changed", nullptr);
    EXPECT_TRUE(evas_object_visible_get(menu->getEvasObject()));
    EXPECT_EQ(place_of(menu), std::pair(240, 360));
}

TEST_F(MenuTest, GoneMenuLeavesNoHooks) {
    Menu *first = created("first");
    Menu *second = created("second");
    second->destroy();
    // The first still follows, and nothing is called for the second.
    evas_object_resize(m_naviframe, 120, 120);
    EXPECT_TRUE(evas_object_visible_get(first->getEvasObject()));
    first->destroy();
    g_placements = 0;
    evas_object_resize(m_naviframe, 140, 140);
    evas_object_smart_callback_call(win(), "rotation,changed", nullptr);
    EXPECT_EQ(g_placements, 0);
    EXPECT_EQ(m_journal, (Journal{"second.gone", "first.gone"}));
}

TEST_F(MenuTest, SecondCreateMenuLeavesTheMenuAlone) {
    Menu *menu = created();
    Evas_Object *object = menu->getEvasObject();
    Evas_Object *other = elm_naviframe_add(win());
    EXPECT_TRUE(menu->createMenu(win(), other));
    EXPECT_EQ(menu->getEvasObject(), object);
    menu->destroy();
    evas_object_resize(m_naviframe, 77, 77);
}

// ---- its end

TEST_F(MenuTest, BackAndMoreKeysDismissIt) {
    evas_object_resize(win(), 360, 480);
    for (const bool back : {true, false}) {
        m_journal.clear();
        Menu *menu = created();
        menu->appendItem("item", [] {});
        bool placed = false;
        evas_object_smart_callback_add(
            menu->getEvasObject(), "geometry,update",
            [](void *data, Evas_Object *, void *) { *static_cast<bool *>(data) = true; }, &placed);
        menu->showMenu();
        // The toolkit doesn't dismiss a menu that doesn't know yet to which side it opens.
        ASSERT_TRUE(support::run_main_loop_until([&] { return placed; }));
        EXPECT_TRUE(back ? mock::fake_keys().press_back() : mock::fake_keys().press_more());
        EXPECT_TRUE(support::run_main_loop_until([&] { return !m_journal.empty(); }));
        EXPECT_EQ(m_journal, Journal{"menu.gone"});
    }
}

TEST_F(MenuTest, DismissedMenuIsDeleted) {
    Menu *menu = created();
    evas_object_smart_callback_call(menu->getEvasObject(), "dismissed", nullptr);
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
}

TEST_F(MenuTest, ChangeOfLanguageDeletesIt) {
    Menu *menu = created();
    evas_object_smart_callback_call(menu->getEvasObject(), "language,changed", nullptr);
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
}

TEST_F(MenuTest, LastMenuCanBeDestroyedFromOutside) {
    created();
    WMenuPopupController::destroyLastMenuPopup();
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
    WMenuPopupController::destroyLastMenuPopup();
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
}

TEST_F(MenuTest, SecondMenuIsTheLastOne) {
    created("first");
    created("second");
    WMenuPopupController::destroyLastMenuPopup();
    EXPECT_EQ(m_journal, Journal{"second.gone"});
    WMenuPopupController::destroyLastMenuPopup();
    EXPECT_EQ(m_journal, Journal{"second.gone"});
}

TEST_F(MenuTest, EndOfAnEarlierMenuDoesNotForgetTheLast) {
    Menu *first = created("first");
    created("second");
    first->destroy();
    WMenuPopupController::destroyLastMenuPopup();
    EXPECT_EQ(m_journal, (Journal{"first.gone", "second.gone"}));
}

TEST_F(MenuTest, MenuThatWentByItselfIsForgotten) {
    Menu *menu = created();
    evas_object_smart_callback_call(menu->getEvasObject(), "dismissed", nullptr);
    WMenuPopupController::destroyLastMenuPopup();
    EXPECT_EQ(m_journal, Journal{"menu.gone"});
}

}  // namespace
