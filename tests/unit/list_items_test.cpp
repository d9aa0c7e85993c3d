#include <cstring>

#include "app-assist/WGengridItem.h"
#include "app-assist/WGenlistItem.h"
#include "framework_fixture.h"

namespace {

using app_assist::WGengridItem;
using app_assist::WGenlistItem;
using app_assist::WViewController;
using framework::Journal;
using framework::View;

constexpr std::string_view tag = logs::framework_tag;
constexpr const char *append_failed = "* Critical * Fail to append an item!";

/// What a list and a grid have in common, for tests that hold for both.
struct List {
    using Item = WGenlistItem;
    static constexpr const char *missing_item =
        "* Critical * object item has not been set! call setElmObjectItem";
    static Evas_Object *add(Evas_Object *parent) { return elm_genlist_add(parent); }
    static Elm_Object_Item *append(Evas_Object *widget, Item *item) {
        return WGenlistItem::appendItem(widget, item_class(), item, ELM_GENLIST_ITEM_NONE);
    }
    static void select(Elm_Object_Item *item) { elm_genlist_item_selected_set(item, EINA_TRUE); }
    static bool is_selected(Elm_Object_Item *item) { return elm_genlist_item_selected_get(item); }
    static unsigned count(Evas_Object *widget) { return elm_genlist_items_count(widget); }
    static Elm_Genlist_Item_Class *item_class() {
        static Elm_Genlist_Item_Class *const made = [] {
            auto *fresh = elm_genlist_item_class_new();
            fresh->item_style = "default";
            return fresh;
        }();
        return made;
    }
};

struct Grid {
    using Item = WGengridItem;
    static constexpr const char *missing_item = "* Critical * object item is not created!";
    static Evas_Object *add(Evas_Object *parent) { return elm_gengrid_add(parent); }
    static Elm_Object_Item *append(Evas_Object *widget, Item *item) {
        return WGengridItem::appendItem(widget, item_class(), item);
    }
    static void select(Elm_Object_Item *item) { elm_gengrid_item_selected_set(item, EINA_TRUE); }
    static bool is_selected(Elm_Object_Item *item) { return elm_gengrid_item_selected_get(item); }
    static unsigned count(Evas_Object *widget) { return elm_gengrid_items_count(widget); }
    static Elm_Gengrid_Item_Class *item_class() {
        static Elm_Gengrid_Item_Class *const made = [] {
            auto *fresh = elm_gengrid_item_class_new();
            fresh->item_style = "default";
            return fresh;
        }();
        return made;
    }
};

/// An entry that writes down what it is told.
template <typename Kind>
struct Entry : Kind::Item {
    explicit Entry(Journal &to) : journal(to) {}
    ~Entry() override { journal.emplace_back("gone"); }

    void onSelect(Elm_Object_Item *item) override {
        journal.emplace_back(Kind::is_selected(item) ? "onSelect, selected" : "onSelect");
        selected_item = item;
        if (in_select) {
            in_select();
        }
    }
    void onItemCreated(Elm_Object_Item *item) override {
        journal.emplace_back("onItemCreated");
        created_item = item;
        // It is bound before it is told.
        bound = this->getElmObjectItem() == item;
    }

    Journal &journal;
    Elm_Object_Item *selected_item = nullptr;
    Elm_Object_Item *created_item = nullptr;
    bool bound = false;
    std::function<void()> in_select;
};

template <typename Kind>
class ItemTest : public framework::WindowedTest {
protected:
    void SetUp() override {
        WindowedTest::SetUp();
        m_view = new View(m_journal);
        m_view->setCreateViewHandler([this](Evas_Object *parent, void *) {
            m_widget = Kind::add(parent);
            return m_widget;
        });
        ASSERT_TRUE(m_view->create(base_layout(), nullptr));
        m_journal.clear();
    }

