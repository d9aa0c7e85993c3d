// What launch requests and bundles promise, errors included.

#include <app_control.h>
#include <bundle.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "messaging/app_control_host.h"
#include "messaging/desktop_application.h"

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};
using Text = std::unique_ptr<char, Free>;

struct BundleFree {
    void operator()(bundle *b) const { bundle_free(b); }
};
using BundlePtr = std::unique_ptr<bundle, BundleFree>;

TEST(Bundle, GivesBackWhatWasPutIn) {
    const BundlePtr b(bundle_create());
    EXPECT_EQ(bundle_add_str(b.get(), "colour", "red"), BUNDLE_ERROR_NONE);
    char *text = nullptr;
    EXPECT_EQ(bundle_get_str(b.get(), "colour", &text), BUNDLE_ERROR_NONE);
    EXPECT_STREQ(text, "red");
    EXPECT_EQ(bundle_get_count(b.get()), 1);
}

TEST(Bundle, KeepsTheFirstValueOfAKey) {
    const BundlePtr b(bundle_create());
    const char *array[] = {"x"};
    bundle_add_str(b.get(), "colour", "red");
    EXPECT_EQ(bundle_add_str(b.get(), "colour", "blue"), BUNDLE_ERROR_KEY_EXISTS);
    EXPECT_EQ(bundle_add_str_array(b.get(), "colour", array, 1), BUNDLE_ERROR_KEY_EXISTS);
    char *text = nullptr;
    bundle_get_str(b.get(), "colour", &text);
    EXPECT_STREQ(text, "red");
}

TEST(Bundle, LendsArraysThatStayWhereTheyAre) {
    const BundlePtr b(bundle_create());
    const char *array[] = {"one", "two"};
    EXPECT_EQ(bundle_add_str_array(b.get(), "list", array, 2), BUNDLE_ERROR_NONE);
    int length = 0;
    const char **lent = bundle_get_str_array(b.get(), "list", &length);
    for (int i = 0; i < 100; ++i) {
        bundle_add_str(b.get(), std::to_string(i).c_str(), "more");
    }
    ASSERT_EQ(length, 2);
    EXPECT_STREQ(lent[0], "one");
    EXPECT_STREQ(lent[1], "two");
}

TEST(Bundle, TellsTextsFromArrays) {
    const BundlePtr b(bundle_create());
    const char *array[] = {"one"};
    bundle_add_str_array(b.get(), "list", array, 1);
    bundle_add_str(b.get(), "text", "x");
    char *text = nullptr;
    EXPECT_EQ(bundle_get_str(b.get(), "list", &text), BUNDLE_ERROR_KEY_NOT_AVAILABLE);
    int length = 7;
    EXPECT_EQ(bundle_get_str_array(b.get(), "text", &length), nullptr);
    EXPECT_EQ(errno, ENOKEY);
    EXPECT_EQ(length, 0);
}

TEST(Bundle, ForgetsADeletedKey) {
    const BundlePtr b(bundle_create());
    bundle_add_str(b.get(), "colour", "red");
    EXPECT_EQ(bundle_del(b.get(), "colour"), BUNDLE_ERROR_NONE);
    EXPECT_EQ(bundle_del(b.get(), "colour"), BUNDLE_ERROR_KEY_NOT_AVAILABLE);
    EXPECT_EQ(bundle_get_count(b.get()), 0);
}

TEST(Bundle, RefusesWhatIsNotThere) {
    const BundlePtr b(bundle_create());
    const char *holes[] = {"one", nullptr};
    char *text = nullptr;
    EXPECT_EQ(bundle_free(nullptr), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_add_str(nullptr, "k", "v"), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_add_str(b.get(), nullptr, "v"), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_add_str(b.get(), "", "v"), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_add_str(b.get(), "k", nullptr), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_add_str_array(b.get(), "k", holes, 2), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_add_str_array(b.get(), "k", holes, 0), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_get_str(b.get(), "k", nullptr), BUNDLE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bundle_get_str(b.get(), "k", &text), BUNDLE_ERROR_KEY_NOT_AVAILABLE);
    EXPECT_EQ(bundle_get_count(nullptr), 0);
}

