/**
 * @file storage.h
 * @brief Where the user's media lie.
 *
 * Thread: any. Operations return STORAGE_ERROR_NONE (0) or a negative error of storage_error_e; on
 * failure, what a result would go to is left alone. Texts given out are heap copies that the caller
 * frees with free().
 */
#ifndef STORAGE_H
#define STORAGE_H

#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    STORAGE_ERROR_NONE = 0,
    STORAGE_ERROR_INVALID_PARAMETER = -EINVAL,
    STORAGE_ERROR_OUT_OF_MEMORY = -ENOMEM,
    STORAGE_ERROR_NOT_SUPPORTED = -0x01140000 | 0x12
} storage_error_e;

typedef enum {
    STORAGE_DIRECTORY_IMAGES = 0,
    STORAGE_DIRECTORY_SOUNDS = 1,
    STORAGE_DIRECTORY_VIDEOS = 2,
    STORAGE_DIRECTORY_CAMERA = 3,
    STORAGE_DIRECTORY_DOWNLOADS = 4,
    STORAGE_DIRECTORY_MUSIC = 5,
    STORAGE_DIRECTORY_DOCUMENTS = 6,
    STORAGE_DIRECTORY_OTHERS = 7,
    STORAGE_DIRECTORY_SYSTEM_RINGTONES = 8
} storage_directory_e;

/** The one storage that every machine has. */
#define STORAGE_INTERNAL 0

/**
 * @param storage_id  STORAGE_INTERNAL
 * @param[out] path   the folder above all of the user's media, whether or not it exists, without a
 *                    "/" at its end
 * @return NOT_SUPPORTED for another storage, INVALID_PARAMETER for a null place
 */
int storage_get_root_directory(int storage_id, char **path);
/**
 * As storage_get_root_directory(), for one kind of media.
 * @return INVALID_PARAMETER also for none of storage_directory_e
 */
int storage_get_directory(int storage_id, storage_directory_e type, char **path);

#ifdef __cplusplus
}
#endif
#endif
