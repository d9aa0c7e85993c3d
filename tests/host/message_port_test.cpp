// Message ports between processes, over a session bus of the test's own.

#include <Ecore.h>
#include <app_manager.h>
#include <gio/gio.h>
#include <gtest/gtest.h>
#include <message_port.h>

#include <memory>
#include <string>
#include <vector>

#include "child_process.h"
#include "common/gobject.h"
#include "common/service_thread.h"
#include "main_loop.h"
#include "messaging/port_name.h"
#include "messaging/session_bus.h"
#include "private_bus.h"

namespace {

constexpr const char *kOwnId = "com.orvane.tessel";

struct BundleFree {
    void operator()(bundle *content) const { bundle_free(content); }
};
using BundlePtr = std::unique_ptr<bundle, BundleFree>;

BundlePtr message(const char *text) {
    BundlePtr content(bundle_create());
    bundle_add_str(content.get(), "text", text);
    return content;
}

class MessagePort : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ecore_init();
        bus_ = std::make_unique<child::PrivateBus>();
        setenv("DBUS_SESSION_BUS_ADDRESS", bus_->address().c_str(), 1);
    }
    static void TearDownTestSuite() {
        host::close_session_bus();
        host::stop_service_thread();
        bus_.reset();
        ecore_shutdown();
    }

    struct Received {
        int port;
        std::string sender;
        bool has_sender_port;
        bool trusted;
        std::string text;
        int entries;
    };

    int open(const char *port) {
        const int id = message_port_register_local_port(
            port,
            [](int id, const char *sender, const char *sender_port, bool trusted, bundle *content,
               void *data) {
                char *text = nullptr;
                bundle_get_str(content, "text", &text);
                static_cast<MessagePort *>(data)->received_.push_back(
                    {id, sender != nullptr ? sender : "(none)", sender_port != nullptr, trusted,
                     text != nullptr ? text : "(none)", bundle_get_count(content)});
            },
            this);
        if (id > 0) {
            open_.push_back(id);
        }
        return id;
    }
    ~MessagePort() override {
        for (const int id : open_) {
            message_port_unregister_local_port(id);
        }
    }
    bool comes_in(std::size_t count) {
        return support::run_main_loop_until([this, count] { return received_.size() >= count; });
    }
    static bool exists(const char *port, const char *app_id = kOwnId) {
        bool exist = false;
        EXPECT_EQ(message_port_check_remote_port(app_id, port, &exist), MESSAGE_PORT_ERROR_NONE);
        return exist;
    }

    static std::unique_ptr<child::PrivateBus> bus_;
    std::vector<int> open_;
    std::vector<Received> received_;
};

std::unique_ptr<child::PrivateBus> MessagePort::bus_;

TEST_F(MessagePort, TakesAMessageOnTheMainLoop) {
    const int id = open("news");
    ASSERT_GT(id, 0);
    EXPECT_EQ(message_port_send_message(kOwnId, "news", message("hello").get()),
              MESSAGE_PORT_ERROR_NONE);
    EXPECT_TRUE(received_.empty());
    ASSERT_TRUE(comes_in(1));
    EXPECT_EQ(received_[0].port, id);
    EXPECT_EQ(received_[0].sender, kOwnId);
    EXPECT_FALSE(received_[0].has_sender_port);
    EXPECT_FALSE(received_[0].trusted);
    EXPECT_EQ(received_[0].text, "hello");
    EXPECT_EQ(received_[0].entries, 1);
}

TEST_F(MessagePort, TakesTextsOfAnyBytesAndArrays) {
    ASSERT_GT(open("news"), 0);
    const BundlePtr content = message("\xff\n\xc3\xa9");
    const char *texts[] = {"a", "", "\xfe"};
    bundle_add_str_array(content.get(), "array", texts, 3);
    EXPECT_EQ(message_port_send_message(kOwnId, "news", content.get()), MESSAGE_PORT_ERROR_NONE);
    ASSERT_TRUE(comes_in(1));
    EXPECT_EQ(received_[0].text, "\xff\n\xc3\xa9");
    EXPECT_EQ(received_[0].entries, 2);
}

