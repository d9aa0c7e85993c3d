#include "player/warm_up.h"

#include <dlfcn.h>
#include <gst/gst.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "app/options.h"
#include "player/gst_ptr.h"
#include "player/library_loader.h"
#include "player/media_source.h"
#include "player/player_host.h"
#include "player/resources.h"
#include "sound/output.h"

namespace host {
namespace {

namespace fs = std::filesystem;

/// What any playback uses.
constexpr std::array kCommonElements = {
    "playbin", "uridecodebin", "filesrc",       "typefind",   "multiqueue",
    "appsink", "audioconvert", "audioresample", "scaletempo", "volume",
};

struct Container {
    std::string_view mark;  ///< in the first bytes of a file
    std::size_t place;      ///< of the mark
    std::vector<const char *> elements;
};

const std::vector<Container> &containers() {
    static const auto *const known = new std::vector<Container>{
        {"ftyp", 4, {"qtdemux", "h264parse", "aacparse", "avdec_h264"}},
        {"\x1A\x45\xDF\xA3", 0, {"matroskademux"}},
        {"OggS", 0, {"oggdemux", "theoradec", "vorbisdec"}},
    };
    return *known;
}

/// Codecs as a Matroska file names them near its start.
const std::vector<std::pair<std::string_view, std::vector<const char *>>> &matroska_codecs() {
    static const auto *const known =
        new std::vector<std::pair<std::string_view, std::vector<const char *>>>{
            {"V_VP9", {"vp9dec"}},
            {"V_VP8", {"vp8dec"}},
            {"V_MPEG4/ISO/AVC", {"h264parse", "avdec_h264"}},
            {"A_OPUS", {"opusparse", "opusdec"}},
            {"A_VORBIS", {"vorbisdec"}},
        };
    return *known;
}

std::string head_of(const std::string &file) {
    constexpr std::size_t kHeadBytes = 4096;
    std::string head(kHeadBytes, '\0');
    std::error_code error;
    // A pipe would be read empty, or block.
    if (!fs::is_regular_file(file, error)) {
        return {};
    }
    std::ifstream stream(file, std::ios::binary);
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    return head;
}

std::vector<const char *> elements_for(std::string_view head) {
    std::vector<const char *> elements;
    for (const Container &container : containers()) {
        if (head.substr(std::min(container.place, head.size())).starts_with(container.mark)) {
            elements = container.elements;
        }
    }
    for (const auto &[name, decoders] : matroska_codecs()) {
        if (head.find(name) != std::string_view::npos) {
            elements.insert(elements.end(), decoders.begin(), decoders.end());
        }
    }
    return elements;
}

/// Loads the plug-in that has the element, and makes its class ready.
void load(const char *element) {
    const GstObjectPtr<GstElementFactory> factory(gst_element_factory_find(element));
    if (!factory) {
        return;
    }
    const GstObjectPtr<GstPlugin> plugin(
        gst_plugin_feature_get_plugin(GST_PLUGIN_FEATURE(factory.get())));
    if (plugin && gst_plugin_get_filename(plugin.get()) != nullptr) {
        load_needed_libraries(gst_plugin_get_filename(plugin.get()));
    }
    const GstObjectPtr<GstPluginFeature> loaded(
        gst_plugin_feature_load(GST_PLUGIN_FEATURE(factory.get())));
    if (loaded) {
        g_type_class_unref(g_type_class_ref(
            gst_element_factory_get_element_type(GST_ELEMENT_FACTORY(loaded.get()))));
    }
}

/// Where GStreamer keeps what it knows of its plug-ins.
fs::path registry_file() {
    for (const char *name : {"GST_REGISTRY_1_0", "GST_REGISTRY"}) {
        if (const char *file = std::getenv(name)) {
            return file;
        }
    }
#if defined(__x86_64__)
    constexpr char kName[] = "registry.x86_64.bin";
#elif defined(__aarch64__)
    constexpr char kName[] = "registry.aarch64.bin";
#else
    constexpr char kName[] = "";
#endif
    return fs::path(g_get_user_cache_dir()) / "gstreamer-1.0" / kName;
}

/// The folder of the plug-ins, beside the library.
fs::path plugin_folder() {
    Dl_info library{};
    if (dladdr(reinterpret_cast<const void *>(&gst_init), &library) == 0 ||
        library.dli_fname == nullptr) {
        return {};
    }
    return fs::path(library.dli_fname).parent_path() / "gstreamer-1.0";
}

/// Looking at each plug-in again costs as much as the rest of the start. It is only needed when one
/// has come or gone since the registry was written.
void skip_needless_scan() {
    for (const char *chosen : {"GST_PLUGIN_PATH", "GST_PLUGIN_PATH_1_0", "GST_PLUGIN_SYSTEM_PATH",
                               "GST_PLUGIN_SYSTEM_PATH_1_0", "GST_REGISTRY_UPDATE"}) {
        if (std::getenv(chosen) != nullptr) {
            return;
        }
    }
    std::error_code error;
    const auto written = fs::last_write_time(registry_file(), error);
    if (error) {
        return;
    }
    const auto changed_before = [written](const fs::path &folder) {
        std::error_code failed;
        const auto changed = fs::last_write_time(folder, failed);
        return !failed && changed < written;
    };
    const fs::path own = fs::path(g_get_user_data_dir()) / "gstreamer-1.0" / "plugins";
    if (changed_before(plugin_folder()) && (!fs::exists(own, error) || changed_before(own))) {
        setenv("GST_REGISTRY_UPDATE", "no", 0);
    }
}

class WarmUp {
public:
    void begin(const std::string &target) {
        std::call_once(begun_, [&] {
            thread_ = std::thread([this, target] {
                gst_init(nullptr, nullptr);
                allow_allocations_to_fail();
                ready_.set_value();
                load_for(target);
            });
            // Libraries must not be loaded while the process takes itself apart.
            std::atexit([] { warm_up().thread_.join(); });
        });
    }
    void wait() {
        begin({});
        done_.wait();
    }
    static WarmUp &warm_up();

private:
    static void load_for(const std::string &target) {
        if (target.empty()) {
            return;
        }
        for (const char *element : kCommonElements) {
            load(element);
        }
        load(sound_sink_element());
        std::string why;
        const auto source = MediaSource::parse(target, why);
        if (source && !source->remote()) {
            for (const char *element : elements_for(head_of(source->path()))) {
                load(element);
            }
        }
    }

    std::once_flag begun_;
    std::thread thread_;
    std::promise<void> ready_;
    std::shared_future<void> done_ = ready_.get_future().share();
};

// Never destroyed: its thread may still be at work when the process exits.
WarmUp &WarmUp::warm_up() {
    static auto *const instance = new WarmUp;
    return *instance;
}

}  // namespace

void warm_up_player() {
    const auto &target = options().target;
    if (target) {
        // The environment is only changed here, while there is no other thread that reads it.
        skip_needless_scan();
    }
    WarmUp::warm_up().begin(target.value_or(""));
}

void wait_for_warm_up() {
    WarmUp::warm_up().wait();
}

}  // namespace host
