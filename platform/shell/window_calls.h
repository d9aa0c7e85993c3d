#pragma once

#include <Elementary.h>

// The toolkit's own calls behind those that are taken over at link time.
extern "C" {
Evas_Object *__real_elm_win_add(Evas_Object *parent, const char *name, Elm_Win_Type type);
void __real_elm_win_lower(Evas_Object *obj);
void __real_elm_win_title_set(Evas_Object *obj, const char *title);
int __real_elm_win_rotation_get(const Evas_Object *obj);
Eina_Bool __real_elm_win_wm_rotation_supported_get(const Evas_Object *obj);
void __real_elm_win_wm_rotation_available_rotations_set(Evas_Object *obj, const int *rotations,
                                                        unsigned int count);
void __real_elm_win_screen_size_get(const Evas_Object *obj, int *x, int *y, int *w, int *h);
}
