/**
 * @file message_port.h
 * @brief Messages between running applications, each to a named port of one of them.
 *
 * Thread: main loop, which waits for the session bus and the other application, five seconds at
 * most. A port's name has 1 to 60 bytes, whichever. Operations return MESSAGE_PORT_ERROR_NONE (0)
 * or a negative error of message_port_error_e; MESSAGE_PORT_ERROR_INVALID_PARAMETER for a null
 * argument, a name of another length and an id that isn't one of an application;
 * MESSAGE_PORT_ERROR_IO_ERROR when there is no session bus. On failure, what a result would go to
 * is left alone.
 */
#ifndef MESSAGE_PORT_H
#define MESSAGE_PORT_H

#include <bundle.h>
#include <errno.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    MESSAGE_PORT_ERROR_NONE = 0,
    MESSAGE_PORT_ERROR_INVALID_PARAMETER = -EINVAL,
    MESSAGE_PORT_ERROR_OUT_OF_MEMORY = -ENOMEM,
    MESSAGE_PORT_ERROR_IO_ERROR = -EIO,
    MESSAGE_PORT_ERROR_PORT_NOT_FOUND = -0x01130000 | 0x01,
    MESSAGE_PORT_ERROR_RESOURCE_UNAVAILABLE = -0x01130000 | 0x04
} message_port_error_e;

/**
 * A message has come; called on the main loop. All of it belongs to the platform and is valid
 * during the call only.
 * @param remote_app_id        the sender's application, null when it doesn't say
 * @param remote_port          null: no sender names a port of its own
 * @param trusted_remote_port  false
 */
typedef void (*message_port_message_cb)(int local_port_id, const char *remote_app_id,
                                        const char *remote_port, bool trusted_remote_port,
                                        bundle *message, void *user_data);

/**
 * Opens a port of this application.
 * @return the port's id, above 0; the same one with the new callback when the port is open here
 *         already; RESOURCE_UNAVAILABLE when another process of the application has it
 */
int message_port_register_local_port(const char *local_port, message_port_message_cb callback,
                                     void *user_data);
/**
 * Closes a port: its callback isn't called any more.
 * @return PORT_NOT_FOUND when there is no port of that id
 */
int message_port_unregister_local_port(int local_port_id);

/** @param[out] exist  whether a running application of that id has opened that port */
int message_port_check_remote_port(const char *remote_app_id, const char *remote_port, bool *exist);
/**
 * Sends a message, which stays the caller's, and waits until it is taken.
 * @return PORT_NOT_FOUND when there is no such port, IO_ERROR when its application doesn't answer
 */
int message_port_send_message(const char *remote_app_id, const char *remote_port, bundle *message);

#ifdef __cplusplus
}
#endif
#endif
