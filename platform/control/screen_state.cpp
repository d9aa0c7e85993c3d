#include "control/screen_state.h"

#include <Elementary.h>
#include <sound_manager.h>

#include <array>
#include <functional>
#include <optional>
#include <string_view>

#include "access/screen_reader.h"
#include "i18n/locale.h"
#include "player/player_host.h"
#include "shell/object_tree.h"
#include "shell/shell.h"
#include "sound/backend.h"

namespace host::control {
namespace {

// Names that the program gives its objects.
constexpr const char *kPlayerPage = "tsl_player_view";
constexpr const char *kControlsPart = "tsl.player.view.base.layout.swallow.content";
constexpr const char *kPlayedPart = "tsl.player.view.playtime.text.played";
constexpr const char *kDurationPart = "tsl.player.view.playtime.text.duration";
constexpr const char *kVolumePage = "tsl_volume_view";
constexpr const char *kVolumePart = "tsl.volume.view.base.layout.swallow.content";
constexpr const char *kLevelPart = "elm.text.level";
constexpr const char *kPopupTextPart = "elm.text";

Json text_or_null(const char *text) {
    return text != nullptr ? Json(text) : Json();
}

struct Seen {
    Evas_Object *page = nullptr;
    Evas_Object *popup = nullptr;
    std::vector<Evas_Object *> buttons;
};

Evas_Object *top_page(Evas_Object *naviframe) {
    Elm_Object_Item *item = elm_naviframe_top_item_get(naviframe);
    return item != nullptr ? elm_object_item_content_get(item) : nullptr;
}

Seen look_at(Evas_Object *window) {
    Seen seen;
    walk_window(window, [&seen](Evas_Object *object) {
        const auto type = type_of(object);
        if (type == "elm_naviframe") {
            seen.page = top_page(object);
        } else if (type == "elm_popup" && is_visible(object)) {
            seen.popup = object;
        } else if (type == "elm_button" && is_visible(object)) {
            seen.buttons.push_back(object);
        }
    });
    return seen;
}

Json describe_popup(Evas_Object *popup) {
    const char *text = elm_object_part_text_get(popup, kPopupTextPart);
    if (text == nullptr || *text == '\0') {
        if (Evas_Object *content = elm_object_content_get(popup)) {
            text = elm_object_part_text_get(content, kPopupTextPart);
        }
    }
    return {{"style", text_or_null(elm_object_style_get(popup))}, {"text", text_or_null(text)}};
}

Json describe_button(Evas_Object *button) {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    evas_object_geometry_get(button, &x, &y, &width, &height);
    return {{"style", text_or_null(elm_object_style_get(button))},
            {"x", x},
            {"y", y},
            {"width", width},
            {"height", height},
            {"enabled", elm_object_disabled_get(button) == EINA_FALSE},
            {"focused", button == focused_button()}};
}

void add_player_page(Json &state, Evas_Object *page) {
    if (Evas_Object *controls = elm_object_part_content_get(page, kControlsPart)) {
        state["controls"] = is_visible(controls);
        state["played"] = text_or_null(elm_object_part_text_get(controls, kPlayedPart));
        state["length"] = text_or_null(elm_object_part_text_get(controls, kDurationPart));
    }
}

void add_volume_page(Json &state, Evas_Object *page) {
    Evas_Object *panel = elm_object_part_content_get(page, kVolumePart);
    if (panel != nullptr && is_visible(panel)) {
        state["level"] = text_or_null(elm_object_part_text_get(panel, kLevelPart));
    }
}

void add_page(Json &state, Evas_Object *page) {
    const char *name = evas_object_name_get(page);
    state["page"] = text_or_null(name);
    if (name == nullptr) {
        return;
    }
    if (std::string_view(name) == kPlayerPage) {
        add_player_page(state, page);
    } else if (std::string_view(name) == kVolumePage) {
        add_volume_page(state, page);
    }
}

void add_window(Json &state) {
    state["page"] = nullptr;
    state["controls"] = false;
    state["played"] = nullptr;
    state["length"] = nullptr;
    state["level"] = nullptr;
    state["popup"] = nullptr;
    state["buttons"] = Json::array();
    state["screen"] = nullptr;
    state["rotation"] = 0;

    Evas_Object *window = program_window();
    if (window == nullptr) {
        return;
    }
    const Seen seen = look_at(window);
    if (seen.page != nullptr) {
        add_page(state, seen.page);
    }
    if (seen.popup != nullptr) {
        state["popup"] = describe_popup(seen.popup);
    }
    for (Evas_Object *button : seen.buttons) {
        state["buttons"].push_back(describe_button(button));
    }
    if (const VideoPlane *plane = video_plane_of(window)) {
        state["screen"] = {{"width", plane->width()}, {"height", plane->height()}};
    }
    state["rotation"] = elm_win_rotation_get(window);
}

template <std::size_t Count>
Json name_of(const std::array<const char *, Count> &names, int value) {
    return value >= 0 && static_cast<std::size_t>(value) < Count ? Json(names.at(value))
                                                                 : Json(value);
}

void add_player(Json &state) {
    static constexpr std::array kStates{"none", "idle", "ready", "playing", "paused"};
    static constexpr std::array kModes{"letter_box",   "original_size",      "full_screen",
                                       "cropped_full", "original_or_letter", "dst_roi"};
    const PlayerStatus status = player_status();
    state["player"] = name_of(kStates, status.state);
    state["position"] = status.position_ms;
    state["duration"] = status.duration_ms;
    state["uri"] = status.uri;
    state["display_mode"] = name_of(kModes, status.display_mode);
    state["display_rotation"] = static_cast<int>(status.rotation);
    state["video"] = {{"width", status.video_width}, {"height", status.video_height}};
    state["frames"] = {{"decoded", status.frames_decoded},
                       {"shown", status.frames_shown},
                       {"dropped", status.frames_dropped}};
}

void add_sound(Json &state, const Rival &rival) {
    int volume = 0;
    state["volume"] =
        sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume) == 0 ? Json(volume) : Json();
    Json devices = Json::array();
    for (const auto &device : sound::backend()->devices().value_or(std::vector<sound::Device>())) {
        devices.push_back({{"type", static_cast<int>(device.type)}, {"name", device.name}});
    }
    state["sound"] = {{"backend", sound::backend()->name()}, {"devices", devices}};
    state["focus"] = rival.program_holds_focus();
}

void add_settings(Json &state) {
    const auto region = current_region();
    state["language"] = current_language();
    state["region"] = region ? Json(*region) : Json();
    state["clock"] = static_cast<int>(current_clock());
    state["screen_reader"] = screen_reader_enabled();
}

}  // namespace

Json read_state(const Rival &rival) {
    Json state = Json::object();
    add_player(state);
    add_window(state);
    add_sound(state, rival);
    add_settings(state);
    return state;
}

}  // namespace host::control
