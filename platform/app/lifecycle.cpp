#include "app/lifecycle.h"

#include <Efreet.h>
#include <Elementary.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "access/screen_reader.h"
#include "app/application.h"
#include "app/command_line.h"
#include "app/environment.h"
#include "app/exit_status.h"
#include "common/data_folder.h"
#include "common/fd_watch.h"
#include "common/main_loop.h"
#include "common/service_thread.h"
#include "control/control.h"
#include "i18n/locale.h"
#include "i18n/locale_watch.h"
#include "messaging/desktop_application.h"
#include "messaging/session_bus.h"
#include "power/battery.h"
#include "power/screen_watch.h"
#include "shell/shell.h"

namespace host {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;

Application *current_application = nullptr;

// What the role's descriptor counts; zero can't be written to it.
constexpr std::uint64_t kPlay = 1;
constexpr std::uint64_t kHandedOver = 2;

AppControlPtr first_request(const Options &options) {
    auto request = std::make_unique<app_control_s>();
    request->operation = options.operation.value_or(options.target ? APP_CONTROL_OPERATION_VIEW
                                                                   : APP_CONTROL_OPERATION_DEFAULT);
    request->mime = options.mime;
    for (const auto &[key, value] : options.extras) {
        app_control_add_extra_data(request.get(), key.c_str(), value.c_str());
    }
    if (options.target && is_uri(*options.target)) {
        request->uri = decode_local_uri(*options.target);
    } else if (options.target) {
        std::error_code error;
        const std::string path = std::filesystem::absolute(*options.target, error);
        app_control_add_extra_data(request.get(), APP_CONTROL_DATA_PATH,
                                   error ? options.target->c_str() : path.c_str());
    }
    return request;
}

}  // namespace

Application::Application(ApplicationKind &kind) : kind_(kind), role_fd_(eventfd(0, EFD_CLOEXEC)) {
    current_application = this;
}

Application::~Application() {
    current_application = nullptr;
}

Application *Application::current() {
    return current_application;
}

/// The toolkit's handler of ended children spoils errno in whatever thread it interrupts, and
/// nothing here starts a child through the toolkit; GStreamer waits for its own.
static void leave_children_alone() {
    std::signal(SIGCHLD, SIG_DFL);
}

int Application::run(int argc, char **argv, Options options) {
    signals_.install();
    kind_.adapt(options);
    prepare_environment(options);
    const bool new_instance = options.new_instance;
    first_request_ = first_request(options);
    set_options(std::move(options));
    kind_.warm_up();
    // Before anything that may post to the main loop.
    ecore_init();
    leave_children_alone();
    if (!new_instance && session_bus_address()) {
        join_instance();
    }
    // No icon or menu entry of the desktop is looked up here: its cache's daemon stays asleep.
    efreet_cache_disable();
    elm_init(argc > 0 ? 1 : 0, argv);
    // The toolkit has set them all to its own liking.
    leave_children_alone();
    signals_.install();
    restore_locale();
    if (kind_.has_screen()) {
        start_accessibility();
    }

    const int status = wait_for_role() ? run_kind() : kSuccess;
    end();
    elm_shutdown();
    ecore_shutdown();
    return status;
}

void Application::join_instance() {
    instance_.emplace(Instance::Handlers{[](std::shared_ptr<Instance::Delivery> delivery) {
                                             post_to_main_loop([delivery = std::move(delivery)] {
                                                 if (Application *const application = current();
                                                     application != nullptr) {
                                                     application->deliver_from_bus(delivery);
                                                 }
                                             });
                                         },
                                         [] { post_to_main_loop(request_exit); }});
    instance_->join(*first_request_, [fd = role_fd_.get()](Instance::Role role) {
        const std::uint64_t word = role == Instance::Role::play ? kPlay : kHandedOver;
        [[maybe_unused]] const ssize_t written = write(fd, &word, sizeof word);
    });
}

bool Application::wait_for_role() {
    if (!instance_) {
        return !signals_.received();
    }
    std::array<pollfd, 2> fds{{{role_fd_.get(), POLLIN, 0}, {signals_.fd(), POLLIN, 0}}};
    while (poll(fds.data(), fds.size(), -1) < 0 && errno == EINTR) {
    }
    std::uint64_t word = 0;
    if (fds[1].revents != 0 || read(role_fd_.get(), &word, sizeof word) != sizeof word) {
        return false;
    }
    if (word == kHandedOver && options().screenshot) {
        std::fprintf(stderr,
                     "tessel: no screenshot %s: the video plays in the instance that was already "
                     "there; --new-instance plays it by itself\n",
                     options().screenshot->file.c_str());
    }
    return word == kPlay;
}

int Application::run_kind() {
    if (!kind_.start()) {
        return kFailure;
    }
    if (options().control && !start_control()) {
        return kFailure;
    }
    set_own_application({[this](AppControlPtr request) { launch(std::move(request)); },
                         [] { post_to_main_loop(request_exit); }, [this] { raise(); }});
    run_loop();
    set_own_application({});
    if (const auto why = kind_.failure()) {
        std::fprintf(stderr, "tessel: %s\n", why->c_str());
        return kFailure;
    }
    return kSuccess;
}

