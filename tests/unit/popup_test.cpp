#include "app-assist/WPopupController.h"

#include <dlfcn.h>
#include <libintl.h>

#include <algorithm>
#include <clocale>
#include <map>
#include <memory>

#include "framework_fixture.h"
#include "mock_platform/mock_keys.h"

namespace {

/// A text that was set as a message id, with its domain as given.
struct Translatable {
    std::string part;
    std::string domain;
    std::string text;
    bool operator==(const Translatable &) const = default;
};

std::vector<Translatable> g_translatable;
std::string g_language;

}  // namespace

extern "C" {

// The program's call comes here first: which domain a text has can't be read back.
void elm_object_domain_translatable_part_text_set(Evas_Object *obj, const char *part,
                                                  const char *domain, const char *text) {
    static auto *const next =
        reinterpret_cast<decltype(&elm_object_domain_translatable_part_text_set)>(
            dlsym(RTLD_NEXT, "elm_object_domain_translatable_part_text_set"));
    g_translatable.push_back(
        {part != nullptr ? part : "default", domain != nullptr ? domain : "no domain", text});
    next(obj, part, domain, text);
}

// The catalogue: the toolkit asks here for the text in the present language.
char *dcgettext(const char *domain, const char *id, int) noexcept {
    static std::map<std::string, std::string> texts;
    if (g_language.empty() || domain == nullptr || std::string(domain) != "films") {
        return const_cast<char *>(id);
    }
    std::string &text = texts[g_language + id];
    text = g_language + " " + id;
    return text.data();
}

char *dgettext(const char *domain, const char *id) noexcept {
    return dcgettext(domain, id, LC_MESSAGES);
}

}  // extern "C"

namespace {

using app_assist::WPopupController;
using app_assist::WViewController;
using app_assist::WViewWeakPtr;
using framework::Journal;
using framework::View;

constexpr std::string_view tag = logs::framework_tag;

/// A popup that says when it has gone.
class Popup : public WPopupController {
public:
    explicit Popup(Journal &journal) : m_journal(journal) {}
    Popup(Journal &journal, const char *title, const char *content)
        : WPopupController(title, content), m_journal(journal) {}

protected:
    ~Popup() override { m_journal.emplace_back("popup.gone"); }

private:
    Journal &m_journal;
};

class PopupTest : public framework::WindowedTest {
protected:
    void SetUp() override {
        WindowedTest::SetUp();
        g_translatable.clear();
        g_language.clear();
        m_view = new View(m_journal);
        ASSERT_TRUE(m_view->create(base_layout(), nullptr));
        m_journal.clear();
    }

    Popup *attached(Popup *popup) {
        m_view->attachPopup(popup);
        EXPECT_NE(popup->getEvasObject(), nullptr);
        return popup;
    }

    static std::string title(WPopupController *popup) {
        const char *text = elm_object_part_text_get(popup->getEvasObject(), "title,text");
        return text != nullptr ? text : "";
    }
    static std::string text(WPopupController *popup) {
        const char *shown = elm_object_text_get(popup->getEvasObject());
        return shown != nullptr ? shown : "";
    }
    static Evas_Object *button(WPopupController *popup, int number) {
        const std::string part = "button" + std::to_string(number);
        return elm_object_part_content_get(popup->getEvasObject(), part.c_str());
    }
    static void click(Evas_Object *button) {
        evas_object_smart_callback_call(button, "clicked", nullptr);
    }
    bool gone() { return std::count(m_journal.begin(), m_journal.end(), "popup.gone") == 1; }

