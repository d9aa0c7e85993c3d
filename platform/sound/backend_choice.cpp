#include "sound/backend_choice.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "sound/output.h"

namespace host::sound {
namespace {

/// How soon a server is found that starts after the player. To ask is to connect to a socket.
constexpr std::chrono::milliseconds kAskInterval(500);

using Devices = std::vector<Device>;

bool has(const Devices &devices, const Device &wanted) {
    return std::any_of(devices.begin(), devices.end(), [&wanted](const Device &device) {
        return device.type == wanted.type && device.name == wanted.name;
    });
}

void report_those_without(Events &events, const Devices &devices, const Devices &others,
                          bool connected) {
    for (const Device &device : devices) {
        if (!has(others, device)) {
            events.device_changed(device, connected);
        }
    }
}

/// All that is another for who has asked the backend that was there before.
void report_difference(Events &events, const Backend &before, const Backend &now) {
    if (before.stream_gain() != now.stream_gain()) {
        events.stream_gain_changed(now.stream_gain());
    }
    const Devices gone = before.devices().value_or(Devices());
    const Devices there = now.devices().value_or(Devices());
    report_those_without(events, gone, there, false);
    report_those_without(events, there, gone, true);
    const auto level = now.volume(SOUND_TYPE_MEDIA);
    if (level && level != before.volume(SOUND_TYPE_MEDIA)) {
        events.volume_changed(SOUND_TYPE_MEDIA, static_cast<unsigned>(*level));
    }
    events.output_returned();
}

}  // namespace

BackendChoice::BackendChoice(Events &events) : events_(events) {
    choose();
}

BackendChoice::~BackendChoice() {
    stop_waiting();
}

std::shared_ptr<Backend> BackendChoice::current() const {
    const std::lock_guard lock(mutex_);
    return current_;
}

void BackendChoice::choose() {
    if (sound_server_answers()) {
        use(create_pulse_backend);
        return;
    }
    use(create_builtin_backend);
    waiting_ = true;
    // Read here, since others may change the environment later.
    waiter_ = std::thread([this, servers = sound_servers()] { wait_for_server(servers); });
}

void BackendChoice::use(BackendFactory factory) {
    stop_waiting();
    // The one that goes first has told all before the next one begins.
    {
        const std::lock_guard lock(mutex_);
        current_.reset();
    }
    std::shared_ptr<Backend> next = factory(events_);
    const std::lock_guard lock(mutex_);
    current_ = std::move(next);
}

void BackendChoice::wait_for_server(const std::vector<std::string> &servers) {
    std::unique_lock lock(mutex_);
    while (!wake_.wait_for(lock, kAskInterval, [this] { return !waiting_; })) {
        lock.unlock();
        const bool taken = sound_server_answers(servers) && take_server();
        lock.lock();
        if (taken) {
            return;
        }
    }
}

void BackendChoice::stop_waiting() {
    {
        const std::lock_guard lock(mutex_);
        waiting_ = false;
    }
    wake_.notify_all();
    if (waiter_.joinable()) {
        waiter_.join();
    }
}

bool BackendChoice::take_server() {
    std::shared_ptr<Backend> server = create_pulse_backend(events_);
    if (!server->devices()) {
        return false;
    }
    std::shared_ptr<Backend> before;
    {
        const std::lock_guard lock(mutex_);
        before = std::exchange(current_, server);
    }
    report_difference(events_, *before, *server);
    return true;
}

}  // namespace host::sound
