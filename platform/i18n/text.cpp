#include <libintl.h>
#include <utils_i18n.h>

const char *i18n_get_text(const char *message) {
    // gettext answers an empty text with the header of the catalogue.
    if (message == nullptr || *message == '\0') {
        return message;
    }
    return dgettext("tessel", message);
}
