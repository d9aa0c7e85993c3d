#include <Ecore.h>
#include <Ecore_X.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/Xext.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <bit>
#include <cstdlib>
#include <utility>

#include "shell/presenter.h"

namespace host {

namespace {

constexpr int kBitsPerPixel = 32;
constexpr double kSecondsToAskAgain = 0.5;

bool has_our_pixels(const XWindowAttributes &window) {
    return std::endian::native == std::endian::little && window.depth >= 24 &&
           window.visual->red_mask == 0xff0000 && window.visual->green_mask == 0x00ff00 &&
           window.visual->blue_mask == 0x0000ff;
}

/// Notes that a request has failed, in place of the handler that others have set.
class ErrorTrap {
public:
    explicit ErrorTrap(Display *display) : display_(display) {
        XSync(display_, False);
        failed_ = false;
        former_ = XSetErrorHandler([](Display *, XErrorEvent *) {
            failed_ = true;
            return 0;
        });
    }
    ~ErrorTrap() { XSetErrorHandler(former_); }
    ErrorTrap(const ErrorTrap &) = delete;
    ErrorTrap &operator=(const ErrorTrap &) = delete;

    [[nodiscard]] bool failed() const {
        XSync(display_, False);
        return failed_;
    }

private:
    static inline bool failed_ = false;
    Display *display_;
    XErrorHandler former_;
};

/// Draws into memory that the server reads itself; where it can't, as over a network, each change
/// is sent.
class X11Presenter : public Presenter {
public:
    X11Presenter(Ecore_Evas *desktop, Display *display, const XWindowAttributes &attributes)
        : desktop_(desktop),
          display_(display),
          window_(ecore_evas_window_get(desktop)),
          visual_(attributes.visual),
          depth_(static_cast<unsigned int>(attributes.depth)),
          gc_(XCreateGC(display, window_, 0, nullptr)),
          exposed_(ecore_event_handler_add(ECORE_X_EVENT_WINDOW_DAMAGE, window_exposed, this)) {}

    ~X11Presenter() override {
        ecore_event_handler_del(exposed_);
        stop_asking();
        drop_image();
        XFreeGC(display_, gc_);
    }
    X11Presenter(const X11Presenter &) = delete;
    X11Presenter &operator=(const X11Presenter &) = delete;

    void *allocate(std::size_t bytes) override {
        memory_ = allocate_shared(bytes);
        is_shared_ = memory_ != nullptr;
        if (!is_shared_) {
            memory_ = std::calloc(1, bytes);
        }
        return memory_;
    }

    void release(void *memory) override {
        before_drawing();
        drop_image();
        if (is_shared_) {
            XShmDetach(display_, &segment_);
            XSync(display_, False);
            shmdt(memory);
        } else {
            std::free(memory);
        }
        memory_ = nullptr;
        is_shared_ = false;
    }

    void before_drawing() override {
        // The server may still be reading what was put last.
        if (std::exchange(is_being_read_, false)) {
            XSync(display_, False);
        }
    }

    void show(int w, int h, std::span<const Rect> changed) override {
        make_image(w, h);
        for (const Rect &part : changed) {
            put(part);
        }
        XFlush(display_);
    }

    void window_shown() override {
        stop_asking();
        asking_ = ecore_timer_add(kSecondsToAskAgain, ask_again, this);
    }

private:
    void *allocate_shared(std::size_t bytes) {
        if (XShmQueryExtension(display_) == False) {
            return nullptr;
        }
        segment_ = {};
        segment_.readOnly = True;
        segment_.shmid = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
        if (segment_.shmid < 0) {
            return nullptr;
        }
        void *memory = shmat(segment_.shmid, nullptr, 0);
        bool attached = false;
        if (memory != reinterpret_cast<void *>(-1)) {
            segment_.shmaddr = static_cast<char *>(memory);
            const ErrorTrap trap(display_);
            XShmAttach(display_, &segment_);
            attached = !trap.failed();
            if (!attached) {
                shmdt(memory);
            }
        }
        // It lives on as long as somebody is attached, and no longer.
        shmctl(segment_.shmid, IPC_RMID, nullptr);
        return attached ? memory : nullptr;
    }