    View *m_view = nullptr;
};

TEST_F(PopupTest, ShowsTitleAndText) {
    Popup *popup = attached(new Popup(m_journal, "Title", "Text"));
    EXPECT_EQ(title(popup), "Title");
    EXPECT_EQ(text(popup), "Text");
    EXPECT_TRUE(evas_object_visible_get(popup->getEvasObject()));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(PopupTest, StandsFullWideAtTheBottom) {
    Popup *popup = attached(new Popup(m_journal));
    double horizontal = 0.0;
    double vertical = 0.0;
    elm_popup_align_get(popup->getEvasObject(), &horizontal, &vertical);
    EXPECT_EQ(horizontal, -1.0);
    EXPECT_EQ(vertical, 1.0);
}

TEST_F(PopupTest, TextsMayBeNull) {
    Popup *popup = attached(new Popup(m_journal, nullptr, nullptr));
    EXPECT_EQ(title(popup), "");
    EXPECT_EQ(text(popup), "");
}

TEST_F(PopupTest, NullEmptiesATextThatWasSet) {
    auto *popup = new Popup(m_journal, "Title", "Text");
    popup->setTitle(nullptr);
    popup->setContent(static_cast<const char *>(nullptr));
    attached(popup);
    EXPECT_EQ(title(popup), "");
    EXPECT_EQ(text(popup), "");
}

TEST_F(PopupTest, PopupWithButtonsAloneShowsThem) {
    auto *popup = new Popup(m_journal);
    popup->addButton("OK", nullptr);
    attached(popup);
    EXPECT_NE(button(popup, 1), nullptr);
    EXPECT_EQ(text(popup), "");
}

// ---- content

TEST_F(PopupTest, ViewAsContentStandsInThePopup) {
    auto *content = new View(m_journal, "content");
    auto *popup = new Popup(m_journal);
    popup->setContent(content);
    attached(popup);
    EXPECT_EQ(elm_object_content_get(popup->getEvasObject()), content->getEvasObject());
    m_journal.clear();
    popup->destroy();
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "content.gone"), 1);
}

TEST_F(PopupTest, FunctionMakesTheContentBelowThePopup) {
    auto *popup = new Popup(m_journal);
    Evas_Object *seen = nullptr;
    Evas_Object *made = nullptr;
    popup->setContent([&](Evas_Object *parent) {
        seen = parent;
        return made = elm_box_add(parent);
    });
    attached(popup);
    EXPECT_EQ(seen, popup->getEvasObject());
    EXPECT_EQ(elm_object_content_get(popup->getEvasObject()), made);
}

TEST_F(PopupTest, FunctionThatMakesNothingLeavesThePopupEmpty) {
    auto *popup = new Popup(m_journal);
    popup->setContent([](Evas_Object *) -> Evas_Object * { return nullptr; });
    attached(popup);
    EXPECT_EQ(elm_object_content_get(popup->getEvasObject()), nullptr);
}

TEST_F(PopupTest, TextAfterAFunctionWins) {
    auto *popup = new Popup(m_journal);
    bool asked = false;
    popup->setContent([&](Evas_Object *parent) {
        asked = true;
        return elm_box_add(parent);
    });
    popup->setContent("Text");
    attached(popup);
    EXPECT_EQ(text(popup), "Text");
    EXPECT_FALSE(asked);
}

TEST_F(PopupTest, FunctionAfterATextWins) {
    auto *popup = new Popup(m_journal);
    popup->setContent("Text");
    popup->setContent([](Evas_Object *parent) { return elm_box_add(parent); });
    attached(popup);
    EXPECT_EQ(text(popup), "");
    EXPECT_NE(elm_object_content_get(popup->getEvasObject()), nullptr);
}

TEST_F(PopupTest, ViewWinsOverAnEarlierFunction) {
    auto *content = new View(m_journal, "content");
    auto *popup = new Popup(m_journal);
    popup->setContent([](Evas_Object *parent) { return elm_box_add(parent); });
    popup->setContent(content);
    attached(popup);
    EXPECT_EQ(elm_object_content_get(popup->getEvasObject()), content->getEvasObject());
}

TEST_F(PopupTest, TextDestroysAViewThatWasSet) {
    auto *popup = new Popup(m_journal);
    popup->setContent(new View(m_journal, "content"));
    popup->setContent("Text");
    EXPECT_EQ(m_journal, (Journal{"content.onDestroy", "content.gone"}));
    popup->destroy();
}

TEST_F(PopupTest, FunctionDestroysAViewThatWasSet) {
    auto *popup = new Popup(m_journal);
    popup->setContent(new View(m_journal, "content"));
    popup->setContent([](Evas_Object *parent) { return elm_box_add(parent); });
    EXPECT_EQ(m_journal, (Journal{"content.onDestroy", "content.gone"}));
    popup->destroy();
}

