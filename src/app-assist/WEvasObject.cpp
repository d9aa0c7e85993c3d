#include "app-assist/WEvasObject.h"

namespace app_assist {

namespace {

struct _WEvasObjectImpl : public IWEvasObject {
    std::shared_ptr<_WEvasObjectImpl> _self;
    Evas_Object *_evasObject = nullptr;

    Evas_Object *getEvasObject() override { return _evasObject; }
};

void evasObjectDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    delete static_cast<_WEvasObjectImpl *>(data);
}

}  // namespace

WEvasObjectWeakPtr wevasobject_get_weak_ptr(Evas_Object *obj) {
    auto *impl = new _WEvasObjectImpl;
    impl->_evasObject = obj;
    // Holds itself until the hook deletes it, which is when the weak pointers expire.
    impl->_self = std::shared_ptr<_WEvasObjectImpl>(impl, [](_WEvasObjectImpl *) {});
    evas_object_event_callback_add(obj, EVAS_CALLBACK_DEL, evasObjectDeletedCb, impl);
    return impl->_self;
}

}  // namespace app_assist
