#include "player/playback_fault.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include "common/gobject.h"
#include "player/gst_ptr.h"

namespace host {
namespace {

constexpr guint kHttpNotFound = 404;
constexpr guint kHttpGone = 410;
constexpr guint kHttpFirstRedirection = 300;
constexpr guint kHttpFirstClientError = 400;

guint http_status(GstMessage *message) {
    const GstStructure *details = nullptr;
    gst_message_parse_error_details(message, &details);
    guint status = 0;
    if (details != nullptr) {
        gst_structure_get_uint(details, "http-status-code", &status);
    }
    return status;
}

int code_of_resource_error(GstMessage *message, int code, bool remote) {
    if (code == GST_RESOURCE_ERROR_NOT_FOUND) {
        // A name that can't be resolved is reported as not found, too.
        const guint status = remote ? http_status(message) : kHttpNotFound;
        return status == kHttpNotFound || status == kHttpGone ? PLAYER_ERROR_NO_SUCH_FILE
                                                              : PLAYER_ERROR_INVALID_OPERATION;
    }
    return code == GST_RESOURCE_ERROR_NO_SPACE_LEFT ? PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE
                                                    : PLAYER_ERROR_INVALID_OPERATION;
}

bool redirects(GstMessage *message) {
    const guint status = http_status(message);
    return status >= kHttpFirstRedirection && status < kHttpFirstClientError;
}

int code_of_stream_error(int code, bool remote) {
    // The generic error of a source whose connection went away in the middle.
    if (remote && code == GST_STREAM_ERROR_FAILED) {
        return PLAYER_ERROR_INVALID_OPERATION;
    }
    return PLAYER_ERROR_NOT_SUPPORTED_FILE;
}

/// Adaptive streams tell the place in GStreamer's sources, too, where their pieces fail.
std::string without_place(const std::string &message) {
    constexpr char kPlace[] = ".c(";
    const auto place = message.find(kPlace);
    return message.substr(0, place == std::string::npos ? place : message.rfind(": ", place));
}

int code_of_core_error(int code) {
    switch (code) {
    case GST_CORE_ERROR_MISSING_PLUGIN:
    case GST_CORE_ERROR_NEGOTIATION:
    case GST_CORE_ERROR_CAPS:
        return PLAYER_ERROR_NOT_SUPPORTED_FILE;
    default:
        return PLAYER_ERROR_INVALID_OPERATION;
    }
}

}  // namespace

PlaybackFault fault_of_errno(int error) {
    const std::string why = std::strerror(error);
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
        return {PLAYER_ERROR_NO_SUCH_FILE, why};
    case ENOMEM:
        return {PLAYER_ERROR_OUT_OF_MEMORY, why};
    default:
        return {PLAYER_ERROR_INVALID_OPERATION, why};
    }
}

PlaybackFault fault_of_message(GstMessage *message, bool remote) {
    GErrorPtr error;
    gchar *debug = nullptr;
    gst_message_parse_error(message, out(error), &debug);
    const GText detail(debug);
    if (!error) {
        return {PLAYER_ERROR_INVALID_OPERATION, "unknown fault"};
    }
    int code = PLAYER_ERROR_INVALID_OPERATION;
    if (error->domain == GST_RESOURCE_ERROR) {
        code = code_of_resource_error(message, error->code, remote);
    } else if (error->domain == GST_STREAM_ERROR) {
        code = code_of_stream_error(error->code, remote);
    } else if (error->domain == GST_CORE_ERROR) {
        code = code_of_core_error(error->code);
    }
    // A source that a server refuses or leaves says nothing of it in its text.
    const bool lost =
        remote && g_error_matches(error.get(), GST_STREAM_ERROR, GST_STREAM_ERROR_FAILED) != FALSE;
    const std::string whole = error->message;
    std::string why = without_place(whole);
    std::string more = detail ? detail.get() : "";
    if (why != whole) {
        more.insert(0, whole + " ");
    }
    if (lost) {
        why = "the server can't be reached, or has ended the connection";
    } else if (remote && redirects(message)) {
        why = "the server's redirections lead nowhere";
    }
    return {code, why, more};
}

bool ends_playback(int code) {
    switch (code) {
    case PLAYER_ERROR_OUT_OF_MEMORY:
    case PLAYER_ERROR_INVALID_PARAMETER:
    case PLAYER_ERROR_NO_SUCH_FILE:
    case PLAYER_ERROR_INVALID_OPERATION:
    case PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE:
    case PLAYER_ERROR_NOT_SUPPORTED_FILE:
    case PLAYER_ERROR_INVALID_URI:
        return true;
    default:
        return false;
    }
}

}  // namespace host