    void make_image(int w, int h) {
        if (image_ != nullptr && image_->width == w && image_->height == h) {
            return;
        }
        drop_image();
        auto *data = static_cast<char *>(memory_);
        const auto columns = static_cast<unsigned int>(w);
        const auto rows = static_cast<unsigned int>(h);
        image_ = is_shared_ ? XShmCreateImage(display_, visual_, depth_, ZPixmap, data, &segment_,
                                              columns, rows)
                            : XCreateImage(display_, visual_, depth_, ZPixmap, 0, data, columns,
                                           rows, kBitsPerPixel, 0);
    }

    void drop_image() {
        if (image_ != nullptr) {
            image_->data = nullptr;  // not its own
            XDestroyImage(image_);
            image_ = nullptr;
        }
    }

    void put(const Rect &part) {
        const auto w = static_cast<unsigned int>(part.w);
        const auto h = static_cast<unsigned int>(part.h);
        if (is_shared_) {
            XShmPutImage(display_, window_, gc_, image_, part.x, part.y, part.x, part.y, w, h,
                         False);
            is_being_read_ = true;
        } else {
            XPutImage(display_, window_, gc_, image_, part.x, part.y, part.x, part.y, w, h);
        }
    }

    void stop_asking() {
        if (asking_ != nullptr) {
            ecore_timer_del(std::exchange(asking_, nullptr));
        }
    }

    /// A window manager that is just starting may lose what windows have asked it for.
    static Eina_Bool ask_again(void *data) {
        auto *self = static_cast<X11Presenter *>(data);
        const bool is_managed =
            ecore_x_icccm_state_get(self->window_) != ECORE_X_WINDOW_STATE_HINT_NONE;
        if (is_managed || ecore_x_window_visible_get(self->window_) != EINA_FALSE) {
            self->asking_ = nullptr;
            return ECORE_CALLBACK_CANCEL;
        }
        int w = 0;
        int h = 0;
        ecore_evas_request_geometry_get(self->desktop_, nullptr, nullptr, &w, &h);
        ecore_x_window_resize(self->window_, w, h);
        ecore_x_window_show(self->window_);
        return ECORE_CALLBACK_RENEW;
    }

    static Eina_Bool window_exposed(void *data, int /*type*/, void *event) {
        auto *self = static_cast<X11Presenter *>(data);
        const auto *damage = static_cast<const Ecore_X_Event_Window_Damage *>(event);
        if (damage->win == self->window_ && self->image_ != nullptr) {
            self->put({damage->x, damage->y, damage->w, damage->h});
            XFlush(self->display_);
        }
        return ECORE_CALLBACK_PASS_ON;
    }

    Ecore_Evas *desktop_;
    Display *display_;
    Window window_;
    Visual *visual_;
    unsigned int depth_;
    GC gc_;
    Ecore_Event_Handler *exposed_;
    Ecore_Timer *asking_ = nullptr;
    XShmSegmentInfo segment_{};
    void *memory_ = nullptr;
    bool is_shared_ = false;
    bool is_being_read_ = false;
    XImage *image_ = nullptr;
};

}  // namespace

void silence_x11() {
    XSetExtensionErrorHandler([](Display *, const char *, const char *) { return 0; });
}

std::unique_ptr<Presenter> make_x11_presenter(Ecore_Evas *window) {
    auto *display = static_cast<Display *>(ecore_x_display_get());
    const Window id = ecore_evas_window_get(window);
    XWindowAttributes attributes;
    if (display == nullptr || id == 0 || XGetWindowAttributes(display, id, &attributes) == 0 ||
        !has_our_pixels(attributes)) {
        return nullptr;
    }
    return std::make_unique<X11Presenter>(window, display, attributes);
}

}  // namespace host