TEST_F(MessagePort, KeepsTheOrderOfItsMessages) {
    ASSERT_GT(open("news"), 0);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(
            message_port_send_message(kOwnId, "news", message(std::to_string(i).c_str()).get()),
            MESSAGE_PORT_ERROR_NONE);
    }
    ASSERT_TRUE(comes_in(20));
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(received_[static_cast<std::size_t>(i)].text, std::to_string(i));
    }
}

TEST_F(MessagePort, HasANameOfAnyBytes) {
    for (const char *port : {"a.b", "1", "\xc3\xa9\xff", " ", "_", "A-b_C", "/"}) {
        EXPECT_FALSE(exists(port)) << port;
        ASSERT_GT(open(port), 0) << port;
        EXPECT_TRUE(exists(port)) << port;
    }
    EXPECT_FALSE(exists("a_b"));
    EXPECT_FALSE(exists("a"));
}

TEST_F(MessagePort, IsGoneWhenItIsClosed) {
    const int id = open("news");
    ASSERT_GT(id, 0);
    EXPECT_EQ(message_port_send_message(kOwnId, "news", message("late").get()),
              MESSAGE_PORT_ERROR_NONE);
    EXPECT_EQ(message_port_unregister_local_port(id), MESSAGE_PORT_ERROR_NONE);
    EXPECT_EQ(message_port_unregister_local_port(id), MESSAGE_PORT_ERROR_PORT_NOT_FOUND);
    EXPECT_FALSE(exists("news"));
    EXPECT_EQ(message_port_send_message(kOwnId, "news", message("x").get()),
              MESSAGE_PORT_ERROR_PORT_NOT_FOUND);
    // What was on its way is dropped: a message of another port comes after it.
    ASSERT_GT(open("other"), 0);
    EXPECT_EQ(message_port_send_message(kOwnId, "other", message("x").get()),
              MESSAGE_PORT_ERROR_NONE);
    ASSERT_TRUE(comes_in(1));
    EXPECT_EQ(received_[0].text, "x");
}

TEST_F(MessagePort, ThatIsOpenHereAlreadyKeepsItsId) {
    const int id = open("news");
    bool called = false;
    EXPECT_EQ(message_port_register_local_port(
                  "news",
                  [](int, const char *, const char *, bool, bundle *, void *data) {
                      *static_cast<bool *>(data) = true;
                  },
                  &called),
              id);
    message_port_send_message(kOwnId, "news", message("x").get());
    EXPECT_TRUE(support::run_main_loop_until([&called] { return called; }));
    EXPECT_TRUE(received_.empty());
}

TEST_F(MessagePort, OfAnotherProcessTakesMessagesAndGoesWithItsProcess) {
    {
        child::Process other({child::program("message-port-probe"), "news"}, {});
        ASSERT_TRUE(other.prints("open")) << other.errors();
        EXPECT_TRUE(exists("news"));
        EXPECT_EQ(open("news"), MESSAGE_PORT_ERROR_RESOURCE_UNAVAILABLE);
        EXPECT_EQ(message_port_send_message(kOwnId, "news", message("over there").get()),
                  MESSAGE_PORT_ERROR_NONE);
        EXPECT_TRUE(other.prints("got over there from com.orvane.tessel")) << other.output();
        other.send(SIGKILL);
        other.wait();
    }
    EXPECT_TRUE(child::comes([] { return !exists("news"); }));
    EXPECT_EQ(message_port_send_message(kOwnId, "news", message("x").get()),
              MESSAGE_PORT_ERROR_PORT_NOT_FOUND);
}

TEST_F(MessagePort, OfAStoppedProcessIsAnErrorAfterAWhile) {
    child::Process other({child::program("message-port-probe"), "news"}, {});
    ASSERT_TRUE(other.prints("open")) << other.errors();
    other.send(SIGSTOP);
    EXPECT_EQ(message_port_send_message(kOwnId, "news", message("x").get()),
              MESSAGE_PORT_ERROR_IO_ERROR);
    other.send(SIGCONT);
}