TEST_F(PopupTest, SecondViewLeavesTheFirstAlone) {
    auto *popup = new Popup(m_journal);
    auto *first = new View(m_journal, "first");
    popup->setContent(first);
    popup->setContent(new View(m_journal, "second"));
    attached(popup);
    EXPECT_EQ(m_journal, (Journal{"second.onCreate", "second.onCreateView", "second.onCreated"}));
    first->destroy();
}

TEST_F(PopupTest, CreationHookRunsBeforeAnythingIsAdded) {
    auto *popup = new Popup(m_journal, "Title", "Text");
    popup->addButton("OK", nullptr);
    std::string title_then = "not asked";
    Evas_Object *seen = nullptr;
    Evas_Object *button_then = popup->getEvasObject();
    popup->setCreationHook([&](Evas_Object *obj) {
        seen = obj;
        const char *shown = elm_object_part_text_get(obj, "title,text");
        title_then = shown != nullptr ? shown : "";
        button_then = elm_object_part_content_get(obj, "button1");
    });
    attached(popup);
    EXPECT_EQ(seen, popup->getEvasObject());
    EXPECT_EQ(title_then, "");
    EXPECT_EQ(button_then, nullptr);
}

// ---- the language of its texts

TEST_F(PopupTest, PlainTextsAreNotTranslated) {
    auto *popup = new Popup(m_journal, "Title", "Text");
    popup->addButton("OK", nullptr);
    attached(popup);
    EXPECT_TRUE(g_translatable.empty());
}

TEST_F(PopupTest, TextDomainHoldsForTitleTextAndButtons) {
    auto *popup = new Popup(m_journal, "IDS_TITLE", "IDS_TEXT");
    popup->setTextDomain("films");
    popup->addButton("IDS_OK", nullptr);
    attached(popup);
    EXPECT_EQ(g_translatable, (std::vector<Translatable>{{"title,text", "films", "IDS_TITLE"},
                                                         {"default", "films", "IDS_TEXT"},
                                                         {"default", "films", "IDS_OK"}}));
}

TEST_F(PopupTest, TranslatableTextsHaveNoDomain) {
    auto *popup = new Popup(m_journal, "IDS_TITLE", "IDS_TEXT");
    popup->setTextTranslatable();
    attached(popup);
    EXPECT_EQ(g_translatable, (std::vector<Translatable>{{"title,text", "no domain", "IDS_TITLE"},
                                                         {"default", "no domain", "IDS_TEXT"}}));
}

TEST_F(PopupTest, TextDomainWinsOverTranslatable) {
    auto *popup = new Popup(m_journal, "IDS_TITLE", nullptr);
    popup->setTextTranslatable();
    popup->setTextDomain("films");
    attached(popup);
    EXPECT_EQ(g_translatable, (std::vector<Translatable>{{"title,text", "films", "IDS_TITLE"}}));
}

TEST_F(PopupTest, NullTextDomainIsNone) {
    auto *popup = new Popup(m_journal, "Title", nullptr);
    popup->setTextDomain("films");
    popup->setTextDomain(nullptr);
    attached(popup);
    EXPECT_TRUE(g_translatable.empty());
}

TEST_F(PopupTest, TitleFollowsTheLanguageAtRunTime) {
    g_language = "first";
    auto *popup = new Popup(m_journal, "IDS_TITLE", nullptr);
    popup->setTextDomain("films");
    attached(popup);
    EXPECT_EQ(title(popup), "first IDS_TITLE");
    g_language = "second";
    elm_language_set("C.UTF-8");
    EXPECT_EQ(title(popup), "second IDS_TITLE");
}

// ---- buttons

TEST_F(PopupTest, ButtonsStandInTheirPartsInOrder) {
    auto *popup = new Popup(m_journal);
    EXPECT_TRUE(popup->addButton("one", nullptr));
    EXPECT_TRUE(popup->addButton("two", nullptr));
    EXPECT_TRUE(popup->addButton("three", nullptr));
    attached(popup);
    const char *texts[] = {"one", "two", "three"};
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(button(popup, i + 1), nullptr);
        EXPECT_STREQ(elm_object_text_get(button(popup, i + 1)), texts[i]);
        EXPECT_STREQ(elm_object_style_get(button(popup, i + 1)), "popup");
        EXPECT_TRUE(evas_object_visible_get(button(popup, i + 1)));
    }
}