    View *m_view = nullptr;
    Evas_Object *m_widget = nullptr;
};

using Kinds = testing::Types<List, Grid>;
TYPED_TEST_SUITE(ItemTest, Kinds);

TYPED_TEST(ItemTest, HasNoItemAtFirstAndAnswersNothing) {
    typename TypeParam::Item item;
    EXPECT_EQ(item.getElmObjectItem(), nullptr);
    EXPECT_EQ(item.firstItemQuery(), nullptr);
    EXPECT_EQ(item.secondItemQuery(), nullptr);
}

TYPED_TEST(ItemTest, AppendedEntryIsBoundToItsObject) {
    Entry<TypeParam> entry(this->m_journal);
    Elm_Object_Item *item = TypeParam::append(this->m_widget, &entry);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(entry.getElmObjectItem(), item);
    EXPECT_EQ(entry.created_item, item);
    EXPECT_TRUE(entry.bound);
    EXPECT_EQ(elm_object_item_data_get(item), static_cast<typename TypeParam::Item *>(&entry));
    EXPECT_EQ(TypeParam::count(this->m_widget), 1U);
    EXPECT_EQ(this->m_journal, Journal{"onItemCreated"});
    EXPECT_TRUE(NoFaultLogged(tag));
}

TYPED_TEST(ItemTest, SelectionIsClearedBeforeItIsTold) {
    Entry<TypeParam> entry(this->m_journal);
    Elm_Object_Item *item = TypeParam::append(this->m_widget, &entry);
    this->m_journal.clear();
    TypeParam::select(item);
    EXPECT_EQ(this->m_journal, Journal{"onSelect"});
    EXPECT_EQ(entry.selected_item, item);
    EXPECT_FALSE(TypeParam::is_selected(item));
    // So the same entry can be selected again.
    TypeParam::select(item);
    EXPECT_EQ(this->m_journal, (Journal{"onSelect", "onSelect"}));
}

TYPED_TEST(ItemTest, SettingAnItemTellsOfItEachTime) {
    Entry<TypeParam> entry(this->m_journal);
    entry.setElmObjectItem(nullptr);
    EXPECT_EQ(this->m_journal, Journal{"onItemCreated"});
    EXPECT_EQ(entry.getElmObjectItem(), nullptr);
}

TYPED_TEST(ItemTest, NothingIsAppendedWithoutAWidgetOrAnObject) {
    Entry<TypeParam> entry(this->m_journal);
    EXPECT_EQ(TypeParam::append(nullptr, &entry), nullptr);
    EXPECT_EQ(TypeParam::append(this->m_widget, nullptr), nullptr);
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, append_failed, tag));
    EXPECT_EQ(this->m_journal, Journal());
    EXPECT_EQ(TypeParam::count(this->m_widget), 0U);
}

TYPED_TEST(ItemTest, EndOfTheObjectLeavesTheToolkitsItem) {
    auto *entry = new Entry<TypeParam>(this->m_journal);
    TypeParam::append(this->m_widget, entry);
    delete entry;
    EXPECT_EQ(TypeParam::count(this->m_widget), 1U);
}

TYPED_TEST(ItemTest, ObjectMayGoWithItsEntryWhenItIsSelected) {
    auto *entry = new Entry<TypeParam>(this->m_journal);
    Elm_Object_Item *item = TypeParam::append(this->m_widget, entry);
    entry->in_select = [entry] {
        elm_object_item_del(entry->getElmObjectItem());
        delete entry;
    };
    TypeParam::select(item);
    support::run_loop_turns();
    EXPECT_EQ(this->m_journal.back(), "gone");
    EXPECT_EQ(TypeParam::count(this->m_widget), 0U);
}

TYPED_TEST(ItemTest, ViewMayGoWhenAnEntryIsSelected) {
    Entry<TypeParam> entry(this->m_journal);
    Elm_Object_Item *item = TypeParam::append(this->m_widget, &entry);
    entry.in_select = [this] { this->m_view->destroy(); };
    TypeParam::select(item);
    support::run_loop_turns();
    EXPECT_EQ(this->m_journal.back(), "view.gone");
}

TYPED_TEST(ItemTest, PopupIsAttachedToTheViewOfTheWidget) {
    Entry<TypeParam> entry(this->m_journal);
    TypeParam::append(this->m_widget, &entry);
    auto *popup = new View(this->m_journal, "popup");
    this->m_journal.clear();
    EXPECT_TRUE(entry.attachToParentViewController(popup));
    EXPECT_EQ(elm_object_parent_widget_get(popup->getEvasObject()), this->base_layout());
    this->m_journal.clear();
    this->m_view->destroyPopup();
    EXPECT_EQ(this->m_journal, (Journal{"popup.onDestroy", "popup.gone"}));
}

