#include <memory>

#include "common/gobject.h"
#include "messaging/bundle_host.h"

namespace host {
namespace {

std::vector<const char *> pointers_to(const std::vector<std::string> &texts) {
    std::vector<const char *> pointers;
    pointers.reserve(texts.size());
    for (const std::string &text : texts) {
        pointers.push_back(text.c_str());
    }
    return pointers;
}

// One entry: key, whether it is an array, its texts.
GVariant *entry_to_variant(const std::string &key, const bundle::Value &value) {
    const auto *text = std::get_if<std::string>(&value);
    const std::vector<std::string> texts =
        text != nullptr ? std::vector{*text} : std::get<bundle::Array>(value).texts;
    const std::vector<const char *> pointers = pointers_to(texts);
    return g_variant_new(
        "(@ayb@aay)", g_variant_new_bytestring(key.c_str()), text == nullptr,
        g_variant_new_bytestring_array(pointers.data(), static_cast<gssize>(pointers.size())));
}

void entry_from_variant(GVariant *variant, bundle &target) {
    const char *key = nullptr;
    gboolean is_array = FALSE;
    const char **texts = nullptr;
    g_variant_get(variant, "(^&ayb^a&ay)", &key, &is_array, &texts);
    const std::unique_ptr<const char *, void (*)(gpointer)> owner(texts, g_free);
    const int length = static_cast<int>(g_strv_length(const_cast<char **>(texts)));
    if (is_array) {
        bundle_add_str_array(&target, key, texts, length);
    } else if (length == 1) {
        bundle_add_str(&target, key, texts[0]);
    }
}

}  // namespace

GVariant *bundle_to_variant(const bundle &source) {
    GVariantBuilder entries;
    g_variant_builder_init(&entries, G_VARIANT_TYPE(kBundleType));
    for (const auto &[key, value] : source.values) {
        g_variant_builder_add_value(&entries, entry_to_variant(key, value));
    }
    return g_variant_builder_end(&entries);
}

void bundle_from_variant(GVariant *variant, bundle &target) {
    for (gsize i = 0; i < g_variant_n_children(variant); ++i) {
        const GVariantPtr entry(g_variant_get_child_value(variant, i));
        entry_from_variant(entry.get(), target);
    }
}

}  // namespace host