TEST_F(PopupTest, FourthButtonIsRefusedAndLogged) {
    auto *popup = new Popup(m_journal);
    for (const char *text : {"one", "two", "three"}) {
        EXPECT_TRUE(popup->addButton(text, nullptr));
    }
    EXPECT_FALSE(popup->addButton("four", nullptr));
    EXPECT_TRUE(
        LoggedIn("addButton", DLOG_ERROR, "* Critical * Over the max button number! =3", tag));
    attached(popup);
    EXPECT_NE(button(popup, 3), nullptr);
    EXPECT_EQ(button(popup, 4), nullptr);
}

TEST_F(PopupTest, ButtonHookRunsWhenTheButtonStandsInItsPart) {
    auto *popup = new Popup(m_journal);
    Evas_Object *object = nullptr;
    Evas_Object *seen = nullptr;
    Evas_Object *in_part = nullptr;
    popup->setCreationHook([&](Evas_Object *obj) { object = obj; });
    popup->addButton("OK", nullptr, [&](Evas_Object *obj) {
        seen = obj;
        in_part = elm_object_part_content_get(object, "button1");
    });
    attached(popup);
    EXPECT_EQ(seen, button(popup, 1));
    EXPECT_EQ(in_part, seen);
}

TEST_F(PopupTest, ButtonWithoutHandlerClosesThePopup) {
    auto *popup = new Popup(m_journal);
    popup->addButton("OK", nullptr);
    attached(popup);
    click(button(popup, 1));
    EXPECT_TRUE(gone());
}

TEST_F(PopupTest, EachButtonCallsItsOwnHandler) {
    auto *popup = new Popup(m_journal);
    std::vector<int> clicked;
    for (int i = 1; i <= 3; ++i) {
        popup->addButton("button", [&clicked, i](bool *close) {
            clicked.push_back(i);
            *close = false;
        });
    }
    attached(popup);
    for (int i : {2, 3, 1}) {
        click(button(popup, i));
    }
    EXPECT_EQ(clicked, (std::vector<int>{2, 3, 1}));
}

TEST_F(PopupTest, HandlerThatLeavesTheFlagClosesThePopup) {
    auto *popup = new Popup(m_journal);
    bool flag = false;
    popup->addButton("OK", [&](bool *close) { flag = *close; });
    attached(popup);
    click(button(popup, 1));
    EXPECT_TRUE(flag);
    EXPECT_TRUE(gone());
}

TEST_F(PopupTest, HandlerThatClearsTheFlagKeepsThePopup) {
    auto *popup = new Popup(m_journal);
    popup->addButton("OK", [](bool *close) { *close = false; });
    attached(popup);
    click(button(popup, 1));
    EXPECT_FALSE(gone());
    EXPECT_NE(popup->getEvasObject(), nullptr);
}

TEST_F(PopupTest, HandlerMayDestroyThePopupItself) {
    auto *popup = new Popup(m_journal);
    auto token = std::make_shared<int>(0);
    long uses_after = 0;
    popup->addButton("OK", [&uses_after, token, this](bool *) {
        m_view->destroyPopup();
        // What the handler holds is still there.
        uses_after = token.use_count();
    });
    attached(popup);
    click(button(popup, 1));
    EXPECT_TRUE(gone());
    EXPECT_EQ(uses_after, 2);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PopupTest, HandlerMayDestroyTheViewOfThePopup) {
    auto *popup = new Popup(m_journal);
    popup->addButton("OK", [this](bool *) { m_view->destroy(); });
    attached(popup);
    click(button(popup, 1));
    EXPECT_TRUE(gone());
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
}