TYPED_TEST(ItemTest, PopupIsAttachedToTheNearestViewAbove) {
    auto *view = new View(this->m_journal, "nearest");
    ASSERT_TRUE(view->create(this->base_layout(), nullptr));
    Evas_Object *box = elm_box_add(view->getEvasObject());
    Evas_Object *widget = TypeParam::add(box);
    Entry<TypeParam> entry(this->m_journal);
    TypeParam::append(widget, &entry);
    auto *popup = new View(this->m_journal, "popup");
    EXPECT_TRUE(entry.attachToParentViewController(popup));
    this->m_journal.clear();
    view->destroy();
    EXPECT_EQ(std::count(this->m_journal.begin(), this->m_journal.end(), "popup.gone"), 1);
}

TYPED_TEST(ItemTest, WithoutAnItemNoPopupIsAttached) {
    Entry<TypeParam> entry(this->m_journal);
    auto *popup = new View(this->m_journal, "popup");
    EXPECT_FALSE(entry.attachToParentViewController(popup));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(TypeParam::missing_item)}, tag));
    EXPECT_TRUE(LoggedIn("attachToParentViewController", DLOG_ERROR, TypeParam::missing_item, tag));
    EXPECT_EQ(this->m_journal, Journal());
    popup->destroy();
}

TYPED_TEST(ItemTest, OutsideAnyViewNoPopupIsAttached) {
    Evas_Object *widget = TypeParam::add(this->win());
    Entry<TypeParam> entry(this->m_journal);
    TypeParam::append(widget, &entry);
    auto *popup = new View(this->m_journal, "popup");
    this->m_journal.clear();
    EXPECT_FALSE(entry.attachToParentViewController(popup));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Can not find view instance!")}, tag));
    EXPECT_EQ(this->m_journal, Journal());
    popup->destroy();
}

// ---- each its own

using GenlistItemTest = ItemTest<List>;

TEST_F(GenlistItemTest, EntryHasTheCallersTypeAndNoParent) {
    Entry<List> group(m_journal);
    Elm_Object_Item *item =
        WGenlistItem::appendItem(m_widget, List::item_class(), &group, ELM_GENLIST_ITEM_GROUP);
    EXPECT_EQ(elm_genlist_item_type_get(item), ELM_GENLIST_ITEM_GROUP);
    EXPECT_EQ(elm_genlist_item_parent_get(item), nullptr);
    EXPECT_EQ(elm_genlist_item_item_class_get(item), List::item_class());
}

using GengridItemTest = ItemTest<Grid>;

void note_selection(void *data, Evas_Object *, void *) {
    static_cast<Journal *>(data)->emplace_back("caller's");
}

TEST_F(GengridItemTest, CallersSelectRoutineTakesThePlaceOfOnSelect) {
    Entry<Grid> entry(m_journal);
    Elm_Object_Item *item =
        WGengridItem::appendItem(m_widget, Grid::item_class(), &entry, note_selection, &m_journal);
    EXPECT_EQ(entry.getElmObjectItem(), item);
    m_journal.clear();
    elm_gengrid_item_selected_set(item, EINA_TRUE);
    EXPECT_EQ(m_journal, Journal{"caller's"});
    // The selection is the caller's affair.
    EXPECT_TRUE(elm_gengrid_item_selected_get(item));
}

TEST_F(GengridItemTest, WithTheCallersSelectRoutineTheObjectMayBeMissing) {
    Elm_Object_Item *item =
        WGengridItem::appendItem(m_widget, Grid::item_class(), nullptr, note_selection, &m_journal);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(elm_object_item_data_get(item), nullptr);
    elm_gengrid_item_selected_set(item, EINA_TRUE);
    EXPECT_EQ(m_journal, Journal{"caller's"});
    EXPECT_TRUE(NoFaultLogged(tag));
}

}  // namespace
