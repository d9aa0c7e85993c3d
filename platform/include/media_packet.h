/**
 * @file media_packet.h
 * @brief One decoded picture, as player_set_media_packet_video_frame_decoded_cb() hands it out.
 *
 * Thread: the one of the callback, for as long as it runs; a packet is gone afterwards.
 * Every operation returns 0, or -EINVAL when an argument is null.
 */
#ifndef MEDIA_PACKET_H
#define MEDIA_PACKET_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct media_packet_s *media_packet_h;

/** @param[out] pts  nanoseconds from the start of the medium; UINT64_MAX when it isn't known */
int media_packet_get_pts(media_packet_h packet, uint64_t *pts);
/** @param[out] size  bytes of the pixels, in the decoder's own format */
int media_packet_get_buffer_size(media_packet_h packet, uint64_t *size);
/** @param[out] data  the pixels; not to be written */
int media_packet_get_buffer_data_ptr(media_packet_h packet, void **data);

#ifdef __cplusplus
}
#endif
#endif
