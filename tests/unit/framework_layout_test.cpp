// The order of virtual operations and of the fields of private records, on which code compiled
// elsewhere relies.

#include <cstring>
#include <list>
#include <memory>

#include "app-assist/WEvasObject.h"
#include "app-assist/WGengridItem.h"
#include "app-assist/WGenlistItem.h"
#include "app-assist/WMenuPopupController.h"
#include "app-assist/WNaviframeController.h"
#include "app-assist/WPageSlideViewController.h"
#include "app-assist/WPopupController.h"
#include "app-assist/WTimer.h"
#include "framework_fixture.h"

namespace {

using namespace app_assist;
using framework::View;

/// Where an operation stands in its class's table; a destructor takes two places.
template <typename Operation>
std::size_t slot(Operation operation) {
    std::uintptr_t word = 0;
    static_assert(sizeof operation >= sizeof word);
    std::memcpy(&word, &operation, sizeof word);
    return (word - 1) / sizeof(void *);
}

using Slots = std::vector<std::size_t>;

/// Opens the operations of a class and says where the next one would stand.
template <typename Class>
struct Open : Class {
    virtual void next() {}

    static Slots of_view() {
        return {slot(&Open::getClassName), slot(&Open::create),       slot(&Open::destroy),
                slot(&Open::onCreate),     slot(&Open::onCreateView), slot(&Open::onCreated),
                slot(&Open::onDestroy)};
    }
    static Slots of_content_view() {
        return {slot(&Open::onAttachedToNaviframe),
                slot(&Open::onCreateNaviItem),
                slot(&Open::onPushed),
                slot(&Open::onPop),
                slot(&Open::onBecomeTop),
                slot(&Open::onBecamePageContent),
                slot(&Open::onAddMoreButton)};
    }
    static Slots of_naviframe() {
        return {slot(&Open::onPush), slot(&Open::onItemPop), slot(&Open::onLastItemPop)};
    }
    static Slots of_page_slide() {
        return {slot(&Open::onCreateLayout), slot(&Open::onInitScroller)};
    }
    static Slots of_item() {
        return {slot(&Open::firstItemQuery), slot(&Open::secondItemQuery), slot(&Open::onSelect),
                slot(&Open::onItemCreated)};
    }
    static std::size_t size() { return slot(&Open::next); }
};

const Slots view_slots{0, 1, 2, 3, 4, 5, 6};

TEST(VirtualOperations, OfAViewStandInTheirOrder) {
    EXPECT_EQ(Open<WViewController>::of_view(), view_slots);
    EXPECT_EQ(Open<WViewController>::size(), 9U);
}

TEST(VirtualOperations, OfAContentViewFollowThoseOfAView) {
    using Class = Open<WContentViewController>;
    EXPECT_EQ(Class::of_view(), view_slots);
    EXPECT_EQ(Class::of_content_view(), (Slots{9, 10, 11, 12, 13, 14, 15}));
    EXPECT_EQ(Class::size(), 16U);
}

TEST(VirtualOperations, OfANaviframeFollowThoseOfAView) {
    using Class = Open<WNaviframeController>;
    EXPECT_EQ(Class::of_view(), view_slots);
    EXPECT_EQ(Class::of_naviframe(), (Slots{9, 10, 11}));
    EXPECT_EQ(Class::size(), 12U);
}

TEST(VirtualOperations, OfAPageSlideFollowThoseOfAContentView) {
    using Class = Open<WPageSlideViewController>;
    EXPECT_EQ(Class::of_content_view(), (Slots{9, 10, 11, 12, 13, 14, 15}));
    EXPECT_EQ(Class::of_page_slide(), (Slots{16, 17}));
    EXPECT_EQ(Class::size(), 18U);
}

TEST(VirtualOperations, OfPopupsAreThoseOfAView) {
    EXPECT_EQ(Open<WPopupController>::size(), 9U);
    EXPECT_EQ(Open<WMenuPopupController>::size(), 9U);
}

TEST(VirtualOperations, OfItemsFollowTheDestructor) {
    EXPECT_EQ(Open<WGenlistItem>::of_item(), (Slots{2, 3, 4, 5}));
    EXPECT_EQ(Open<WGengridItem>::of_item(), (Slots{2, 3, 4, 5}));
    EXPECT_EQ(Open<WGenlistItem>::size(), 6U);
    EXPECT_EQ(Open<WGengridItem>::size(), 6U);
}

TEST(VirtualOperations, OfAnEvasObjectFollowTheDestructor) {
    EXPECT_EQ(slot(&IWEvasObject::getEvasObject), 2U);
}

TEST(VirtualOperations, OfAWindowBeginWithTheFiveThatAViewAsksFor) {
    EXPECT_EQ(
        (Slots{slot(&IWWindowController::getClassName), slot(&IWWindowController::getEvasObject),
               slot(&IWWindowController::getBaseLayoutEvasObject),
               slot(&IWWindowController::getConformantEvasObject),
               slot(&IWWindowController::getBaseViewController)}),
        (Slots{0, 1, 2, 3, 4}));
}

// ---- private records, read as they lie in memory

/// The n-th pointer of an object behind its table of operations.
template <typename Record>
const Record &record_of(const void *object, std::size_t pointer = 0) {
    const Record *record = nullptr;
    std::memcpy(&record, static_cast<const char *>(object) + sizeof(void *) * (1 + pointer),
                sizeof record);
    return *record;
}

struct ViewRecord {
    Evas_Object *object;
    char *name;
    WViewWeakPtr *popup;
    std::function<Evas_Object *(Evas_Object *, void *)> *create_view_handler;
    IWWindowController *window;
    std::shared_ptr<WViewController> *anchor;
};

struct ContentViewRecord {
    char *title;
    Elm_Object_Item *item;
    bool is_owner;
    WNaviframeController *naviframe;
    std::function<void(Elm_Object_Item *)> pushed_handler;
};

struct NaviframeRecord {
    std::function<void(bool *)> last_item_pop_handler;
};

struct Page {
    WViewController *view;
    Evas_Object *base;
    bool is_content_view;
};

struct PageSlideRecord {
    WPageSlideViewController *owner;
    Evas_Object *scroller;
    Evas_Object *box;
    int current_page;
    int previous_page;
    int page_width;
    int page_height;
    void *pages;
    bool scrollbar_visible;
    std::function<void(Evas_Object *)> init_scroller_handler;
    std::function<void(int)> page_changed_handler;
};

struct PopupRecord {
    std::string title;
    std::string content;
    std::string text_domain;
    WViewController *content_view;
    std::string button_texts[3];
    int buttons;
    bool translatable;
    std::function<Evas_Object *(Evas_Object *)> content_creator;
    std::function<void(Evas_Object *)> creation_hook;
    std::function<void(bool *)> back_handler;
    std::function<void(bool *)> button_handlers[3];
    std::function<void(Evas_Object *)> *button_hooks[3];
};

struct MenuRecord {
    Evas_Object *win;
    Evas_Object *naviframe;
    Evas_Object *popup;
    std::vector<std::function<void()>> item_handlers;
};

struct TimerRecord {
    void *handle;
    int type;
    void *data;
    std::shared_ptr<WTimer> *anchor;
    Evas_Object *owner;
    std::function<bool(void *)> handler;
    std::function<void(void *)> job_handler;
};

class RecordTest : public framework::WindowedTest {};

TEST_F(RecordTest, OfAViewHoldsItsFieldsInOrder) {
    auto *view = new View(m_journal);
    const auto &record = record_of<ViewRecord>(view);
    EXPECT_EQ(record.object, nullptr);
    EXPECT_EQ(record.name, nullptr);
    EXPECT_EQ(record.popup, nullptr);
    EXPECT_EQ(record.create_view_handler, nullptr);
    EXPECT_EQ(record.window, nullptr);
    EXPECT_EQ(record.anchor, nullptr);
    view->setName("name");
    view->setCreateViewHandler(nullptr);
    ASSERT_NE(record.create_view_handler, nullptr);
    EXPECT_FALSE(*record.create_view_handler);
    ASSERT_TRUE(view->create(base_layout(), nullptr));
    view->attachPopup(new View(m_journal, "popup"));
    EXPECT_EQ(record.object, view->getEvasObject());
    EXPECT_EQ(record.name, view->getName());
    EXPECT_EQ(record.window, &window());
    ASSERT_NE(record.popup, nullptr);
    EXPECT_FALSE(record.popup->expired());
    ASSERT_NE(record.anchor, nullptr);
    EXPECT_EQ(record.anchor->get(), view);
    EXPECT_EQ(record.anchor->use_count(), 1);
}

TEST_F(RecordTest, OfAContentViewIsItsSecond) {
    struct PlainPage : WContentViewController {};
    auto *naviframe = new WNaviframeController;
    ASSERT_TRUE(window().attachBaseViewController(naviframe));
    auto *page = new PlainPage;
    const auto &record = record_of<ContentViewRecord>(page, 1);
    EXPECT_EQ(record.title, nullptr);
    EXPECT_EQ(record.item, nullptr);
    EXPECT_TRUE(record.is_owner);
    EXPECT_EQ(record.naviframe, nullptr);
    EXPECT_FALSE(record.pushed_handler);
    page->setTitle("title");
    page->setPushedHandler([](Elm_Object_Item *) {});
    ASSERT_TRUE(naviframe->push(page, nullptr));
    EXPECT_EQ(record.title, page->getTitle());
    EXPECT_EQ(record.item, page->getNaviItem());
    EXPECT_EQ(record.naviframe, naviframe);
    EXPECT_TRUE(record.pushed_handler);
}

TEST_F(RecordTest, OfANaviframeHoldsItsHandlerAlone) {
    auto *naviframe = new WNaviframeController;
    const auto &record = record_of<NaviframeRecord>(naviframe, 1);
    EXPECT_FALSE(record.last_item_pop_handler);
    naviframe->setLastItemPopHandler([](bool *) {});
    EXPECT_TRUE(record.last_item_pop_handler);
    naviframe->destroy();
}

TEST_F(RecordTest, OfAPageSlideIsItsThird) {
    auto *slide = new WPageSlideViewController;
    const auto &record = record_of<PageSlideRecord>(slide, 2);
    EXPECT_EQ(record.owner, slide);
    EXPECT_EQ(record.scroller, nullptr);
    EXPECT_EQ(record.box, nullptr);
    EXPECT_EQ(record.current_page, 0);
    EXPECT_EQ(record.previous_page, 0);
    EXPECT_EQ(record.page_width, 0);
    EXPECT_EQ(record.page_height, 0);
    EXPECT_NE(record.pages, nullptr);
    EXPECT_TRUE(record.scrollbar_visible);
    slide->setInitScrollerHandler([](Evas_Object *) {});
    slide->setPageChangedHandler([](int) {});
    EXPECT_TRUE(record.init_scroller_handler);
    EXPECT_TRUE(record.page_changed_handler);
    ASSERT_TRUE(slide->create(base_layout(), nullptr));
    EXPECT_EQ(record.scroller, slide->getScroller());
    EXPECT_EQ(record.box, elm_object_content_get(slide->getScroller()));
    slide->appendPage();
    slide->appendPage();
    evas_object_resize(slide->getEvasObject(), 120, 80);
    EXPECT_EQ(record.page_width, 120);
    EXPECT_EQ(record.page_height, 80);
    slide->showPage(1, false);
    EXPECT_EQ(record.current_page, 1);
    EXPECT_EQ(record.previous_page, 0);
    evas_object_smart_callback_call(slide->getScroller(), "scroll,anim,start", nullptr);
    EXPECT_EQ(record.previous_page, 1);
    slide->setScrollbarVisible(false);
    EXPECT_FALSE(record.scrollbar_visible);
}

TEST_F(RecordTest, OfAPageHoldsItsViewItsBaseAndItsKind) {
    struct PlainPage : WContentViewController {};
    auto *slide = new WPageSlideViewController;
    ASSERT_TRUE(slide->create(base_layout(), nullptr));
    auto *view = new View(m_journal);
    auto *content = new PlainPage;
    slide->appendPage(view);
    slide->appendPage(content);
    slide->appendPage();
    const auto &pages =
        *static_cast<const std::list<Page> *>(record_of<PageSlideRecord>(slide, 2).pages);
    ASSERT_EQ(pages.size(), 3U);
    auto page = pages.begin();
    EXPECT_EQ(page->view, view);
    EXPECT_EQ(page->base, elm_object_parent_widget_get(view->getEvasObject()));
    EXPECT_FALSE(page->is_content_view);
    ++page;
    EXPECT_EQ(page->view, content);
    EXPECT_TRUE(page->is_content_view);
    ++page;
    EXPECT_EQ(page->view, nullptr);
    EXPECT_NE(page->base, nullptr);
    EXPECT_FALSE(page->is_content_view);
    EXPECT_EQ(slide->unsetPageContent(0), view);
    EXPECT_EQ(pages.front().view, nullptr);
    view->destroy();
}

TEST_F(RecordTest, OfAPopupIsItsSecond) {
    auto *popup = new WPopupController("title", "content");
    const auto &record = record_of<PopupRecord>(popup, 1);
    EXPECT_EQ(record.title, "title");
    EXPECT_EQ(record.content, "content");
    EXPECT_EQ(record.content_view, nullptr);
    EXPECT_EQ(record.buttons, 0);
    EXPECT_FALSE(record.translatable);
    popup->setTextDomain("films");
    popup->setTextTranslatable();
    popup->setContent([](Evas_Object *) -> Evas_Object * { return nullptr; });
    popup->setCreationHook([](Evas_Object *) {});
    popup->setBackHandler([](bool *) {});
    popup->addButton("first", nullptr);
    popup->addButton(
        "second", [](bool *) {}, [](Evas_Object *) {});
    EXPECT_EQ(record.text_domain, "films");
    EXPECT_EQ(record.content, "");
    EXPECT_TRUE(record.translatable);
    EXPECT_TRUE(record.content_creator);
    EXPECT_TRUE(record.creation_hook);
    EXPECT_TRUE(record.back_handler);
    EXPECT_EQ(record.buttons, 2);
    EXPECT_EQ(record.button_texts[1], "second");
    EXPECT_FALSE(record.button_handlers[0]);
    EXPECT_TRUE(record.button_handlers[1]);
    EXPECT_EQ(record.button_hooks[0], nullptr);
    EXPECT_NE(record.button_hooks[1], nullptr);
    EXPECT_EQ(record.button_hooks[2], nullptr);
    auto *view = new View(m_journal);
    popup->setContent(view);
    EXPECT_EQ(record.content_view, view);
    popup->setContent("text");
    popup->destroy();
}

TEST_F(RecordTest, OfAMenuIsItsSecond) {
    auto *menu = new WMenuPopupController;
    const auto &record = record_of<MenuRecord>(menu, 1);
    EXPECT_EQ(record.win, nullptr);
    EXPECT_EQ(record.naviframe, nullptr);
    EXPECT_EQ(record.popup, nullptr);
    Evas_Object *naviframe = elm_naviframe_add(win());
    ASSERT_TRUE(menu->createMenu(win(), naviframe));
    menu->appendItem("item", [] {});
    EXPECT_EQ(record.win, win());
    EXPECT_EQ(record.naviframe, naviframe);
    EXPECT_EQ(record.popup, menu->getEvasObject());
    EXPECT_EQ(record.item_handlers.size(), 1U);
}

TEST_F(RecordTest, OfAnItemHoldsTheToolkitsItemAlone) {
    Evas_Object *list = elm_genlist_add(win());
    auto *style = elm_genlist_item_class_new();
    style->item_style = "default";
    WGenlistItem item;
    EXPECT_EQ(record_of<Elm_Object_Item *>(&item), nullptr);
    WGenlistItem::appendItem(list, style, &item, ELM_GENLIST_ITEM_NONE);
    EXPECT_EQ(record_of<Elm_Object_Item *>(&item), item.getElmObjectItem());
    WGengridItem grid_item;
    EXPECT_EQ(record_of<Elm_Object_Item *>(&grid_item), nullptr);
    evas_object_del(list);
    elm_genlist_item_class_free(style);
}

TEST_F(RecordTest, OfATimerHoldsItsFieldsInOrder) {
    int data = 0;
    WTimerWeakPtr timer = WTimer::addTimer(
        1.0, [](void *) { return true; }, &data, base_layout());
    // A timer has no operations to be overridden, so its record's pointer comes first.
    const TimerRecord *record = nullptr;
    std::memcpy(&record, timer.lock().get(), sizeof record);
    EXPECT_EQ(record->handle, WTimer::getTimerHandle(timer));
    EXPECT_EQ(record->type, 2);
    EXPECT_EQ(record->data, &data);
    ASSERT_NE(record->anchor, nullptr);
    EXPECT_EQ(record->anchor->use_count(), 1);
    EXPECT_EQ(record->owner, base_layout());
    EXPECT_TRUE(record->handler);
    EXPECT_FALSE(record->job_handler);
    WTimer::destroy(timer);

    const auto type_of = [&](const WTimerWeakPtr &weak) {
        std::memcpy(&record, weak.lock().get(), sizeof record);
        return record->type;
    };
    WTimerWeakPtr idler = WTimer::addIdler([](void *) { return true; }, nullptr);
    WTimerWeakPtr animator = WTimer::addAnimator([](void *) { return true; }, nullptr);
    WTimerWeakPtr job = WTimer::addJob([](void *) {}, nullptr);
    EXPECT_EQ(type_of(idler), 0);
    EXPECT_EQ(type_of(animator), 1);
    EXPECT_EQ(type_of(job), 3);
    EXPECT_TRUE(record->job_handler);
    EXPECT_EQ(record->owner, nullptr);
    WTimer::destroy(idler);
    WTimer::destroy(animator);
    WTimer::destroy(job);
}

}  // namespace
