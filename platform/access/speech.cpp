#include "access/speech.h"

#include <dlog.h>
#include <libspeechd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "common/gobject.h"
#include "common/main_loop.h"

namespace host {
namespace {

/// A server that hangs isn't waited for at the end.
constexpr auto kPatience = std::chrono::seconds(1);
constexpr char kClient[] = "tessel";

struct Text {
    std::string text;
    std::string language;
    bool discardable = false;
    std::function<void(Spoken)> told;
};

void tell(const std::function<void(Spoken)> &told, Spoken how) {
    if (told) {
        post_to_main_loop([told, how] { told(how); });
    }
}

/// Texts that the service has, by its numbers. The service's word on a text may come before the
/// number is known here.
class Outcomes {
public:
    void expect(int id, std::function<void(Spoken)> told) {
        const std::lock_guard lock(mutex_);
        const auto early = early_.find(id);
        if (early == early_.end()) {
            waiting_[id] = std::move(told);
            return;
        }
        tell(told, early->second);
        early_.erase(early);
    }
    void came(int id, Spoken how) {
        const std::lock_guard lock(mutex_);
        const auto found = waiting_.find(id);
        if (found == waiting_.end()) {
            early_[id] = how;
            return;
        }
        tell(found->second, how);
        waiting_.erase(found);
    }
    /// The service has gone, and its numbers with it.
    void give_up() {
        const std::lock_guard lock(mutex_);
        for (const auto &[id, told] : waiting_) {
            tell(told, Spoken::cancelled);
        }
        waiting_.clear();
        early_.clear();
    }

private:
    std::mutex mutex_;
    std::map<int, std::function<void(Spoken)>> waiting_;
    std::map<int, Spoken> early_;
};

/// The service's callbacks carry nothing of ours.
Outcomes &outcomes() {
    static Outcomes instance;
    return instance;
}

void ended(size_t id, size_t /*client*/, SPDNotificationType type) {
    outcomes().came(static_cast<int>(id),
                    type == SPD_EVENT_END ? Spoken::whole : Spoken::cancelled);
}

/// A connection to a service that runs. Lives on the speaker's thread.
class Service {
public:
    /// @return null when there is none
    static std::unique_ptr<Service> connect() {
        const std::unique_ptr<SPDConnectionAddress, AddressFree> address(
            spd_get_default_address(nullptr));
        if (!address) {
            return nullptr;
        }
        char *error = nullptr;
        Connection connection(spd_open2(kClient, "main", nullptr, SPD_MODE_THREADED, address.get(),
                                        /*autospawn=*/0, &error));
        const GText error_text(error);
        if (!connection) {
            return nullptr;
        }
        connection->callback_end = ended;
        connection->callback_cancel = ended;
        if (spd_set_notification_on(connection.get(), SPD_END) != 0 ||
            spd_set_notification_on(connection.get(), SPD_CANCEL) != 0) {
            return nullptr;
        }
        return std::unique_ptr<Service>(new Service(std::move(connection)));
    }
    ~Service() { outcomes().give_up(); }
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    /// @return false when the service has gone
    [[nodiscard]] bool say(const Text &text) {
        if (text.language != language_) {
            // The service's names have a hyphen. One that it doesn't speak is no fault.
            std::string name = text.language;
            std::replace(name.begin(), name.end(), '_', '-');
            static_cast<void>(spd_set_language(connection_.get(), name.c_str()));
            language_ = text.language;
        }
        // A text gives way to the next one, a message doesn't.
        const int id = spd_say(connection_.get(), text.discardable ? SPD_TEXT : SPD_MESSAGE,
                               text.text.c_str());
        if (id < 0) {
            return false;
        }
        outcomes().expect(id, text.told);
        return true;
    }

private:
    struct AddressFree {
        void operator()(SPDConnectionAddress *address) const {
            SPDConnectionAddress__free(address);
        }
    };
    struct Close {
        void operator()(SPDConnection *connection) const { spd_close(connection); }
    };
    using Connection = std::unique_ptr<SPDConnection, Close>;

    explicit Service(Connection connection) : connection_(std::move(connection)) {}

    Connection connection_;
    std::string language_;
};

/// The thread that speaks to the service, which may be slow to answer.
class Speaker : public std::enable_shared_from_this<Speaker> {
public:
    void start() {
        std::thread([self = shared_from_this()] { self->run(); }).detach();
    }
    void say(Text text) {
        const std::lock_guard lock(mutex_);
        if (!waiting_.empty() && waiting_.back().discardable && text.discardable) {
            tell(waiting_.back().told, Spoken::cancelled);
            waiting_.pop_back();
        }
        waiting_.push_back(std::move(text));
        changed_.notify_all();
    }
    void stop() {
        std::unique_lock lock(mutex_);
        stopping_ = true;
        waiting_.clear();
        changed_.notify_all();
        changed_.wait_for(lock, kPatience, [this] { return ended_; });
    }

private:
    void run() {
        while (const auto text = next()) {
            if (!speak(*text)) {
                tell(text->told, Spoken::skipped);
            }
        }
        service_.reset();
        const std::lock_guard lock(mutex_);
        ended_ = true;
        changed_.notify_all();
    }

    std::unique_ptr<Text> next() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        if (stopping_) {
            return nullptr;
        }
        auto text = std::make_unique<Text>(std::move(waiting_.front()));
        waiting_.pop_front();
        return text;
    }

    /// A service that was restarted is found again.
    bool speak(const Text &text) {
        if (service_ && service_->say(text)) {
            return true;
        }
        service_.reset();
        service_ = Service::connect();
        if (service_ && service_->say(text)) {
            absence_logged_ = false;
            return true;
        }
        service_.reset();
        if (!std::exchange(absence_logged_, true)) {
            __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "No speech service: texts aren't spoken");
        }
        return false;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Text> waiting_;
    bool stopping_ = false;
    bool ended_ = false;
    // Of the thread alone.
    std::unique_ptr<Service> service_;
    bool absence_logged_ = false;
};

std::mutex speaker_mutex;
std::shared_ptr<Speaker> speaker;

}  // namespace

void speak(std::string text, std::string language, bool discardable,
           std::function<void(Spoken)> told) {
    const std::lock_guard lock(speaker_mutex);
    if (!speaker) {
        speaker = std::make_shared<Speaker>();
        speaker->start();
    }
    speaker->say({std::move(text), std::move(language), discardable, std::move(told)});
}

void stop_speech() {
    const std::lock_guard lock(speaker_mutex);
    if (speaker) {
        speaker->stop();
        speaker.reset();
    }
}

}  // namespace host