TEST_F(PopupTest, HandlerMayAttachTheNextPopup) {
    auto *popup = new Popup(m_journal);
    Journal next_journal;
    auto *next = new Popup(next_journal, "Next", nullptr);
    popup->addButton("OK", [&](bool *) { m_view->attachPopup(next); });
    attached(popup);
    click(button(popup, 1));
    EXPECT_TRUE(gone());
    EXPECT_EQ(title(next), "Next");
    m_view->destroyPopup();
    EXPECT_EQ(next_journal, Journal{"popup.gone"});
}

// ---- back key

TEST_F(PopupTest, BackKeyWithoutHandlerClosesThePopup) {
    attached(new Popup(m_journal));
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_TRUE(gone());
}

TEST_F(PopupTest, BackHandlerThatLeavesTheFlagClosesThePopup) {
    auto *popup = new Popup(m_journal);
    bool flag = false;
    popup->setBackHandler([&](bool *close) { flag = *close; });
    attached(popup);
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_TRUE(flag);
    EXPECT_TRUE(gone());
}

TEST_F(PopupTest, BackHandlerThatClearsTheFlagKeepsThePopup) {
    auto *popup = new Popup(m_journal);
    popup->setBackHandler([](bool *close) { *close = false; });
    attached(popup);
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_FALSE(gone());
}

TEST_F(PopupTest, BackHandlerMayDestroyThePopupItself) {
    auto *popup = new Popup(m_journal);
    popup->setBackHandler([popup](bool *) { popup->destroy(); });
    attached(popup);
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_TRUE(gone());
}

TEST_F(PopupTest, BackHandlerThatLeavesTheFlagHasThePopupDestroyItself) {
    struct Destroying : Popup {
        using Popup::Popup;
        int destroyed = 0;
        void destroy() override { ++destroyed; }
    };
    auto *popup = new Destroying(m_journal);
    popup->setBackHandler([](bool *) {});
    popup->addButton("OK", [](bool *) {});
    attached(popup);
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_EQ(popup->destroyed, 1);
    EXPECT_FALSE(gone());
    // A button deletes the object without asking.
    click(button(popup, 1));
    EXPECT_TRUE(gone());
}

TEST_F(PopupTest, LaterBackHandlerReplacesTheEarlier) {
    auto *popup = new Popup(m_journal);
    int called = 0;
    popup->setBackHandler([&](bool *) { called = 1; });
    popup->setBackHandler([&](bool *) { called = 2; });
    attached(popup);
    mock::fake_keys().press_back();
    EXPECT_EQ(called, 2);
}

// ---- its end

TEST_F(PopupTest, ToastGoesByItsTimeout) {
    auto *popup = new Popup(m_journal, nullptr, "Toast");
    popup->setCreationHook([](Evas_Object *obj) {
        elm_popup_timeout_set(obj, 0.05);
        evas_object_smart_callback_add(
            obj, "timeout",
            [](void *, Evas_Object *timed_out, void *) { evas_object_del(timed_out); }, nullptr);
    });
    attached(popup);
    const WViewWeakPtr weak = popup->getWeakPtr();
    EXPECT_TRUE(support::run_main_loop_until([&] { return gone(); }));
    EXPECT_TRUE(weak.expired());
    m_view->destroyPopup();
}

TEST_F(PopupTest, DestroyPopupClosesIt) {
    attached(new Popup(m_journal, "Title", "Text"));
    m_view->destroyPopup();
    EXPECT_TRUE(gone());
}

TEST_F(PopupTest, PopupNeverShownFreesItsDescription) {
    auto token = std::make_shared<int>(0);
    auto *popup = new Popup(m_journal, "Title", "Text");
    popup->addButton(
        "OK", [token](bool *) {}, [token](Evas_Object *) {});
    popup->setBackHandler([token](bool *) {});
    popup->setCreationHook([token](Evas_Object *) {});
    EXPECT_EQ(token.use_count(), 5);
    popup->destroy();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PopupTest, HandlersGoWithThePopup) {
    auto token = std::make_shared<int>(0);
    auto *popup = new Popup(m_journal, "Title", "Text");
    popup->addButton(
        "OK", [token](bool *) {}, [token](Evas_Object *) {});
    attached(popup);
    delete_window();
    EXPECT_EQ(token.use_count(), 1);
}

}  // namespace