class AppControl : public testing::Test {
protected:
    AppControl() { app_control_create(&request_); }
    ~AppControl() override { app_control_destroy(request_); }

    std::string extra(const char *key) const {
        char *value = nullptr;
        EXPECT_EQ(app_control_get_extra_data(request_, key, &value), APP_CONTROL_ERROR_NONE);
        const Text owner(value);
        return value != nullptr ? value : "(null)";
    }

    app_control_h request_ = nullptr;
};

using Setter = int (*)(app_control_h, const char *);
using Getter = int (*)(app_control_h, char **);
struct Accessors {
    const char *name;
    Setter set;
    Getter get;
};
constexpr Accessors kTexts[] = {{"operation", app_control_set_operation, app_control_get_operation},
                                {"uri", app_control_set_uri, app_control_get_uri},
                                {"mime", app_control_set_mime, app_control_get_mime},
                                {"category", app_control_set_category, app_control_get_category},
                                {"app id", app_control_set_app_id, app_control_get_app_id}};

TEST_F(AppControl, GivesSuccessAndNoTextForWhatIsNotSet) {
    for (const Accessors &text : kTexts) {
        char placeholder = 'x';
        char *value = &placeholder;
        EXPECT_EQ(text.get(request_, &value), APP_CONTROL_ERROR_NONE) << text.name;
        EXPECT_EQ(value, nullptr) << text.name;
    }
}

TEST_F(AppControl, KeepsItsOwnCopyOfATextUntilNullTakesItAway) {
    for (const Accessors &text : kTexts) {
        std::string given = "first";
        EXPECT_EQ(text.set(request_, given.c_str()), APP_CONTROL_ERROR_NONE) << text.name;
        given = "other";
        char *value = nullptr;
        EXPECT_EQ(text.get(request_, &value), APP_CONTROL_ERROR_NONE) << text.name;
        EXPECT_STREQ(Text(value).get(), "first") << text.name;
        EXPECT_EQ(text.set(request_, nullptr), APP_CONTROL_ERROR_NONE) << text.name;
        EXPECT_EQ(text.get(request_, &value), APP_CONTROL_ERROR_NONE) << text.name;
        EXPECT_EQ(value, nullptr) << text.name;
    }
}

