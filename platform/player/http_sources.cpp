#include "player/http_sources.h"

#include <dlfcn.h>
#include <gio/gio.h>

#include <array>
#include <string_view>

namespace host {
namespace {

/// Seconds without an answer after which a source itself gives up. Sources share a session only
/// while they have the usual limit, 15 s.
constexpr guint kTimeoutS = 20;

bool has_property(GstElement *element, const char *name) {
    return g_object_class_find_property(G_OBJECT_GET_CLASS(element), name) != nullptr;
}

/// A request whose answer may still be taken back by its cancellation.
bool is_cancellable_request(GTask *task) {
    const gpointer session = g_task_get_source_object(task);
    return session != nullptr && G_OBJECT_TYPE_NAME(session) == std::string_view("SoupSession") &&
           g_task_get_check_cancellable(task) != FALSE &&
           g_task_get_return_on_cancel(task) == FALSE;
}

}  // namespace

void separate_http_source(GstElement *element) {
    if (has_property(element, "retries") && has_property(element, "timeout")) {
        g_object_set(element, "timeout", kTimeoutS, "retries", 0, nullptr);
    }
}

void introduce_http_source(GstElement *source, const StreamSettings &settings) {
    if (!settings.user_agent.empty() && has_property(source, "user-agent")) {
        g_object_set(source, "user-agent", settings.user_agent.c_str(), nullptr);
    }
    if (!settings.cookie.empty() && has_property(source, "cookies")) {
        const std::array<const char *, 2> cookies = {settings.cookie.c_str(), nullptr};
        g_object_set(source, "cookies", cookies.data(), nullptr);
    }
}

}  // namespace host

/// GLib's, for all libraries of the process. libsoup 3.2 takes a request that is cancelled between
/// its answer and the report of it for one that has failed, frees what the answer's stream reads
/// from, and then closes that stream: a null pointer is read. Asked without regard to the
/// cancellation, the request has its answer, and the stream is closed first.
extern "C" __attribute__((visibility("default"))) gboolean g_task_had_error(GTask *task) {
    static const auto had_error =
        reinterpret_cast<decltype(&g_task_had_error)>(dlsym(RTLD_NEXT, "g_task_had_error"));
    if (!host::is_cancellable_request(task)) {
        return had_error(task);
    }
    g_task_set_check_cancellable(task, FALSE);
    const gboolean result = had_error(task);
    g_task_set_check_cancellable(task, TRUE);
    return result;
}
