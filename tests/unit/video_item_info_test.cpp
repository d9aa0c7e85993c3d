#include "TslVideoItemInfo.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>

#include "log_lines.h"

namespace {

using Text = std::unique_ptr<char, decltype(&std::free)>;

// One rule for the four texts.
struct TextField {
    const char *name;
    char *(TslVideoItemInfo::*get)() const;
    void (TslVideoItemInfo::*set)(const char *);
    const char *get_warning;
    const char *set_warning;
};

class VideoItemText : public testing::TestWithParam<TextField> {
protected:
    Text get() { return Text((m_info.*GetParam().get)(), &std::free); }
    void set(const char *text) { (m_info.*GetParam().set)(text); }

    TslVideoItemInfo m_info;
};

TEST_P(VideoItemText, IsCopiedInAndOut) {
    std::string source = "first";
    set(source.c_str());
    source[0] = 'x';
    const Text first = get();
    EXPECT_STREQ(first.get(), "first");
    set("second");
    EXPECT_STREQ(first.get(), "first");
    EXPECT_STREQ(get().get(), "second");
    EXPECT_TRUE(logs::all().empty());
}

TEST_P(VideoItemText, ThatIsNotSetIsLogged) {
    EXPECT_EQ(get(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(GetParam().get_warning)}));
}

TEST_P(VideoItemText, IsKeptWhenNullIsSet) {
    set("kept");
    set(nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(GetParam().set_warning)}));
    EXPECT_STREQ(get().get(), "kept");
}

TEST_P(VideoItemText, MayBeEmpty) {
    set("");
    EXPECT_STREQ(get().get(), "");
    EXPECT_TRUE(NoFaultLogged());
}

INSTANTIATE_TEST_SUITE_P(
    Table, VideoItemText,
    testing::Values(TextField{"Uid", &TslVideoItemInfo::getUid, &TslVideoItemInfo::setUid,
                              "There is no _szUid.", "There is no szUid."},
                    TextField{"Url", &TslVideoItemInfo::getUrl, &TslVideoItemInfo::setUrl,
                              "There is no _szUrl.", "There is no szUrl."},
                    TextField{"Title", &TslVideoItemInfo::getTitle, &TslVideoItemInfo::setTitle,
                              "There is no _szTitle.", "There is no szTitle."},
                    TextField{"ThumbnailPath", &TslVideoItemInfo::getThumbnailPath,
                              &TslVideoItemInfo::setThumbnailPath, "There is no _szThumbnailPath.",
                              "There is no szThumbnailPath."}),
    [](const auto &info) { return info.param.name; });

TEST(VideoItem, KeepsItsTextsApart) {
    TslVideoItemInfo info;
    info.setUid("uid");
    info.setUrl("url");
    info.setTitle("title");
    info.setThumbnailPath("thumbnail");
    EXPECT_STREQ(Text(info.getUid(), &std::free).get(), "uid");
    EXPECT_STREQ(Text(info.getUrl(), &std::free).get(), "url");
    EXPECT_STREQ(Text(info.getTitle(), &std::free).get(), "title");
    EXPECT_STREQ(Text(info.getThumbnailPath(), &std::free).get(), "thumbnail");
}

TEST(VideoItem, KeepsItsNumbersApartAndSaysNothing) {
    TslVideoItemInfo info;
    EXPECT_EQ(info.getDuration(), 0);
    EXPECT_EQ(info.getFileSize(), 0);
    info.setDuration(1);
    info.setPlayedTime(2);
    info.setWidth(3);
    info.setHeight(4);
    info.setRotation(5);
    info.setFrameRate(6);
    info.setBitRate(-7);
    info.setFileSize(INT64_C(0x7fffffffffffffff));
    EXPECT_EQ(info.getDuration(), 1);
    EXPECT_EQ(info.getPlayedTime(), 2);
    EXPECT_EQ(info.getWidth(), 3);
    EXPECT_EQ(info.getHeight(), 4);
    EXPECT_EQ(info.getRotation(), 5);
    EXPECT_EQ(info.getFrameRate(), 6);
    EXPECT_EQ(info.getBitRate(), -7);
    EXPECT_EQ(info.getFileSize(), INT64_C(0x7fffffffffffffff));
    EXPECT_TRUE(logs::all().empty());
}

TEST(VideoItem, BorrowsItsHandle) {
    TslVideoItemInfo info;
    EXPECT_EQ(info.getMediaItemHandle(), nullptr);
    int item = 0;
    info.setMediaItemHandle(&item);
    info.setMediaItemHandle(nullptr);
    EXPECT_EQ(info.getMediaItemHandle(), &item);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("There is no m_pMediaItemHandle."),
                                  logs::warn("There is no pMediaItemHandle.")}));
}

TEST(VideoItem, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic<TslVideoItemInfo>::value);
}

}  // namespace
