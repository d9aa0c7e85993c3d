#pragma once

#include <Evas.h>

#include <memory>

namespace host {

struct EvasObjectDelete {
    void operator()(Evas_Object *object) const { evas_object_del(object); }
};

/// An object of the shell's own canvas.
using EvasObject = std::unique_ptr<Evas_Object, EvasObjectDelete>;

}  // namespace host
