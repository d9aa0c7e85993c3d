// An application with a user interface: pages side by side and on a stack, a list, a grid, a menu
// and popups. It shows the tides of a few harbours.

#include <Elementary.h>
#include <app.h>

#include <cstdlib>
#include <string>
#include <utility>

#include "app-assist/WApp.h"
#include "app-assist/WContentViewController.h"
#include "app-assist/WGengridItem.h"
#include "app-assist/WGenlistItem.h"
#include "app-assist/WLog.h"
#include "app-assist/WMenuPopupController.h"
#include "app-assist/WNaviframeController.h"
#include "app-assist/WPageSlideViewController.h"
#include "app-assist/WPopupController.h"
#include "app-assist/WWindowController.h"

using app_assist::WApp;
using app_assist::WContentViewController;
using app_assist::WGengridItem;
using app_assist::WGenlistItem;
using app_assist::WMenuPopupController;
using app_assist::WNaviframeController;
using app_assist::WPageSlideViewController;
using app_assist::WPopupController;
using app_assist::WViewController;
using app_assist::WWindowController;

namespace {

struct Harbour {
    const char *name;
    const char *high;
    const char *low;
};

constexpr Harbour HARBOURS[] = {
    {"Kilrush", "14:32", "20:41"}, {"Dingle", "14:05", "20:12"},  {"Galway", "14:48", "20:59"},
    {"Sligo", "15:10", "21:24"},   {"Youghal", "15:37", "21:50"}, {"Howth", "16:02", "22:13"},
};

struct Colour {
    const char *name;
    int red;
    int green;
    int blue;
};

constexpr Colour COLOURS[] = {
    {"Sea", 92, 196, 255},
    {"Kelp", 121, 201, 120},
    {"Sand", 240, 200, 120},
    {"Buoy", 255, 110, 90},
};

/// @return a layout with a group of the example's own theme
Evas_Object *addLayout(Evas_Object *parent, const char *group) {
    Evas_Object *layout = elm_layout_add(parent);
    char *resourcePath = app_get_resource_path();
    if (resourcePath != nullptr) {
        const std::string theme = std::string(resourcePath) + "edje/example-pages.edj";
        elm_layout_file_set(layout, theme.c_str(), group);
        std::free(resourcePath);
    }
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_show(layout);
    return layout;
}

// ---- popups

void useRoundButton(Evas_Object *button) {
    elm_object_style_set(button, "popup/circle");
}

/// A line of text that goes by itself.
void tell(WViewController *view, const std::string &text) {
    auto *toast = new WPopupController;
    toast->setCreationHook([text](Evas_Object *popup) {
        elm_object_style_set(popup, "toast/circle");
        elm_object_text_set(popup, text.c_str());
        elm_popup_timeout_set(popup, 2.0);
    });
    view->attachPopup(toast);
}

/// A question on the whole face; the back key says no.
void ask(WViewController *view, const std::string &question, const std::string &answer) {
    auto *popup = new WPopupController;
    popup->setCreationHook([](Evas_Object *object) { elm_object_style_set(object, "circle"); });
    popup->setContent([question](Evas_Object *parent) {
        Evas_Object *content = elm_layout_add(parent);
        elm_layout_theme_set(content, "layout", "popup", "content/circle");
        elm_object_part_text_set(content, "elm.text", question.c_str());
        return content;
    });
    popup->addButton(
        "Set",
        [view, answer](bool *) {
            WINFO("%s", answer.c_str());
            // The next popup takes the place of this one, which is gone then.
            tell(view, answer);
        },
        useRoundButton);
    popup->setBackHandler([](bool *) { WINFO("the question is left open"); });
    view->attachPopup(popup);
}

// ---- one harbour, above the others

class HarbourView : public WContentViewController {
public:
    explicit HarbourView(const Harbour &harbour) : m_harbour(harbour) { setTitle(harbour.name); }

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        Evas_Object *layout = addLayout(parent, "harbour");
        const std::string text = std::string("High water ") + m_harbour.high + "<br>Low water " +
                                 m_harbour.low + "<br><soft>Press more for a reminder</soft>";
        elm_object_part_text_set(layout, "text", text.c_str());
        return layout;
    }

    void onPushed(Elm_Object_Item *item) override {
        WINFO("pushed %s", m_harbour.name);
        setMoreButton(
            item,
            [](void *data, Evas_Object *, void *) {
                static_cast<HarbourView *>(data)->_openMenu();
            },
            this);
    }

    bool onPop() override {
        WINFO("popped %s", m_harbour.name);
        return true;
    }

    void onDestroy() override { WINFO("%s is gone", m_harbour.name); }

private:
    void _openMenu() {
        auto *menu = new WMenuPopupController;
        if (!menu->createMenu(getWindowEvasObject(), getNaviframeController()->getEvasObject())) {
            menu->destroy();
            return;
        }
        menu->appendItem("Remind me", [this] {
            ask(this, std::string("A reminder at ") + m_harbour.high + "?", "Reminder set");
        });
        menu->appendItem("Copy", [this] { tell(this, "Copied"); });
        menu->appendItem("Close", [this] { popOut(); });
        menu->showMenu();
        WINFO("the menu is open");
    }

    const Harbour &m_harbour;
};

// ---- the pages

class TidePage : public WContentViewController {
protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        Evas_Object *layout = addLayout(parent, "tide");
        const Harbour &first = HARBOURS[0];
        elm_object_part_text_set(layout, "what", "High water");
        elm_object_part_text_set(layout, "time", first.high);
        elm_object_part_text_set(layout, "place", first.name);
        elm_object_part_text_set(layout, "then", (std::string("low at ") + first.low).c_str());
        return layout;
    }
};

