// A widget application that does what its environment asks for: PROBE=null-class, PROBE=fail and so
// on. It tells on standard output what is done with it and what it is answered.

#include <Elementary.h>
#include <widget_app.h>
#include <widget_app_efl.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

widget_context_h former = nullptr;

void tell(const std::string &line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

bool asked(const char *what) {
    const char *value = std::getenv("PROBE");
    return value != nullptr && std::strcmp(value, what) == 0;
}

std::string name_of(int error) {
    switch (error) {
    case WIDGET_ERROR_NONE:
        return "none";
    case WIDGET_ERROR_INVALID_PARAMETER:
        return "invalid parameter";
    case WIDGET_ERROR_FAULT:
        return "fault";
    default:
        return std::to_string(error);
    }
}

void tell_tags(widget_context_h context) {
    int value = 0;
    void *tag = &value;
    std::string answer = name_of(widget_app_context_get_tag(context, &tag));
    tell("get " + answer + (tag == nullptr ? " null" : " something"));
    tell("set " + name_of(widget_app_context_set_tag(context, &value)));
    answer = name_of(widget_app_context_get_tag(context, &tag));
    tell("get " + answer + (tag == &value ? " own" : " other"));
    tell("get nowhere " + name_of(widget_app_context_get_tag(context, nullptr)));
    auto *const nothing = reinterpret_cast<widget_context_h>(&value);
    answer = name_of(widget_app_context_get_tag(nothing, &tag));
    tell("get of nothing " + answer + (tag == &value ? " left alone" : " changed"));
    tell("set of null " + name_of(widget_app_context_set_tag(nullptr, tag)));
}

void tell_windows(widget_context_h context) {
    Evas_Object *first = nullptr;
    Evas_Object *second = nullptr;
    tell("window nowhere " + name_of(widget_app_get_elm_win(context, nullptr)));
    tell("window of null " + name_of(widget_app_get_elm_win(nullptr, &first)));
    tell("window " + name_of(widget_app_get_elm_win(context, &first)));
    const std::string answer = name_of(widget_app_get_elm_win(context, &second));
    tell("again " + answer + (first == second ? " the same" : " another"));
    tell(evas_object_visible_get(first) != EINA_FALSE ? "shown" : "not shown");
    int width = 0;
    int height = 0;
    evas_object_resize(first, 17, 19);
    evas_object_geometry_get(first, nullptr, nullptr, &width, &height);
    tell("size " + std::to_string(width) + "x" + std::to_string(height));
    evas_object_del(first);
    tell("deleted " + name_of(widget_app_get_elm_win(context, &second)));
}

int create(widget_context_h context, bundle *content, int, int, void *) {
    tell(content == nullptr ? "create with null" : "create with content");
    former = context;
    if (asked("fail")) {
        return WIDGET_ERROR_FAULT;
    }
    if (asked("tags")) {
        tell_tags(context);
    }
    if (asked("windows")) {
        tell_windows(context);
    }
    if (!asked("stay")) {
        widget_app_exit();
    }
    return WIDGET_ERROR_NONE;
}

int destroy(widget_context_h, widget_app_destroy_type_e reason, bundle *content, void *) {
    tell(std::string("destroy ") +
         (reason == WIDGET_APP_DESTROY_TYPE_PERMANENT ? "permanent" : "temporary") +
         (content != nullptr ? "" : " with null"));
    return WIDGET_ERROR_NONE;
}

widget_class_h create_class(void *) {
    tell("create class");
    if (asked("null-class")) {
        return nullptr;
    }
    widget_instance_lifecycle_callback_s callbacks{create,  destroy, nullptr,
                                                   nullptr, nullptr, nullptr};
    const widget_class_h made = widget_app_class_create(callbacks, nullptr);
    errno = 0;
    const widget_class_h second = widget_app_class_create(callbacks, nullptr);
    tell(std::string("second class ") + (second == nullptr ? "null " : "made ") +
         std::strerror(errno));
    return made;
}

void terminate(void *) {
    void *tag = nullptr;
    tell("terminate, context " + name_of(widget_app_context_get_tag(former, &tag)));
}

}  // namespace

int main(int argc, char **argv) {
    widget_app_lifecycle_callback_s callbacks{create_class, terminate};
    const int result = widget_app_main(argc, argv, &callbacks, nullptr);
    tell("returned " + name_of(result));
    return result == WIDGET_ERROR_NONE ? 0 : 1;
}
