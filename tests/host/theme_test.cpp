#include <Edje.h>
#include <Elementary.h>
#include <gtest/gtest.h>
#include <uxt.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "theme/table.h"

namespace {

namespace fs = std::filesystem;

/// A table file that goes with the test.
class TableFile {
public:
    explicit TableFile(const std::string &content) {
        std::string name = (fs::temp_directory_path() / "tessel-table-XXXXXX").string();
        const int descriptor = mkstemp(name.data());
        EXPECT_GE(descriptor, 0);
        close(descriptor);
        m_path = name;
        std::ofstream(m_path, std::ios::binary) << content;
    }
    ~TableFile() { fs::remove(m_path); }
    TableFile(const TableFile &) = delete;
    TableFile &operator=(const TableFile &) = delete;
    [[nodiscard]] const char *path() const { return m_path.c_str(); }

private:
    std::string m_path;
};

std::string colors(const std::string &entries) {
    return "<?xml version=\"1.0\"?>\n<colors>" + entries + "</colors>";
}
std::string fonts(const std::string &entries) {
    return "<fonts>" + entries + "</fonts>";
}

bool accepts_colors(const std::string &content) {
    const TableFile file(content);
    return host::read_color_table(file.path()).has_value();
}
bool accepts_fonts(const std::string &content) {
    const TableFile file(content);
    return host::read_font_table(file.path()).has_value();
}

TEST(ColorTable, HoldsColourOutlineAndShadow) {
    const TableFile file(
        colors("<!-- a comment -->\n"
               "<color code=\"A\" rgba=\"#01020304\" outline=\"#0a0b0c\"/>\n"
               "<color code=\"B\" rgba=\"#FFfF00\" shadow=\"#00000080\"/>"));
    const auto table = host::read_color_table(file.path());
    ASSERT_TRUE(table);
    ASSERT_EQ(table->size(), 2u);
    EXPECT_EQ(table->at("A").color, (host::Rgba{1, 2, 3, 4}));
    EXPECT_EQ(table->at("A").outline, (host::Rgba{10, 11, 12, 255}));
    EXPECT_EQ(table->at("A").shadow, (host::Rgba{0, 0, 0, 0}));
    EXPECT_EQ(table->at("B").color, (host::Rgba{255, 255, 0, 255}));
    EXPECT_EQ(table->at("B").shadow, (host::Rgba{0, 0, 0, 128}));
}

TEST(ColorTable, MayBeEmpty) {
    EXPECT_TRUE(accepts_colors("<colors/>"));
}

TEST(ColorTable, RefusesWhatIsNoColour) {
    for (const char *rgba :
         {"", "red", "#12345", "#1234567", "#12345g", "#-12345", "0x123456", "#123456789"}) {
        EXPECT_FALSE(
            accepts_colors(colors(std::string("<color code=\"A\" rgba=\"") + rgba + "\"/>")))
            << rgba;
    }
}

TEST(ColorTable, RefusesIncompleteForeignAndRepeatedEntries) {
    EXPECT_FALSE(accepts_colors(colors("<color rgba=\"#000000\"/>")));
    EXPECT_FALSE(accepts_colors(colors("<color code=\"A\"/>")));
    EXPECT_FALSE(accepts_colors(colors("<colour code=\"A\" rgba=\"#000000\"/>")));
    EXPECT_FALSE(accepts_colors(colors("<color code=\"A\" rgba=\"#000000\" glow=\"1\"/>")));
    EXPECT_FALSE(accepts_colors(colors("<color code=\"A\" rgba=\"#000000\"><b/></color>")));
    EXPECT_FALSE(accepts_colors(colors("text")));
    EXPECT_FALSE(accepts_colors(fonts("")));
    EXPECT_FALSE(accepts_colors(
        colors("<color code=\"A\" rgba=\"#000000\"/><color code=\"A\" rgba=\"#000000\"/>")));
}

TEST(ColorTable, RefusesAFileThatIsNoTable) {
    EXPECT_FALSE(host::read_color_table("/nowhere/table.xml"));
    EXPECT_FALSE(host::read_color_table("/"));
    EXPECT_FALSE(accepts_colors(""));
    EXPECT_FALSE(accepts_colors("<colors>"));
    EXPECT_FALSE(accepts_colors(std::string("\0\1\2", 3)));
}

TEST(ColorTable, ExpandsNoEntityAndReadsNoOtherFile) {
    EXPECT_FALSE(accepts_colors("<!DOCTYPE colors><colors/>"));
    const TableFile secret("#123456");
    EXPECT_FALSE(accepts_colors("<!DOCTYPE colors [<!ENTITY e SYSTEM \"" +
                                std::string(secret.path()) +
                                "\">]><colors><color code=\"A\" rgba=\"&e;\"/></colors>"));
    std::string bomb = "<!DOCTYPE c [<!ENTITY a \"x\">";
    for (char name = 'b'; name < 'z'; ++name) {
        const std::string inner = std::string("&") + static_cast<char>(name - 1) + ";";
        bomb += std::string("<!ENTITY ") + name + " \"" + inner + inner + inner + inner + "\">";
    }
    EXPECT_FALSE(
        accepts_colors(bomb + "]><colors><color code=\"&y;\" rgba=\"#000000\"/></colors>"));
}

TEST(ColorTable, RefusesMoreThanAQuarterOfAMegabyte) {
    const std::string padding(256 * 1024, ' ');
    EXPECT_FALSE(accepts_colors(colors(padding)));
    EXPECT_TRUE(accepts_colors(colors(padding.substr(1024))));
}

TEST(ColorTable, RefusesAHundredMegabytesWithoutReadingThem) {
    const TableFile file("<colors/>");
    fs::resize_file(file.path(), 100 * 1024 * 1024);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(host::read_color_table(file.path()));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(ColorTable, RefusesAPipeInsteadOfWaitingForIt) {
    const TableFile file("");
    fs::remove(file.path());
    ASSERT_EQ(mkfifo(file.path(), 0600), 0);
    EXPECT_FALSE(host::read_color_table(file.path()));
}

TEST(ColorTable, RefusesAnEncodingThatIsNotWhatItSays) {
    const std::string body = "<colors><color code=\"A\" rgba=\"#000000\"/></colors>";
    EXPECT_TRUE(accepts_colors("\xef\xbb\xbf" + body));
    EXPECT_FALSE(accepts_colors("\xff\xfe" + body));
    EXPECT_FALSE(accepts_colors("<?xml version=\"1.0\" encoding=\"x-no-such\"?>" + body));
    EXPECT_FALSE(accepts_colors("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + body.substr(1)));
    EXPECT_FALSE(
        accepts_colors("<?xml version=\"1.0\"?><colors><color code=\"\xc3(\" "
                       "rgba=\"#000000\"/></colors>"));
    EXPECT_FALSE(accepts_colors(body + std::string(1, '\0') + body));
}

TEST(ColorTable, RefusesDepthWithoutFallingIntoIt) {
    std::string nested;
    for (int depth = 0; depth < 50'000; ++depth) {
        nested += "<a>";
    }
    EXPECT_FALSE(accepts_colors(colors(nested)));
}

TEST(FontTable, HoldsFamilyStyleAndScale) {
    const TableFile file(
        fonts("<font code=\"A\" family=\"Sans\" style=\"Bold\" scale=\"120\"/>"
              "<font code=\"B\" family=\"Serif\"/>"));
    const auto table = host::read_font_table(file.path());
    ASSERT_TRUE(table);
    EXPECT_EQ(table->at("A").name, "Sans:style=Bold");
    EXPECT_EQ(table->at("A").scale_percent, 120);
    EXPECT_EQ(table->at("B").name, "Serif");
    EXPECT_EQ(table->at("B").scale_percent, 100);
}

TEST(FontTable, RefusesAScaleOutOfRange) {
    for (const char *scale : {"9", "1001", "-100", "big", "100%", "99999999999"}) {
        EXPECT_FALSE(accepts_fonts(
            fonts(std::string("<font code=\"A\" family=\"Sans\" scale=\"") + scale + "\"/>")))
            << scale;
    }
}

class ThemeTest : public testing::Test {
protected:
    static std::array<int, 4> color(const char *code) {
        std::array<int, 4> found{-1, -1, -1, -1};
        m_result =
            uxt_theme_get_color(code, &found[0], &found[1], &found[2], &found[3], nullptr, nullptr,
                                nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        return found;
    }
    static inline int m_result = 0;
};

TEST_F(ThemeTest, AnswersTheColoursOfTheTableInForce) {
    const TableFile first(colors("<color code=\"A\" rgba=\"#010203\"/>"));
    const TableFile second(colors("<color code=\"A\" rgba=\"#040506\"/>"));
    uxt_color_table_h first_table = uxt_theme_add_color_table(first.path());
    uxt_color_table_h second_table = uxt_theme_add_color_table(second.path());
    ASSERT_NE(first_table, nullptr);
    ASSERT_NE(second_table, nullptr);
    EXPECT_EQ(uxt_theme_set_color_table(first_table), UXT_ERROR_NONE);
    EXPECT_EQ(color("A"), (std::array<int, 4>{1, 2, 3, 255}));
    EXPECT_EQ(m_result, UXT_ERROR_NONE);
    EXPECT_EQ(uxt_theme_set_color_table(second_table), UXT_ERROR_NONE);
    EXPECT_EQ(color("A"), (std::array<int, 4>{4, 5, 6, 255}));
}

TEST_F(ThemeTest, LeavesTheOutputsForAnUnknownCode) {
    EXPECT_EQ(color("no such code"), (std::array<int, 4>{-1, -1, -1, -1}));
    EXPECT_EQ(m_result, UXT_ERROR_NO_SUCH_CODE);
    EXPECT_EQ(color(nullptr), (std::array<int, 4>{-1, -1, -1, -1}));
    EXPECT_EQ(m_result, UXT_ERROR_INVALID_PARAMETER);
}

TEST_F(ThemeTest, TakesItsOwnHandlesOnly) {
    int other = 0;
    EXPECT_EQ(uxt_theme_set_color_table(nullptr), UXT_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(uxt_theme_set_color_table(reinterpret_cast<uxt_color_table_h>(&other)),
              UXT_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(uxt_theme_set_font_table(nullptr), UXT_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(uxt_theme_add_color_table(nullptr), nullptr);
    EXPECT_EQ(uxt_theme_add_color_table("/nowhere"), nullptr);
    EXPECT_EQ(uxt_theme_add_font_table("/nowhere"), nullptr);
    EXPECT_EQ(uxt_theme_set_style(static_cast<uxt_theme_style_e>(3)), UXT_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(uxt_theme_set_style(UXT_THEME_STYLE_LIGHT), UXT_ERROR_NONE);
}

TEST_F(ThemeTest, GivesClassesTheirColoursOnlyWhileChangeable) {
    const TableFile file(colors("<color code=\"CLASS\" rgba=\"#0a141eff\"/>"));
    uxt_theme_set_changeable_ui_enabled(0);
    ASSERT_EQ(uxt_theme_set_color_table(uxt_theme_add_color_table(file.path())), UXT_ERROR_NONE);
    int r = -1;
    int g = -1;
    int b = -1;
    const auto red = [&] {
        r = -1;
        edje_color_class_get("CLASS", &r, &g, &b, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr);
        return r;
    };
    EXPECT_NE(red(), 10);
    uxt_theme_set_changeable_ui_enabled(1);
    EXPECT_EQ(red(), 10);
    EXPECT_EQ(g, 20);
    EXPECT_EQ(b, 30);
}

TEST_F(ThemeTest, GivesTextClassesTheirFont) {
    const TableFile file(fonts("<font code=\"TEXT\" family=\"Serif\" scale=\"150\"/>"));
    uxt_theme_set_changeable_ui_enabled(1);
    ASSERT_EQ(uxt_theme_set_font_table(uxt_theme_add_font_table(file.path())), UXT_ERROR_NONE);
    const char *font = nullptr;
    Evas_Font_Size size = 0;
    ASSERT_TRUE(edje_text_class_get("TEXT", &font, &size));
    EXPECT_STREQ(font, "Serif");
    EXPECT_EQ(size, -150);
}

TEST_F(ThemeTest, ColoursAnObjectPremultiplied) {
    const TableFile file(colors("<color code=\"A\" rgba=\"#ff800080\"/>"));
    ASSERT_EQ(uxt_theme_set_color_table(uxt_theme_add_color_table(file.path())), UXT_ERROR_NONE);
    Evas_Object *window = elm_win_add(nullptr, "theme", ELM_WIN_BASIC);
    Evas_Object *object = evas_object_rectangle_add(evas_object_evas_get(window));
    EXPECT_EQ(uxt_theme_object_set_color(object, "A"), UXT_ERROR_NONE);
    int r = 0;
    int g = 0;
    int b = 0;
    int a = 0;
    evas_object_color_get(object, &r, &g, &b, &a);
    EXPECT_EQ(a, 128);
    EXPECT_NEAR(r, 128, 1);
    EXPECT_NEAR(g, 64, 1);
    EXPECT_EQ(b, 0);
    EXPECT_EQ(uxt_theme_object_set_color(object, "B"), UXT_ERROR_NO_SUCH_CODE);
    EXPECT_EQ(uxt_theme_object_set_color(nullptr, "A"), UXT_ERROR_INVALID_PARAMETER);
    evas_object_del(window);
}

TEST_F(ThemeTest, ReadsTheProgramsTables) {
    EXPECT_NE(uxt_theme_add_color_table(TESSEL_STAGE_DATADIR
                                        "/shared/tables/com.orvane.tessel_ChangeableColorInfo.xml"),
              nullptr);
    EXPECT_NE(uxt_theme_add_font_table(TESSEL_STAGE_DATADIR
                                       "/shared/tables/com.orvane.tessel_ChangeableFontInfo.xml"),
              nullptr);
}

struct EinaFileClose {
    void operator()(Eina_File *file) const { eina_file_close(file); }
};
struct EinaIteratorFree {
    void operator()(Eina_Iterator *iterator) const { eina_iterator_free(iterator); }
};

TEST_F(ThemeTest, ProgramsTableAndThemeFileAgreeOnTheColours) {
    const auto table = host::read_color_table(
        TESSEL_STAGE_DATADIR "/shared/tables/com.orvane.tessel_ChangeableColorInfo.xml");
    ASSERT_TRUE(table);
    const std::unique_ptr<Eina_File, EinaFileClose> file(
        eina_file_open(TESSEL_STAGE_DATADIR "/res/edje/tessel.edj", EINA_FALSE));
    ASSERT_TRUE(file);
    const std::unique_ptr<Eina_Iterator, EinaIteratorFree> classes(
        edje_mmap_color_class_iterator_new(file.get()));
    void *data = nullptr;
    int count = 0;
    while (eina_iterator_next(classes.get(), &data)) {
        const auto &own = *static_cast<const Edje_Color_Class *>(data);
        ASSERT_TRUE(table->contains(own.name)) << own.name;
        const host::ThemeColor &entry = table->at(own.name);
        EXPECT_EQ(entry.color, (host::Rgba{own.r, own.g, own.b, own.a})) << own.name;
        EXPECT_EQ(entry.shadow[3], own.a3) << own.name;
        ++count;
    }
    EXPECT_GE(count, 6);
}

TEST_F(ThemeTest, ProgramsTableHasTheColoursThatTheScreensAskFor) {
    const auto table = host::read_color_table(
        TESSEL_STAGE_DATADIR "/shared/tables/com.orvane.tessel_ChangeableColorInfo.xml");
    ASSERT_TRUE(table);
    for (const char *code : {"MUSIC_AO0292", "MUSIC_AO0293", "B065L3"}) {
        EXPECT_TRUE(table->contains(code)) << code;
    }
}

TEST_F(ThemeTest, MakesButtonsInAStyle) {
    EXPECT_EQ(uxt_button_add(nullptr, "default"), nullptr);
    Evas_Object *window = elm_win_add(nullptr, "theme", ELM_WIN_BASIC);
    Evas_Object *button = uxt_button_add(window, "anchor");
    ASSERT_NE(button, nullptr);
    EXPECT_STREQ(elm_object_style_get(button), "anchor");
    EXPECT_STREQ(elm_object_style_get(uxt_button_add(window, nullptr)), "default");
    evas_object_del(window);
}

}  // namespace