void Application::run_loop() {
    const FdWatch signal_watch(signals_.fd(), request_exit);
    if (kind_.has_screen() && options().headless && !options().control) {
        popup_closer_.emplace();
    }
    if (options().screenshot) {
        screenshot_.emplace(*options().screenshot, [this] { return kind_.has_picture(); });
    }
    start_battery_watch();
    start_locale_watch();
    if (kind_.has_screen() && options().watch_profile) {
        start_screen_watch();
    }
    // From inside the loop, as ending it before it runs would be forgotten.
    post_to_main_loop([this] { create(); });
    elm_run();
}

void Application::create() {
    if (is_exiting()) {
        return;
    }
    created_ = kind_.create();
    if (!created_) {
        request_exit();
        return;
    }
    post_to_main_loop([this] { first_launch(); });
}

void Application::first_launch() {
    if (is_exiting()) {
        return;
    }
    if (options().service && early_.empty()) {
        expect_request();
        return;
    }
    launched_ = true;
    patience_.reset();
    auto early = std::exchange(early_, {});
    if (!options().service) {
        deliver(*first_request_);
    } else if (early.front()->request() == nullptr) {
        // Started without a video: as from the command line.
        early.front()->accept();
        early.erase(early.begin());
        deliver(*first_request_);
    }
    for (const auto &delivery : early) {
        deliver_from_bus(delivery);
    }
}

/// Who started the process for the bus sends the request right away.
void Application::expect_request() {
    constexpr double kSeconds = 10.0;
    const auto give_up = [](void *data) -> Eina_Bool {
        static_cast<void>(static_cast<Application *>(data)->patience_.release());
        report_playback_failure("nothing to play: the desktop handed nothing over");
        request_exit();
        return ECORE_CALLBACK_CANCEL;
    };
    // Without a bus nothing can come.
    patience_.reset(ecore_timer_add(instance_ ? kSeconds : 0.0, give_up, this));
}

void Application::deliver(const app_control_s &request) {
    // The program may do with its handle what it likes.
    app_control_s own = request;
    kind_.take(&own);
    if (!is_exiting()) {
        set_foreground(true);
    }
}

void Application::deliver_from_bus(const std::shared_ptr<Instance::Delivery> &delivery) {
    // A request that is dropped is refused, and its sender plays by itself.
    if (is_exiting()) {
        return;
    }
    if (!launched_) {
        early_.push_back(delivery);
        if (patience_) {
            first_launch();
        }
        return;
    }
    delivery->accept();
    if (delivery->request() != nullptr) {
        deliver(*delivery->request());
    }
    if (!is_exiting()) {
        raise();
    }
}

void Application::launch(AppControlPtr request) {
    const std::shared_ptr<app_control_s> kept = std::move(request);
    post_to_main_loop([this, kept] {
        if (!is_exiting()) {
            deliver(*kept);
        }
    });
}

void Application::set_foreground(bool foreground) {
    if (launched_) {
        in_front_ = foreground;
        follow_foreground();
    }
}

void Application::set_screen_on(bool on) {
    screen_on_ = on;
    follow_foreground();
}

void Application::follow_foreground() {
    const bool foreground = in_front_ && screen_on_;
    if (ended_ || foreground_ == foreground) {
        return;
    }
    foreground_ = foreground;
    kind_.set_foreground(foreground);
}

void Application::raise() {
    if (Evas_Object *const window = program_window(); window != nullptr) {
        elm_win_raise(window);
        elm_win_activate(window);
    }
    set_foreground(true);
}

void Application::end() {
    ended_ = true;
    if (instance_) {
        instance_->leave();
    }
    early_.clear();
    patience_.reset();
    if (created_) {
        kind_.terminate();
    }
    popup_closer_.reset();
    screenshot_.reset();
    stop_control();
    kind_.stop();
    close_main_loop();
    instance_.reset();
    stop_accessibility();
    stop_battery_watch();
    stop_locale_watch();
    stop_screen_watch();
    close_session_bus();
    stop_service_thread();
}

void leave_foreground() {
    if (Application *const application = Application::current(); application != nullptr) {
        application->set_foreground(false);
    }
}

void enter_foreground() {
    if (Application *const application = Application::current(); application != nullptr) {
        application->set_foreground(true);
    }
}

void screen_went_off() {
    if (Application *const application = Application::current(); application != nullptr) {
        application->set_screen_on(false);
    }
}

void screen_came_on() {
    if (Application *const application = Application::current(); application != nullptr) {
        application->set_screen_on(true);
    }
}

int run_application(ApplicationKind &kind, int argc, char **argv) {
    occupy_standard_descriptors();
    auto parsed = parse_command_line(argc, argv);
    if (const auto *ended = std::get_if<CommandLineEnd>(&parsed)) {
        std::fputs(ended->text.c_str(), ended->status == 0 ? stdout : stderr);
        return ended->status;
    }
    if (data_folder().empty()) {
        std::fputs(
            "tessel: nothing tells where the program is, and so where its data is: is /proc "
            "mounted?\n",
            stderr);
        return kFailure;
    }
    Application application(kind);
    return application.run(argc, argv, std::move(std::get<Options>(parsed)));
}

}  // namespace host
