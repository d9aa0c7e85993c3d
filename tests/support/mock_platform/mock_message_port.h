#pragma once

#include <gmock/gmock.h>
#include <message_port.h>

/// No remote port exists and every message is taken, unless a test says otherwise.
class MockMessagePort {
public:
    MockMessagePort();
    virtual ~MockMessagePort();

    MOCK_METHOD(int, message_port_check_remote_port, (const char *, const char *, bool *));
    MOCK_METHOD(int, message_port_send_message, (const char *, const char *, bundle *));
};

namespace mock {
MockMessagePort &message_port();
}
