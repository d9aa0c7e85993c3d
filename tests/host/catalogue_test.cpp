// Damaged catalogues: the text lookup would read beyond them, or never end.

#include <gtest/gtest.h>
#include <libintl.h>
#include <utils_i18n.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "child_process.h"
#include "i18n/catalogue.h"
#include "i18n/locale.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCountPlace = 8;
constexpr std::size_t kHashSizePlace = 20;
constexpr std::size_t kHashTablePlace = 24;

std::string contents(const fs::path &file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string installed(const std::string &language) {
    return contents(fs::path(TESSEL_STAGE_DATADIR) / "res/locale" / language / "LC_MESSAGES" /
                    "tessel.mo");
}

std::uint32_t number_at(const std::string &data, std::size_t place) {
    std::uint32_t number = 0;
    data.copy(reinterpret_cast<char *>(&number), sizeof number, place);
    return number;
}

std::string with(std::string data, std::size_t place, std::uint32_t number) {
    return data.replace(place, sizeof number, reinterpret_cast<const char *>(&number),
                        sizeof number);
}

TEST(Catalogue, AsItIsInstalledIsSound) {
    for (const char *language : {"en", "fr", "de", "ko", "ar"}) {
        EXPECT_TRUE(host::is_sound_catalogue(installed(language))) << language;
    }
}

TEST(Catalogue, CutOffAnywhereIsDamaged) {
    const std::string whole = installed("fr");
    ASSERT_FALSE(whole.empty());
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        EXPECT_FALSE(host::is_sound_catalogue(whole.substr(0, size))) << size;
    }
}

TEST(Catalogue, OfAnotherKindIsDamaged) {
    EXPECT_FALSE(host::is_sound_catalogue(std::string(4096, 'x')));
    EXPECT_FALSE(host::is_sound_catalogue(with(installed("fr"), 4, 0x00010001)));
}

TEST(Catalogue, WithMoreTextsThanThereIsRoomForIsDamaged) {
    EXPECT_FALSE(host::is_sound_catalogue(with(installed("fr"), kCountPlace, 0x7FFFFFFF)));
}

TEST(Catalogue, WithATextThatLiesOutsideIsDamaged) {
    const std::string whole = installed("fr");
    const std::size_t texts = number_at(whole, 16);
    EXPECT_FALSE(host::is_sound_catalogue(with(whole, texts + 8 + 4, 0xFFFFFFF0)));
    EXPECT_FALSE(host::is_sound_catalogue(with(whole, texts + 8, number_at(whole, texts + 8) + 1)));
}

TEST(Catalogue, WithAHashTableThatHasNoEndIsDamaged) {
    std::string full = installed("fr");
    const std::size_t table = number_at(full, kHashTablePlace);
    for (std::size_t index = 0; index < number_at(full, kHashSizePlace); ++index) {
        full = with(full, table + 4 * index, 1);
    }
    EXPECT_FALSE(host::is_sound_catalogue(full));
    const std::string whole = installed("fr");
    EXPECT_FALSE(host::is_sound_catalogue(
        with(whole, kHashSizePlace, number_at(whole, kHashSizePlace) - 1)));
    EXPECT_FALSE(host::is_sound_catalogue(with(whole, table, number_at(whole, kCountPlace) + 1)));
}

class Catalogues : public testing::Test {
protected:
    void put(const std::string &language, const std::string &content) const {
        const fs::path messages = fs::path(folder_.path()) / language / "LC_MESSAGES";
        fs::create_directories(messages);
        std::ofstream(messages / "tessel.mo", std::ios::binary) << content;
    }
    [[nodiscard]] std::string sound(const std::string &list) const {
        return host::languages_with_sound_catalogues(list, folder_.path(), "tessel");
    }

    const child::TemporaryFolder folder_;
};

TEST_F(Catalogues, ThatAreDamagedAreLeftOut) {
    put("de", installed("de").substr(0, 500));
    put("fr", installed("fr"));
    EXPECT_EQ(sound("de:fr:en"), "fr:en");
    EXPECT_EQ(sound("de_AT.UTF-8@euro:fr_CA"), "fr_CA");
    EXPECT_EQ(sound("de"), "C");
}

TEST_F(Catalogues, ThatAreDamagedDontReachTheLookup) {
    put("de", installed("de").substr(0, 500));
    put("fr", installed("fr"));
    put("en", installed("en"));
    setenv("LANGUAGE", "de:fr", 1);
    host::start_locale();
    bindtextdomain("tessel", folder_.path().c_str());
    EXPECT_STREQ(i18n_get_text("WDS_MUSIC_OPT_PLAY"), "Lire");
}

}  // namespace
