#include "player/stragglers.h"

#include <utility>

namespace host {

void Stragglers::take(GstElement *element) {
    GstObjectPtr<GstElement> freed;  // Without the lock, as it may hold other elements.
    const std::lock_guard lock(mutex_);
    elements_.emplace_back(GST_ELEMENT(gst_object_ref(element)));
    if (elements_.size() > kMost) {
        freed = std::move(elements_.front());
        elements_.pop_front();
    }
}

void Stragglers::stop() {
    std::list<GstObjectPtr<GstElement>> elements;
    {
        const std::lock_guard lock(mutex_);
        elements.swap(elements_);
    }
    for (const auto &element : elements) {
        gst_element_set_state(element.get(), GST_STATE_NULL);
    }
}

}  // namespace host