TEST_F(AppControl, RefusesANullHandleOrPlace) {
    char *value = nullptr;
    for (const Accessors &text : kTexts) {
        EXPECT_EQ(text.set(nullptr, "x"), APP_CONTROL_ERROR_INVALID_PARAMETER) << text.name;
        EXPECT_EQ(text.get(nullptr, &value), APP_CONTROL_ERROR_INVALID_PARAMETER) << text.name;
        EXPECT_EQ(text.get(request_, nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER) << text.name;
    }
    EXPECT_EQ(app_control_create(nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_destroy(nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    app_control_h clone = nullptr;
    EXPECT_EQ(app_control_clone(&clone, nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_clone(nullptr, request_), APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, HasNoCallerWhenMadeHere) {
    char *caller = nullptr;
    EXPECT_EQ(app_control_get_caller(request_, &caller), APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, StartsInSingleModeAndKnowsTwo) {
    app_control_launch_mode_e mode = APP_CONTROL_LAUNCH_MODE_GROUP;
    EXPECT_EQ(app_control_get_launch_mode(request_, &mode), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(mode, APP_CONTROL_LAUNCH_MODE_SINGLE);
    EXPECT_EQ(app_control_set_launch_mode(request_, APP_CONTROL_LAUNCH_MODE_GROUP),
              APP_CONTROL_ERROR_NONE);
    app_control_get_launch_mode(request_, &mode);
    EXPECT_EQ(mode, APP_CONTROL_LAUNCH_MODE_GROUP);
    EXPECT_EQ(app_control_set_launch_mode(request_, static_cast<app_control_launch_mode_e>(2)),
              APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, ReplacesExtraDataUnderTheSameKey) {
    const char *array[] = {"one", "two"};
    app_control_add_extra_data_array(request_, "key", array, 2);
    EXPECT_EQ(app_control_add_extra_data(request_, "key", "text"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(extra("key"), "text");
}

TEST_F(AppControl, TellsWhyThereIsNoExtraData) {
    const char *array[] = {"one"};
    char **texts = nullptr;
    int length = 0;
    char *value = nullptr;
    EXPECT_EQ(app_control_get_extra_data(request_, "k", &value), APP_CONTROL_ERROR_KEY_NOT_FOUND);
    EXPECT_EQ(app_control_get_extra_data_array(request_, "k", &texts, &length),
              APP_CONTROL_ERROR_KEY_NOT_FOUND);
    app_control_add_extra_data_array(request_, "array", array, 1);
    app_control_add_extra_data(request_, "text", "x");
    EXPECT_EQ(app_control_get_extra_data(request_, "array", &value),
              APP_CONTROL_ERROR_INVALID_DATA_TYPE);
    EXPECT_EQ(app_control_get_extra_data_array(request_, "text", &texts, &length),
              APP_CONTROL_ERROR_INVALID_DATA_TYPE);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(texts, nullptr);
}

TEST_F(AppControl, RejectsReservedKeysAndEmptyOnes) {
    const char *array[] = {"one"};
    EXPECT_EQ(app_control_add_extra_data(request_, "__key", "v"), APP_CONTROL_ERROR_KEY_REJECTED);
    EXPECT_EQ(app_control_add_extra_data_array(request_, "__key", array, 1),
              APP_CONTROL_ERROR_KEY_REJECTED);
    EXPECT_EQ(app_control_remove_extra_data(request_, "__key"), APP_CONTROL_ERROR_KEY_REJECTED);
    EXPECT_EQ(app_control_add_extra_data(request_, "", "v"), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_add_extra_data(request_, "k", nullptr),
              APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_add_extra_data_array(request_, "k", array, 0),
              APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, RemovesExtraDataOnce) {
    app_control_add_extra_data(request_, "key", "v");
    EXPECT_EQ(app_control_remove_extra_data(request_, "key"), APP_CONTROL_ERROR_NONE);
    EXPECT_EQ(app_control_remove_extra_data(request_, "key"), APP_CONTROL_ERROR_KEY_NOT_FOUND);
}

TEST_F(AppControl, GivesOutArraysToKeep) {
    const char *array[] = {"one", ""};
    app_control_add_extra_data_array(request_, "key", array, 2);
    char **texts = nullptr;
    int length = 0;
    ASSERT_EQ(app_control_get_extra_data_array(request_, "key", &texts, &length),
              APP_CONTROL_ERROR_NONE);
    app_control_remove_extra_data(request_, "key");
    const std::unique_ptr<char *, Free> owner(texts);
    ASSERT_EQ(length, 2);
    EXPECT_STREQ(Text(texts[0]).get(), "one");
    EXPECT_STREQ(Text(texts[1]).get(), "");
}

TEST_F(AppControl, CloneIsIndependent) {
    app_control_set_uri(request_, "file:///a");
    app_control_add_extra_data(request_, "key", "old");
    app_control_h clone = nullptr;
    ASSERT_EQ(app_control_clone(&clone, request_), APP_CONTROL_ERROR_NONE);
    app_control_set_uri(request_, "file:///b");
    app_control_add_extra_data(request_, "key", "new");
    char *value = nullptr;
    app_control_get_uri(clone, &value);
    EXPECT_STREQ(Text(value).get(), "file:///a");
    app_control_get_extra_data(clone, "key", &value);
    EXPECT_STREQ(Text(value).get(), "old");
    EXPECT_EQ(app_control_destroy(clone), APP_CONTROL_ERROR_NONE);
}

TEST_F(AppControl, SendingNeedsAnApplication) {
    EXPECT_EQ(app_control_send_launch_request(nullptr, nullptr, nullptr),
              APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_send_launch_request(request_, nullptr, nullptr),
              APP_CONTROL_ERROR_APP_NOT_FOUND);
    EXPECT_EQ(app_control_send_terminate_request(nullptr), APP_CONTROL_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_control_send_terminate_request(request_), APP_CONTROL_ERROR_INVALID_PARAMETER);
}

TEST_F(AppControl, OnlyWhatWasLaunchedFromHereMayBeEnded) {
    app_control_set_app_id(request_, "org.example.Editor");
    EXPECT_EQ(app_control_send_terminate_request(request_), APP_CONTROL_ERROR_PERMISSION_DENIED);
}

// Over the bus and back, as the hand-over does it.
host::AppControlPtr travelled(const app_control_s &request) {
    const host::ApplicationCall call = host::call_for(request);
    const host::GVariantPtr parameters(g_variant_ref_sink(call.parameters));
    return host::request_of(call.method, parameters.get());
}

TEST_F(AppControl, TravelsCompleteWithBytesThatAreNoText) {
    const char *array[] = {"one", "\xff\xfe"};
    app_control_set_operation(request_, APP_CONTROL_OPERATION_VIEW);
    app_control_set_uri(request_, "file:///tmp/a b%20\xe9.mp4");
    app_control_set_mime(request_, "");
    app_control_set_launch_mode(request_, APP_CONTROL_LAUNCH_MODE_GROUP);
    app_control_add_extra_data(request_, APP_CONTROL_DATA_PATH, "/tmp/\xc3\x28");
    app_control_add_extra_data_array(request_, "list", array, 2);
    const host::AppControlPtr arrived = travelled(*request_);
    ASSERT_NE(arrived, nullptr);
    EXPECT_EQ(arrived->operation, request_->operation);
    EXPECT_EQ(arrived->uri, request_->uri);
    EXPECT_EQ(arrived->mime, "");
    EXPECT_FALSE(arrived->category);
    EXPECT_EQ(arrived->launch_mode, APP_CONTROL_LAUNCH_MODE_GROUP);
    EXPECT_EQ(host::extra_text(*arrived, APP_CONTROL_DATA_PATH), "/tmp/\xc3\x28");
    int length = 0;
    const char **list = bundle_get_str_array(&arrived->extras, "list", &length);
    ASSERT_EQ(length, 2);
    EXPECT_STREQ(list[1], "\xff\xfe");
}

TEST_F(AppControl, OpensAProperUriForThoseWhoKnowNoMore) {
    app_control_add_extra_data(request_, APP_CONTROL_DATA_PATH, "/tmp/a b%.mp4");
    const host::ApplicationCall call = host::call_for(*request_);
    const host::GVariantPtr parameters(g_variant_ref_sink(call.parameters));
    EXPECT_STREQ(call.method, "Open");
    const char *uri = nullptr;
    const host::GVariantPtr uris(g_variant_get_child_value(parameters.get(), 0));
    g_variant_get_child(uris.get(), 0, "&s", &uri);
    EXPECT_STREQ(uri, "file:///tmp/a%20b%25.mp4");
}

TEST(LocalUri, IsDecodedAndOthersAreNot) {
    EXPECT_EQ(host::decode_local_uri("file:///a%20b%25c.mp4"), "file:///a b%c.mp4");
    EXPECT_EQ(host::decode_local_uri("FILE:///%C3%A9"), "file:///\xc3\xa9");
    EXPECT_EQ(host::decode_local_uri("file://localhost/a%20b"), "file:///a b");
    EXPECT_EQ(host::decode_local_uri("file:///a%2"), "file:///a%2");
    EXPECT_EQ(host::decode_local_uri("file:///a%zz"), "file:///a%zz");
    EXPECT_EQ(host::decode_local_uri("file:///a%00b"), "file:///a%00b");
    EXPECT_EQ(host::decode_local_uri("file://elsewhere/a%20b"), "file://elsewhere/a%20b");
    EXPECT_EQ(host::decode_local_uri("http://h/a%20b"), "http://h/a%20b");
    EXPECT_EQ(host::decode_local_uri("file://"), "file://");
}

TEST(LocalUri, IsToldFromAPathByItsScheme) {
    EXPECT_TRUE(host::is_uri("file:///a"));
    EXPECT_TRUE(host::is_uri("rtsp://h/s"));
    EXPECT_TRUE(host::is_uri("x-a+b.c://h"));
    EXPECT_FALSE(host::is_uri("a.mp4"));
    EXPECT_FALSE(host::is_uri("part 1: the end.mp4"));
    EXPECT_FALSE(host::is_uri("a:b"));
    EXPECT_FALSE(host::is_uri("1://h"));
    EXPECT_FALSE(host::is_uri("/tmp/file://x"));
    EXPECT_FALSE(host::is_uri("://"));
}

}  // namespace
