#include "messaging/bundle_host.h"

#include <utility>

_bundle_t::Array::Array(std::vector<std::string> texts_) : texts(std::move(texts_)) {
    pointers.reserve(texts.size());
    for (const std::string &text : texts) {
        pointers.push_back(text.c_str());
    }
}

namespace {

bool is_key(const char *key) {
    return key != nullptr && *key != '\0';
}

}  // namespace

bundle *bundle_create(void) {
    errno = BUNDLE_ERROR_NONE;
    return new bundle;
}

int bundle_free(bundle *b) {
    if (b == nullptr) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    delete b;
    return BUNDLE_ERROR_NONE;
}

int bundle_add_str(bundle *b, const char *key, const char *str) {
    if (b == nullptr || !is_key(key) || str == nullptr) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    const bool added = b->values.try_emplace(key, std::in_place_type<std::string>, str).second;
    return added ? BUNDLE_ERROR_NONE : BUNDLE_ERROR_KEY_EXISTS;
}

int bundle_add_str_array(bundle *b, const char *key, const char **str_array, const int len) {
    if (b == nullptr || !is_key(key) || str_array == nullptr || len < 1) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    std::vector<std::string> texts;
    for (int i = 0; i < len; ++i) {
        if (str_array[i] == nullptr) {
            return BUNDLE_ERROR_INVALID_PARAMETER;
        }
        texts.emplace_back(str_array[i]);
    }
    const bool added =
        b->values.try_emplace(key, std::in_place_type<bundle::Array>, std::move(texts)).second;
    return added ? BUNDLE_ERROR_NONE : BUNDLE_ERROR_KEY_EXISTS;
}

int bundle_get_str(bundle *b, const char *key, char **str) {
    if (b == nullptr || !is_key(key) || str == nullptr) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    const auto found = b->values.find(key);
    auto *text = found != b->values.end() ? std::get_if<std::string>(&found->second) : nullptr;
    *str = text != nullptr ? text->data() : nullptr;
    return text != nullptr ? BUNDLE_ERROR_NONE : BUNDLE_ERROR_KEY_NOT_AVAILABLE;
}

const char **bundle_get_str_array(bundle *b, const char *key, int *len) {
    if (b == nullptr || !is_key(key)) {
        errno = EINVAL;
        return nullptr;
    }
    const auto found = b->values.find(key);
    auto *array = found != b->values.end() ? std::get_if<bundle::Array>(&found->second) : nullptr;
    if (len != nullptr) {
        *len = array != nullptr ? static_cast<int>(array->pointers.size()) : 0;
    }
    errno = array != nullptr ? 0 : ENOKEY;
    return array != nullptr ? array->pointers.data() : nullptr;
}

int bundle_del(bundle *b, const char *key) {
    if (b == nullptr || !is_key(key)) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    const auto found = b->values.find(key);
    if (found == b->values.end()) {
        return BUNDLE_ERROR_KEY_NOT_AVAILABLE;
    }
    b->values.erase(found);
    return BUNDLE_ERROR_NONE;
}

int bundle_get_count(bundle *b) {
    errno = b != nullptr ? 0 : EINVAL;
    return b != nullptr ? static_cast<int>(b->values.size()) : 0;
}
