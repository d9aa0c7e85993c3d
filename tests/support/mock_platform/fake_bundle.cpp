#include "fake_bundle.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "slot.h"

struct _bundle_t {
    struct Value {
        std::vector<std::string> texts;
        std::vector<const char *> pointers;  // borrowed by callers of the array getter
        bool is_array = false;
    };
    std::map<std::string, Value> values;
};

namespace {

int add(bundle *b, const char *key, _bundle_t::Value value) {
    if (b == nullptr || key == nullptr || *key == '\0') {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    const auto [item, inserted] = b->values.try_emplace(key, std::move(value));
    if (!inserted) {
        return BUNDLE_ERROR_KEY_EXISTS;
    }
    for (const auto &text : item->second.texts) {
        item->second.pointers.push_back(text.c_str());
    }
    return BUNDLE_ERROR_NONE;
}

}  // namespace

namespace mock {

FakeBundle &fake_bundle() {
    static Slot<FakeBundle> slot;
    return slot.get();
}

}  // namespace mock

FakeBundle::FakeBundle() = default;
FakeBundle::~FakeBundle() = default;

int FakeBundle::live() const {
    return static_cast<int>(m_bundles.size());
}

bool FakeBundle::is_live(const bundle *b) const {
    return std::any_of(m_bundles.begin(), m_bundles.end(),
                       [b](const auto &item) { return item.get() == b; });
}

bundle *FakeBundle::bundle_create() {
    m_bundles.push_back(std::make_unique<bundle>());
    errno = 0;
    return m_bundles.back().get();
}

int FakeBundle::bundle_free(bundle *b) {
    const auto erased = std::erase_if(m_bundles, [b](const auto &item) { return item.get() == b; });
    return erased == 0 ? BUNDLE_ERROR_INVALID_PARAMETER : BUNDLE_ERROR_NONE;
}

int FakeBundle::bundle_add_str(bundle *b, const char *key, const char *str) {
    if (!is_live(b) || str == nullptr) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    return add(b, key, {{str}, {}, false});
}

int FakeBundle::bundle_add_str_array(bundle *b, const char *key, const char **str_array, int len) {
    if (!is_live(b) || str_array == nullptr || len < 0) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    return add(b, key, {std::vector<std::string>(str_array, str_array + len), {}, true});
}

int FakeBundle::bundle_get_str(bundle *b, const char *key, char **str) {
    if (!is_live(b) || key == nullptr || str == nullptr) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    const auto item = b->values.find(key);
    if (item == b->values.end() || item->second.is_array) {
        return BUNDLE_ERROR_KEY_NOT_AVAILABLE;
    }
    *str = item->second.texts.front().data();
    return BUNDLE_ERROR_NONE;
}

const char **FakeBundle::bundle_get_str_array(bundle *b, const char *key, int *len) {
    if (!is_live(b) || key == nullptr) {
        return nullptr;
    }
    const auto item = b->values.find(key);
    if (item == b->values.end() || !item->second.is_array) {
        return nullptr;
    }
    if (len != nullptr) {
        *len = static_cast<int>(item->second.texts.size());
    }
    return item->second.pointers.data();
}

int FakeBundle::bundle_del(bundle *b, const char *key) {
    if (!is_live(b) || key == nullptr) {
        return BUNDLE_ERROR_INVALID_PARAMETER;
    }
    return b->values.erase(key) == 0 ? BUNDLE_ERROR_KEY_NOT_AVAILABLE : BUNDLE_ERROR_NONE;
}

int FakeBundle::bundle_get_count(bundle *b) {
    return is_live(b) ? static_cast<int>(b->values.size()) : 0;
}
