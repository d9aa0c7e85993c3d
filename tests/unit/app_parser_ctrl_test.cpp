#include "TslAppParserCtrl.h"

#include <dlog.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>

#include "TslAppControlCtrl.h"
#include "TslAppParserInside.h"
#include "log_lines.h"
#include "mock_platform/mock_app_control.h"

namespace {

class AppParserCtrl : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(app_control_create(&m_request), APP_CONTROL_ERROR_NONE);
        app_control_set_operation(m_request, APP_CONTROL_OPERATION_VIEW);
    }
    void TearDown() override { app_control_destroy(m_request); }

    app_control_h request() { return m_request; }
    void set_uri(const char *uri) { app_control_set_uri(m_request, uri); }
    void set_path(const char *path) {
        app_control_add_extra_data(m_request, APP_CONTROL_DATA_PATH, path);
    }

    static std::string media_of(TslAppParserCtrl &parser) {
        char *text = parser.getMediaUri();
        const std::string copy = text != nullptr ? text : "(none)";
        free(text);
        return copy;
    }
    std::string parsed_media() {
        TslAppParserCtrl parser(m_request);
        return media_of(parser);
    }

private:
    app_control_h m_request = nullptr;
};

}  // namespace

TEST_F(AppParserCtrl, AFileUriGivesItsPath) {
    set_uri("file:///media/clip.mp4");
    EXPECT_EQ(parsed_media(), "/media/clip.mp4");
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(AppParserCtrl, AFileUriWithoutPathGivesAnEmptyText) {
    set_uri("file://");
    EXPECT_EQ(parsed_media(), "");
}

TEST_F(AppParserCtrl, AFileSchemeFurtherAlongCutsTheFirstSevenCharacters) {
    set_uri("wrapped:file:///media/clip.mp4");
    EXPECT_EQ(parsed_media(), ":file:///media/clip.mp4");
}

TEST_F(AppParserCtrl, AFileSchemeInThePathIsCutToo) {
    set_path("file:///media/clip.mp4");
    EXPECT_EQ(parsed_media(), "/media/clip.mp4");
}

TEST_F(AppParserCtrl, ANetworkUriPassesThrough) {
    set_uri("http://example.org/a%20b.mp4");
    EXPECT_EQ(parsed_media(), "http://example.org/a%20b.mp4");
}

TEST_F(AppParserCtrl, APlainPathPassesThrough) {
    set_uri("/media/100% über.mp4");
    EXPECT_EQ(parsed_media(), "/media/100% über.mp4");
}

TEST_F(AppParserCtrl, WithoutUriThePathIsTaken) {
    set_path("/media/clip.mp4");
    EXPECT_EQ(parsed_media(), "/media/clip.mp4");
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no Uri."),
                                  logs::error("* Critical * It is failed to get Uri.")}));
}

TEST_F(AppParserCtrl, AnEmptyUriCountsAsNone) {
    EXPECT_CALL(mock::app_control(), app_control_get_uri).WillOnce([](app_control_h, char **uri) {
        *uri = strdup("");
        return int(APP_CONTROL_ERROR_NONE);
    });
    set_path("/media/clip.mp4");
    EXPECT_EQ(parsed_media(), "/media/clip.mp4");
    EXPECT_TRUE(LoggedError("* Critical * There is no Uri."));
}

TEST_F(AppParserCtrl, AUriGoesBeforeThePath) {
    set_uri("/media/uri.mp4");
    set_path("/media/path.mp4");
    EXPECT_CALL(mock::app_control(), app_control_get_extra_data).Times(0);
    EXPECT_EQ(parsed_media(), "/media/uri.mp4");
}

