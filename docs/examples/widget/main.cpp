// A widget: a coloured card with a text, which a tap counts up. What it is told under the keys
// "text" and "colour" (RRGGBB) is shown; nothing else is accepted as a colour.
//
//     example-widget --screen 300x200 --extra text=Hello --extra colour=205080

#include <Elementary.h>
#include <bundle.h>
#include <widget_app.h>

#include <cstdio>
#include <string>

#include "app-assist/WViewController.h"
#include "app-assist/WWidget.h"
#include "app-assist/WWidgetInstance.h"
#include "app-assist/WWidgetWindowController.h"

namespace {

void say(const std::string &line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

/// The text under `key`, empty when there is none.
std::string textOf(bundle *content, const char *key) {
    char *text = nullptr;
    if (content == nullptr || bundle_get_str(content, key, &text) != BUNDLE_ERROR_NONE) {
        return std::string();
    }
    return text;
}

/// The card's middle: a text and how often it was tapped.
class CardView : public app_assist::WViewController {
public:
    const char *getClassName() override { return "CardView"; }

    void setText(const std::string &text) {
        m_text = text;
        _show();
    }

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        m_label = elm_button_add(parent);
        evas_object_smart_callback_add(
            m_label, "clicked",
            [](void *data, Evas_Object *, void *) {
                auto *view = static_cast<CardView *>(data);
                ++view->m_taps;
                view->_show();
            },
            this);
        evas_object_show(m_label);
        return m_label;
    }
    void onCreated() override { _show(); }

private:
    void _show() {
        const std::string text = m_text + " " + std::to_string(m_taps);
        elm_object_text_set(m_label, text.c_str());
        say("shows " + text);
    }

    Evas_Object *m_label = nullptr;
    std::string m_text = "taps:";
    int m_taps = 0;
};

/// The card itself: a coloured ground with a part for the view.
class CardWindow : public app_assist::WWidgetWindowController {
public:
    void setColour(const std::string &colour) {
        unsigned int value = 0;
        char end = '\0';
        if (colour.size() == 6 && std::sscanf(colour.c_str(), "%x%c", &value, &end) == 1) {
            evas_object_color_set(m_ground, static_cast<int>(value >> 16U & 0xffU),
                                  static_cast<int>(value >> 8U & 0xffU),
                                  static_cast<int>(value & 0xffU), 255);
        }
    }

protected:
    Evas_Object *onCreateBaseLayout(Evas_Object *win, Evas_Object **) override {
        m_ground = evas_object_rectangle_add(evas_object_evas_get(win));
        evas_object_size_hint_weight_set(m_ground, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        evas_object_color_set(m_ground, 32, 80, 128, 255);
        elm_win_resize_object_add(win, m_ground);
        evas_object_show(m_ground);

        Evas_Object *frame = elm_frame_add(win);
        elm_object_style_set(frame, "pad_large");
        evas_object_size_hint_weight_set(frame, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        elm_win_resize_object_add(win, frame);
        evas_object_show(frame);
        return frame;
    }

private:
    Evas_Object *m_ground = nullptr;
};

class Card : public app_assist::WWidgetInstance {
protected:
    bool onCreate(widget_context_h context, bundle *content, int width, int height) override {
        say("create " + std::to_string(width) + "x" + std::to_string(height));
        m_window = new CardWindow;
        if (!attachWindowController(context, m_window)) {
            return false;
        }
        m_view = new CardView;
        if (!m_window->attachBaseViewController(m_view, nullptr)) {
            m_view->destroy();
            return false;
        }
        _tell(content);
        return true;
    }

    bool onUpdate(widget_context_h, bundle *content, bool isForced) override {
        say(isForced ? "update at once" : "update");
        _tell(content);
        return true;
    }

    bool onResize(widget_context_h, int width, int height) override {
        say("resize " + std::to_string(width) + "x" + std::to_string(height));
        return true;
    }

    bool onPause(widget_context_h) override {
        say("pause");
        return true;
    }

    bool onResume(widget_context_h) override {
        say("resume");
        return true;
    }

    bool onDestroy(widget_context_h, widget_app_destroy_type_e reason, bundle *) override {
        say(reason == WIDGET_APP_DESTROY_TYPE_PERMANENT ? "removed" : "put away");
        // The framework has deleted the window and leaves its controller to the instance.
        delete getWindowController();
        return true;
    }

private:
    void _tell(bundle *content) {
        m_window->setColour(textOf(content, "colour"));
        const std::string text = textOf(content, "text");
        if (!text.empty()) {
            m_view->setText(text);
        }
    }

    CardWindow *m_window = nullptr;
    CardView *m_view = nullptr;
};

class CardWidget : public app_assist::WWidget {
protected:
    void onCreate() override { say("ready"); }
    void onTerminate() override { say("goodbye"); }
    app_assist::WWidgetInstance *onCreateWidgetInstance() override { return new Card; }
};

}  // namespace

int main(int argc, char *argv[]) {
    return CardWidget().start(argc, argv);
}
