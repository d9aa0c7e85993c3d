#include <cstdlib>

#include "shell/evas_object.h"
#include "shell/presenter.h"

namespace host {

namespace {

class CanvasPresenter : public Presenter {
public:
    explicit CanvasPresenter(Ecore_Evas *window)
        : image_(evas_object_image_filled_add(ecore_evas_get(window))) {
        evas_object_image_alpha_set(image_.get(), EINA_FALSE);
        evas_object_pass_events_set(image_.get(), EINA_TRUE);
        evas_object_lower(image_.get());
        evas_object_show(image_.get());
    }

    void *allocate(std::size_t bytes) override {
        memory_ = std::calloc(1, bytes);
        w_ = 0;
        return memory_;
    }

    void release(void *memory) override {
        evas_object_image_data_set(image_.get(), nullptr);
        memory_ = nullptr;
        std::free(memory);
    }

    void before_drawing() override {}

    void show(int w, int h, std::span<const Rect> changed) override {
        if (w != w_ || h != h_) {
            w_ = w;
            h_ = h;
            evas_object_image_data_set(image_.get(), nullptr);
            evas_object_image_size_set(image_.get(), w, h);
            evas_object_resize(image_.get(), w, h);
        }
        evas_object_image_data_set(image_.get(), memory_);
        for (const Rect &part : changed) {
            evas_object_image_data_update_add(image_.get(), part.x, part.y, part.w, part.h);
        }
    }

private:
    EvasObject image_;
    void *memory_ = nullptr;
    int w_ = 0;
    int h_ = 0;
};

}  // namespace

std::unique_ptr<Presenter> make_canvas_presenter(Ecore_Evas *window) {
    return std::make_unique<CanvasPresenter>(window);
}

}  // namespace host