TEST_F(AppParserCtrl, NeitherUriNorPathGivesNothing) {
    TslAppParserCtrl parser(request());
    EXPECT_TRUE(
        LoggedInOrder({logs::error("* Critical * It is failed to get Uri."),
                       logs::warn("There is no appcontrol/data/path bundle."),
                       logs::error("* Critical * It is failed to get extra data (path).")}));
    logs::clear();
    EXPECT_EQ(parser.getMediaUri(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * The Uri is nullptr.")}));
}

TEST_F(AppParserCtrl, TheMediaIsAFreshCopyEachTime) {
    set_uri("/media/clip.mp4");
    TslAppParserCtrl parser(request());
    char *first = parser.getMediaUri();
    char *second = parser.getMediaUri();
    EXPECT_NE(first, second);
    first[0] = 'X';
    EXPECT_STREQ(second, "/media/clip.mp4");
    free(first);
    free(second);
    EXPECT_EQ(media_of(parser), "/media/clip.mp4");
}

TEST_F(AppParserCtrl, TheRequestIsKeptAsACopyAndFreed) {
    set_uri("/media/clip.mp4");
    const int live = mock::fake_app_control().live();
    {
        TslAppParserCtrl parser(request());
        EXPECT_EQ(mock::fake_app_control().live(), live + 1);
    }
    EXPECT_EQ(mock::fake_app_control().live(), live);
}

TEST_F(AppParserCtrl, ANullRequestLeavesTheParserEmpty) {
    {
        TslAppParserCtrl parser(nullptr);
        EXPECT_TRUE(
            OnlyFaultsLogged({logs::error("* Critical * There is no pAppControllerHandle.")}));
        logs::clear();
        EXPECT_EQ(parser.getMediaUri(), nullptr);
        EXPECT_TRUE(LoggedTimes(1, DLOG_INFO, "AppParserHandle has been deleted already."));
    }
    EXPECT_TRUE(LoggedTimes(2, DLOG_INFO, "AppParserHandle has been deleted already."));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(AppParserCtrl, AnyOperationIsAccepted) {
    set_uri("/media/clip.mp4");
    for (const char *operation : {APP_CONTROL_OPERATION_VIEW, APP_CONTROL_OPERATION_DEFAULT, "x"}) {
        SCOPED_TRACE(operation);
        app_control_set_operation(request(), operation);
        logs::clear();
        TslAppParserCtrl parser(request());
        EXPECT_TRUE(LoggedIn("_parseOperation", DLOG_INFO, ""));
        EXPECT_TRUE(NoFaultLogged());
        EXPECT_EQ(media_of(parser), "/media/clip.mp4");
    }
}

TEST_F(AppParserCtrl, AMissingOperationIsLoggedAndTheMediaStays) {
    set_uri("/media/clip.mp4");
    EXPECT_CALL(mock::app_control(), app_control_get_operation)
        .WillOnce(testing::Return(APP_CONTROL_ERROR_OUT_OF_MEMORY));
    TslAppParserCtrl parser(request());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("There is no operation."),
                                  logs::error("* Critical * It is failed to get operation.")}));
    EXPECT_EQ(media_of(parser), "/media/clip.mp4");
}

TEST_F(AppParserCtrl, TheMediaIsParsedBeforeTheOperation) {
    EXPECT_CALL(mock::app_control(), app_control_get_operation)
        .WillOnce(testing::Return(APP_CONTROL_ERROR_OUT_OF_MEMORY));
    TslAppParserCtrl parser(request());
    EXPECT_TRUE(LoggedInOrder({logs::error("* Critical * It is failed to get extra data (path)."),
                               logs::error("* Critical * It is failed to get operation.")}));
}

TEST_F(AppParserCtrl, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic_v<TslAppParserCtrl>);
}

TEST_F(AppParserCtrl, TheStepsTestTheirRequest) {
    TslAppParserInside inside;
    EXPECT_FALSE(inside._parseAppControl(nullptr));
    EXPECT_FALSE(inside._parseUri());
    EXPECT_FALSE(inside._parseOperation());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no pAppControlHandle."),
                                  logs::error("* Critical * AppControl is nullptr."),
                                  logs::error("* Critical * AppControl is nullptr.")}));
}

TEST_F(AppParserCtrl, TheMediaIsParsedOnce) {
    set_uri("/media/clip.mp4");
    TslAppParserInside inside;
    ASSERT_TRUE(inside._parseAppControl(request()));
    ASSERT_TRUE(inside._parseUri());
    ASSERT_TRUE(inside._parseOperation());
    EXPECT_FALSE(inside._parseUri());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * m_szMediaUri is already existed.")}));
    EXPECT_STREQ(inside.m_szMediaUri, "/media/clip.mp4");
}
