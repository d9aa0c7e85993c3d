// Runs a player under an X server and watches it from outside, the same way for every player:
//
//     bench-observer [--line Y X0 X1] -- COMMAND...
//
// reads one line of the root window every 3 ms and, when the player has ended, prints one JSON
// object: "first_frame_ms" from fork to the first line that holds six distinct colours that aren't
// black, "changes", how often the line changed after that, "changes_per_s", "cpu_s" of the process
// and its children, "wall_s", "peak_mib" and "status", its exit status.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPeriod = std::chrono::milliseconds(3);
constexpr std::size_t kPictureColours = 6;
/// Nearly the whole width of a window of 360 pixels: a picture may have few colours in its middle.
constexpr int kHalfLine = 175;

struct Line {
    int y = 0;
    int x0 = 0;
    int x1 = 0;
};

struct DisplayClose {
    void operator()(Display *display) const { XCloseDisplay(display); }
};
struct ImageDestroy {
    void operator()(XImage *image) const { XDestroyImage(image); }
};

std::vector<unsigned long> read_line(Display *display, const Line &line) {
    const auto width = static_cast<unsigned>(line.x1 - line.x0);
    const std::unique_ptr<XImage, ImageDestroy> image(XGetImage(
        display, DefaultRootWindow(display), line.x0, line.y, width, 1, AllPlanes, ZPixmap));
    std::vector<unsigned long> pixels;
    if (image) {
        for (unsigned x = 0; x < width; ++x) {
            pixels.push_back(XGetPixel(image.get(), static_cast<int>(x), 0) & 0xffffff);
        }
    }
    return pixels;
}

bool shows_picture(const std::vector<unsigned long> &pixels) {
    std::set<unsigned long> colours(pixels.begin(), pixels.end());
    colours.erase(0);
    return colours.size() >= kPictureColours;
}

double seconds(const timeval &time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

pid_t start(char **command) {
    const pid_t pid = fork();
    if (pid == 0) {
        const int null = open("/dev/null", O_RDWR);
        dup2(null, STDIN_FILENO);
        dup2(null, STDOUT_FILENO);
        dup2(null, STDERR_FILENO);
        execvp(command[0], command);
        _exit(127);
    }
    return pid;
}

int usage() {
    std::fprintf(stderr, "usage: bench-observer [--line Y X0 X1] -- COMMAND...\n");
    return 2;
}

}  // namespace

int main(int argc, char **argv) {
    std::optional<Line> line;
    int next = 1;
    if (argc > 5 && std::string(argv[1]) == "--line") {
        line = Line{std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4])};
        next = 5;
    }
    if (argc <= next + 1 || std::string(argv[next]) != "--") {
        return usage();
    }

    const std::unique_ptr<Display, DisplayClose> display(XOpenDisplay(nullptr));
    if (!display) {
        std::fprintf(stderr, "bench-observer: no X display\n");
        return 1;
    }
    if (!line) {
        const int width = DisplayWidth(display.get(), DefaultScreen(display.get()));
        const int height = DisplayHeight(display.get(), DefaultScreen(display.get()));
        line = Line{height / 2, width / 2 - kHalfLine, width / 2 + kHalfLine};
    }

    const auto begin = Clock::now();
    const pid_t pid = start(argv + next + 1);
    std::optional<Clock::time_point> first;
    Clock::time_point last_change = begin;
    std::vector<unsigned long> previous;
    int changes = 0;
    int status = 0;
    rusage usage{};
    for (auto wake = begin; wait4(pid, &status, WNOHANG, &usage) == 0;) {
        auto pixels = read_line(display.get(), *line);
        if (!first && shows_picture(pixels)) {
            first = Clock::now();
        } else if (first && pixels != previous) {
            ++changes;
            last_change = Clock::now();
        }
        previous = std::move(pixels);
        wake = std::max(wake + kPeriod, Clock::now());
        std::this_thread::sleep_until(wake);
    }
    const auto end = Clock::now();
    const auto ms = [](auto from, auto to) {
        return std::chrono::duration<double, std::milli>(to - from).count();
    };
    const double shown_s = first ? ms(*first, last_change) / 1000 : 0;
    std::printf(
        "{\"first_frame_ms\": %.1f, \"changes\": %d, \"changes_per_s\": %.2f, \"cpu_s\": %.4f, "
        "\"wall_s\": %.3f, \"peak_mib\": %.1f, \"status\": %d}\n",
        first ? ms(begin, *first) : -1.0, changes, shown_s > 0 ? changes / shown_s : 0.0,
        seconds(usage.ru_utime) + seconds(usage.ru_stime), ms(begin, end) / 1000,
        static_cast<double>(usage.ru_maxrss) / 1024,
        WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
    return 0;
}
