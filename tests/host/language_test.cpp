// The language of the process: what a language set at run time changes, and in which order.

#include <Elementary.h>
#include <app.h>
#include <gtest/gtest.h>
#include <libintl.h>
#include <utils_i18n.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "child_process.h"
#include "i18n/locale.h"

namespace {

// A catalogue of one text, in the binary form that gettext reads.
void write_catalogue(const std::string &folder, const std::string &language,
                     const std::string &translation) {
    const std::filesystem::path target = std::filesystem::path(folder) / language / "LC_MESSAGES";
    std::filesystem::create_directories(target);
    const std::string source = folder + "/" + language + ".po";
    std::ofstream(source) << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\n"
                          << "msgid \"IDS_TEST_HELLO\"\nmsgstr \"" << translation << "\"\n";
    child::Process compiler({"msgfmt", "-o", target / "tessel.mo", source}, {});
    ASSERT_EQ(compiler.wait(), 0) << compiler.errors();
}

class Language : public testing::Test {
protected:
    Language() {
        setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1);
        write_catalogue(folder_.path(), "en", "Hello");
        write_catalogue(folder_.path(), "fr", "Bonjour");
        bindtextdomain("tessel", folder_.path().c_str());
        bind_textdomain_codeset("tessel", "UTF-8");
        elm_language_set("en_US");
    }
    ~Language() override { bindtextdomain("tessel", "/nonexistent"); }

    static std::string hello() { return dgettext("tessel", "IDS_TEST_HELLO"); }

    child::TemporaryFolder folder_;
};

TEST_F(Language, ATextFollowsTheLanguageThatIsSet) {
    EXPECT_EQ(hello(), "Hello");
    elm_language_set("fr_FR.UTF-8");
    EXPECT_EQ(hello(), "Bonjour");
    elm_language_set("en_US.UTF-8");
    EXPECT_EQ(hello(), "Hello");
}

TEST_F(Language, ALanguageWithoutCatalogueFallsBackOnEnglish) {
    elm_language_set("ko_KR");
    EXPECT_EQ(hello(), "Hello");
}

TEST_F(Language, ThePlainLocaleMeansEnglish) {
    elm_language_set("fr_FR");
    elm_language_set("C");
    EXPECT_EQ(hello(), "Hello");
}

TEST_F(Language, NumbersStayTheSame) {
    elm_language_set("de_DE.UTF-8");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    EXPECT_EQ(std::to_string(1.5).substr(0, 3), "1.5");
}

TEST_F(Language, TheLocaleIsOneThatIsInstalledAndDrawable) {
    elm_language_set("xx_YY");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C.UTF-8");
}

TEST_F(Language, WidgetsAreTranslatedAnew) {
    Evas_Object *window = elm_win_add(nullptr, "test", ELM_WIN_BASIC);
    Evas_Object *label = elm_label_add(window);
    elm_object_domain_translatable_text_set(label, "tessel", "IDS_TEST_HELLO");
    EXPECT_STREQ(elm_object_text_get(label), "Hello");
    elm_language_set("fr_FR");
    EXPECT_STREQ(elm_object_text_get(label), "Bonjour");
    evas_object_del(window);
}

// The lookup's answer to an empty text is the header of the catalogue.
TEST_F(Language, AnEmptyTextStaysEmpty) {
    Evas_Object *window = elm_win_add(nullptr, "test", ELM_WIN_BASIC);
    Evas_Object *label = elm_label_add(window);
    const auto text = [label] {
        const char *found = elm_object_text_get(label);
        return std::string(found != nullptr ? found : "");
    };
    elm_object_domain_translatable_text_set(label, "tessel", "");
    elm_language_set("fr_FR");
    EXPECT_EQ(text(), "");
    elm_object_domain_translatable_text_set(label, "tessel", "IDS_TEST_HELLO");
    EXPECT_EQ(text(), "Bonjour");
    elm_object_domain_translatable_text_set(label, "tessel", "");
    elm_language_set("en_US");
    EXPECT_EQ(text(), "");
    evas_object_del(window);
}

TEST_F(Language, WidgetsFollowItsDirection) {
    Evas_Object *window = elm_win_add(nullptr, "test", ELM_WIN_BASIC);
    Evas_Object *button = elm_button_add(window);
    elm_language_set("ar_EG.UTF-8");
    EXPECT_TRUE(elm_object_mirrored_get(button));
    elm_language_set("fr_FR");
    EXPECT_FALSE(elm_object_mirrored_get(button));
    elm_language_set("he");
    EXPECT_TRUE(elm_object_mirrored_get(button));
    elm_language_set("C");
    EXPECT_FALSE(elm_object_mirrored_get(button));
    evas_object_del(window);
}

TEST_F(Language, OddNamesBreakNothing) {
    for (const std::string &name : {std::string(), std::string("_"), std::string("../../etc"),
                                    std::string(5000, 'x'), std::string("\xff\xfe")}) {
        elm_language_set(name.c_str());
        EXPECT_EQ(hello(), "Hello") << name;
    }
}

TEST_F(Language, TheEventComesWhenTheTextsHaveFollowed) {
    std::string seen;
    app_event_handler_h handler = nullptr;
    ASSERT_EQ(ui_app_add_event_handler(
                  &handler, APP_EVENT_LANGUAGE_CHANGED,
                  [](app_event_info_h, void *text) { *static_cast<std::string *>(text) = hello(); },
                  &seen),
              APP_ERROR_NONE);
    host::change_language("fr_FR");
    EXPECT_EQ(ui_app_remove_event_handler(handler), APP_ERROR_NONE);
    EXPECT_EQ(seen, "Bonjour");
}

TEST_F(Language, TheLookUpGivesBackWhatItDoesNotKnow) {
    EXPECT_STREQ(i18n_get_text("IDS_TEST_HELLO"), "Hello");
    const char *unknown = "no such id";
    EXPECT_EQ(i18n_get_text(unknown), unknown);
    EXPECT_STREQ(i18n_get_text(""), "");
    EXPECT_EQ(i18n_get_text(nullptr), nullptr);
}

}  // namespace
