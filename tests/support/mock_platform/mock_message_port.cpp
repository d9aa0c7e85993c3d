#include "mock_message_port.h"

#include "slot.h"

namespace mock {

MockMessagePort &message_port() {
    static Slot<testing::NiceMock<MockMessagePort>> slot;
    return slot.get();
}

}  // namespace mock

MockMessagePort::MockMessagePort() {
    ON_CALL(*this, message_port_check_remote_port)
        .WillByDefault([](const char *, const char *, bool *exist) {
            *exist = false;
            return MESSAGE_PORT_ERROR_NONE;
        });
    ON_CALL(*this, message_port_send_message)
        .WillByDefault(testing::Return(MESSAGE_PORT_ERROR_NONE));
}

MockMessagePort::~MockMessagePort() = default;

extern "C" {

int message_port_check_remote_port(const char *remote_app_id, const char *remote_port,
                                   bool *exist) {
    return mock::message_port().message_port_check_remote_port(remote_app_id, remote_port, exist);
}

int message_port_send_message(const char *remote_app_id, const char *remote_port, bundle *message) {
    return mock::message_port().message_port_send_message(remote_app_id, remote_port, message);
}

}  // extern "C"
