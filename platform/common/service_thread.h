#pragma once

#include <gio/gio.h>

#include <functional>

namespace host {

/// The one host thread with a GMainContext of its own; GDBus and the players' bus watches live on
/// it, since GLib sources never fire on the toolkit's loop. It starts on first use and is joined by
/// stop_service_thread().
///
/// Thread: all functions may be called from any thread but, where stated, not from the service
/// thread itself.

/// The context, to be pushed as thread default around the creation of GLib objects.
[[nodiscard]] GMainContext *service_context();

/// Runs `call` on the service thread, without waiting.
void post_to_service_thread(std::function<void()> call);

/// Runs `call` on the service thread and waits for its end; on that thread itself, runs it at once.
void run_on_service_thread(const std::function<void()> &call);

/// Ends the thread. What is posted later is dropped. Not to be called on the service thread.
void stop_service_thread();

}  // namespace host