class HarbourItem : public WGenlistItem {
public:
    HarbourItem(const Harbour &harbour, WContentViewController *page)
        : m_harbour(harbour), m_page(page) {}

    const Harbour &harbour() const { return m_harbour; }

protected:
    void onSelect(Elm_Object_Item *) override {
        WINFO("selected %s", m_harbour.name);
        m_page->getNaviframeController()->push(new HarbourView(m_harbour), "harbour");
    }

private:
    const Harbour &m_harbour;
    WContentViewController *m_page;
};

class HarboursPage : public WContentViewController {
protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        Evas_Object *layout = addLayout(parent, "harbours");
        elm_object_part_text_set(layout, "head", "Harbours");
        Evas_Object *list = elm_genlist_add(layout);
        // What has the focus is scrolled to, and the pages are the finger's.
        elm_object_focus_allow_set(list, EINA_FALSE);
        elm_scroller_policy_set(list, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_OFF);
        Elm_Genlist_Item_Class *look = elm_genlist_item_class_new();
        look->item_style = "default";
        look->func.text_get = [](void *data, Evas_Object *, const char *) {
            return strdup(static_cast<HarbourItem *>(data)->harbour().name);
        };
        look->func.del = [](void *data, Evas_Object *) { delete static_cast<HarbourItem *>(data); };
        for (const Harbour &harbour : HARBOURS) {
            WGenlistItem::appendItem(list, look, new HarbourItem(harbour, this),
                                     ELM_GENLIST_ITEM_NONE);
        }
        elm_genlist_item_class_free(look);
        elm_object_part_content_set(layout, "list", list);
        return layout;
    }
};

class ColourItem : public WGengridItem {
public:
    explicit ColourItem(const Colour &colour) : m_colour(colour) {}

    const Colour &colour() const { return m_colour; }

protected:
    void onSelect(Elm_Object_Item *) override {
        WINFO("chose %s", m_colour.name);
        auto *toast = new WPopupController;
        const std::string text = std::string("Marked in ") + m_colour.name;
        toast->setCreationHook([text](Evas_Object *popup) {
            elm_object_style_set(popup, "toast/circle");
            elm_object_text_set(popup, text.c_str());
            elm_popup_timeout_set(popup, 2.0);
        });
        // To whichever view the grid stands in.
        attachToParentViewController(toast);
    }

private:
    const Colour &m_colour;
};

class ColoursPage : public WContentViewController {
protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        Evas_Object *layout = addLayout(parent, "colours");
        elm_object_part_text_set(layout, "head", "Mark");
        Evas_Object *grid = elm_gengrid_add(layout);
        elm_object_focus_allow_set(grid, EINA_FALSE);
        elm_scroller_policy_set(grid, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_OFF);
        const double scale = elm_config_scale_get();
        const int cell = static_cast<int>(112 * scale);
        elm_gengrid_item_size_set(grid, cell, cell);
        Elm_Gengrid_Item_Class *look = elm_gengrid_item_class_new();
        look->item_style = "default";
        look->func.text_get = [](void *data, Evas_Object *, const char *) {
            return strdup(static_cast<ColourItem *>(data)->colour().name);
        };
        look->func.content_get = _swatch;
        look->func.del = [](void *data, Evas_Object *) { delete static_cast<ColourItem *>(data); };
        for (const Colour &colour : COLOURS) {
            WGengridItem::appendItem(grid, look, new ColourItem(colour));
        }
        elm_gengrid_item_class_free(look);
        elm_object_part_content_set(layout, "grid", grid);
        return layout;
    }

private:
    static Evas_Object *_swatch(void *data, Evas_Object *grid, const char *part) {
        if (std::string(part) != "elm.swallow.icon") {
            return nullptr;
        }
        Evas_Object *swatch = addLayout(grid, "swatch");
        const Colour &colour = static_cast<ColourItem *>(data)->colour();
        evas_object_color_set(swatch, colour.red, colour.green, colour.blue, 255);
        return swatch;
    }
};

class HomeView : public WPageSlideViewController {
public:
    HomeView() {
        setScrollbarVisible(false);
        setPageChangedHandler([this](int change) {
            WINFO("page %d, moved by %d", getCurrentPage(), change);
            _showDots();
        });
    }

protected:
    Evas_Object *onCreateLayout(Evas_Object *parent, void *) override {
        return addLayout(parent, "slide");
    }

    void onCreated() override {
        appendPage(new TidePage);
        appendPage(new HarboursPage);
        appendPage(new ColoursPage);
        _showDots();
    }

    void onBecomeTop() override { WINFO("home again"); }

private:
    void _showDots() {
        const std::string lit = "page," + std::to_string(getCurrentPage());
        elm_object_signal_emit(getEvasObject(), lit.c_str(), "example");
    }
};

class PagesApp : public WApp {
protected:
    bool onCreate() override {
        auto *window = new WWindowController("Tides", ELM_WIN_BASIC);
        if (!attachWindowController(window)) {
            return false;
        }
        auto *naviframe = new WNaviframeController;
        if (!window->attachBaseViewController(naviframe)) {
            naviframe->destroy();
            return false;
        }
        return naviframe->push(new HomeView, "home");
    }

    void onTerminate() override { WINFO("the end"); }
};

}  // namespace

int main(int argc, char *argv[]) {
    PagesApp app;
    return app.start(argc, argv);
}
