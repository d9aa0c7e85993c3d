#pragma once

#include <bundle.h>

#include <memory>
#include <vector>

/// Bundles as values, with bundle_create's errno.
class FakeBundle {
public:
    FakeBundle();
    ~FakeBundle();

    /// Number of bundles not freed yet.
    int live() const;

    bundle *bundle_create();
    int bundle_free(bundle *b);
    int bundle_add_str(bundle *b, const char *key, const char *str);
    int bundle_add_str_array(bundle *b, const char *key, const char **str_array, int len);
    int bundle_get_str(bundle *b, const char *key, char **str);
    const char **bundle_get_str_array(bundle *b, const char *key, int *len);
    int bundle_del(bundle *b, const char *key);
    int bundle_get_count(bundle *b);

private:
    bool is_live(const bundle *b) const;

    std::vector<std::unique_ptr<bundle>> m_bundles;
};

namespace mock {
FakeBundle &fake_bundle();
}
