#include <Elementary.h>
#include <libintl.h>
#include <utils_i18n.h>

extern "C" void __real_elm_object_domain_translatable_part_text_set(Evas_Object *obj,
                                                                    const char *part,
                                                                    const char *domain,
                                                                    const char *text);
extern "C" void __wrap_elm_object_domain_translatable_part_text_set(Evas_Object *obj,
                                                                    const char *part,
                                                                    const char *domain,
                                                                    const char *text);

namespace {

// gettext answers an empty text with the header of the catalogue.
bool is_message(const char *text) {
    return text != nullptr && *text != '\0';
}

}  // namespace

const char *i18n_get_text(const char *message) {
    return is_message(message) ? dgettext("tessel", message) : message;
}

// The toolkit would show that header at the next change of the language.
void __wrap_elm_object_domain_translatable_part_text_set(Evas_Object *obj, const char *part,
                                                         const char *domain, const char *text) {
    if (is_message(text)) {
        __real_elm_object_domain_translatable_part_text_set(obj, part, domain, text);
        return;
    }
    // Null ends what was set to be translated before.
    __real_elm_object_domain_translatable_part_text_set(obj, part, domain, nullptr);
    elm_object_part_text_set(obj, part, text);
}