TEST_F(MessagePort, RefusesWhatIsNoPort) {
    const std::string longest(60, 'p');
    const std::string too_long(61, 'p');
    bool exist = true;
    const BundlePtr content = message("x");
    for (const char *port : {static_cast<const char *>(nullptr), "", too_long.c_str()}) {
        EXPECT_EQ(open(port), MESSAGE_PORT_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(message_port_check_remote_port(kOwnId, port, &exist),
                  MESSAGE_PORT_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(message_port_send_message(kOwnId, port, content.get()),
                  MESSAGE_PORT_ERROR_INVALID_PARAMETER);
    }
    for (const char *app_id : {static_cast<const char *>(nullptr), "", "name", ":1.1", "a b.c"}) {
        EXPECT_EQ(message_port_check_remote_port(app_id, "news", &exist),
                  MESSAGE_PORT_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(message_port_send_message(app_id, "news", content.get()),
                  MESSAGE_PORT_ERROR_INVALID_PARAMETER);
    }
    EXPECT_EQ(message_port_check_remote_port(kOwnId, "news", nullptr),
              MESSAGE_PORT_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(message_port_send_message(kOwnId, "news", nullptr),
              MESSAGE_PORT_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(message_port_register_local_port("news", nullptr, nullptr),
              MESSAGE_PORT_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(message_port_unregister_local_port(0), MESSAGE_PORT_ERROR_PORT_NOT_FOUND);
    EXPECT_TRUE(exist);
    EXPECT_GT(open(longest.c_str()), 0);
    EXPECT_TRUE(exists(longest.c_str()));
}

TEST_F(MessagePort, AnswersNonsenseOnTheBusWithAnError) {
    ASSERT_GT(open("news"), 0);
    const auto peer = bus_->connect();
    const std::string name = *host::port_bus_name(kOwnId, "news");
    const char *path = "/com/orvane/tessel/MessagePort";
    const char *interface = "com.orvane.tessel.MessagePort";
    EXPECT_FALSE(child::call(peer.get(), name, path, interface, "Send", nullptr));
    EXPECT_FALSE(child::call(peer.get(), name, path, interface, "Send",
                             g_variant_new("(@ays@a(aybaay))", g_variant_new_bytestring("closed"),
                                           "x", g_variant_new("a(aybaay)", nullptr))));
    // Without an application's id, and an entry that is neither text nor array.
    GVariantBuilder entries;
    g_variant_builder_init(&entries, G_VARIANT_TYPE("a(aybaay)"));
    const char *none[] = {nullptr};
    g_variant_builder_add(&entries, "(@ayb@aay)", g_variant_new_bytestring("k"), FALSE,
                          g_variant_new_bytestring_array(none, 0));
    EXPECT_TRUE(child::call(
        peer.get(), name, path, interface, "Send",
        g_variant_new("(@aysa(aybaay))", g_variant_new_bytestring("news"), "", &entries)));
    ASSERT_TRUE(comes_in(1));
    EXPECT_EQ(received_[0].sender, "(none)");
    EXPECT_EQ(received_[0].entries, 0);
}

// Last, as it takes the bus away.
TEST_F(MessagePort, WithoutABusIsAnErrorAndOpensAgainWithANewOne) {
    const int id = open("news");
    ASSERT_GT(id, 0);
    bus_->kill();
    bool exist = true;
    EXPECT_TRUE(child::comes([&exist] {
        return message_port_check_remote_port(kOwnId, "news", &exist) ==
               MESSAGE_PORT_ERROR_IO_ERROR;
    }));
    EXPECT_TRUE(exist);
    EXPECT_EQ(message_port_send_message(kOwnId, "news", message("x").get()),
              MESSAGE_PORT_ERROR_IO_ERROR);
    EXPECT_EQ(open("other"), MESSAGE_PORT_ERROR_IO_ERROR);
    bus_ = std::make_unique<child::PrivateBus>();
    setenv("DBUS_SESSION_BUS_ADDRESS", bus_->address().c_str(), 1);
    EXPECT_EQ(open("news"), id);
    EXPECT_EQ(message_port_send_message(kOwnId, "news", message("again").get()),
              MESSAGE_PORT_ERROR_NONE);
    ASSERT_TRUE(comes_in(1));
    EXPECT_EQ(received_[0].text, "again");
}

}  // namespace
