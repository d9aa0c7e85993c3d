#!/bin/sh
# Makes the media that the tests play: make-media.sh FOLDER MOVING-PICTURES
#
# Each picture carries its number as a bar code, described in tools/clips/frame_number.h. Numbers
# start at 0 in each clip; the clips run at 30 pictures a second where nothing else is said.
set -eu

recipe=$(realpath "$0")
folder=$1
pictures=$2
mkdir -p "$folder"
cd "$folder"

encode() { # encode WIDTH HEIGHT COUNT RATE OUTPUT-ARGUMENTS...
    width=$1 height=$2 count=$3 rate=$4
    shift 4
    "$pictures" "$width" "$height" "$count" |
        ffmpeg -nostdin -v error -y -f rawvideo -pix_fmt yuv420p -s "${width}x${height}" \
            -r "$rate" -i pipe:0 "$@"
}
h264='-c:v libx264 -preset veryfast -pix_fmt yuv420p -sc_threshold 0'
tone='-f lavfi -i sine=frequency=440:sample_rate=44100'
aac='-c:a aac -b:a 64k'

# What people play. Ten seconds, a keyframe each second.
encode 640 360 300 30 $tone -t 10 $h264 -g 30 $aac -movflags +faststart h264_aac.mp4
encode 320 180 120 30 $tone -t 4 -c:v libvpx-vp9 -deadline realtime -cpu-used 8 -g 30 \
    -c:a libopus vp9_opus.webm
encode 320 240 120 30 $tone -t 4 -c:v libtheora -q:v 6 -g 30 -c:a libvorbis theora_vorbis.ogg
ffmpeg -nostdin -v error -y $tone -t 4 $aac audio_only.m4a
encode 320 180 90 30 $h264 -g 30 video_only.mp4
encode 320 180 1 30 $h264 one_frame.mp4
encode 320 180 30 30 $tone -t 1 $h264 $aac one_second.mp4

# The same second in other orders: its index first, and no index but fragments.
ffmpeg -nostdin -v error -y -i one_second.mp4 -c copy -movflags +faststart indexed_first.mp4
ffmpeg -nostdin -v error -y -i one_second.mp4 -c copy \
    -movflags frag_keyframe+empty_moov+default_base_moof fragmented.mp4

# A minute, a keyframe each five seconds, to the millisecond: the step of the bezel depends on it.
encode 320 180 1800 30 $h264 -g 150 -keyint_min 150 -video_track_timescale 30000 minute.mp4
encode 320 180 1800 1800000/59999 $h264 -g 150 -keyint_min 150 -video_track_timescale 1800000 \
    short_minute.mp4

# Shapes: odd numbers of pixels, upright, upright by a note in the file, and pixels not square.
encode 321 181 60 30 -c:v libvpx-vp9 -deadline realtime -cpu-used 8 odd_size.webm
encode 180 320 60 30 $h264 portrait.mp4
encode 320 180 60 30 $h264 level.mp4
cp level.mp4 turned.mp4
matrix=$(($(LC_ALL=C grep -abo tkhd level.mp4 | cut -d: -f1) + 44))
printf '\0\0\0\0\0\1\0\0\0\0\0\0\377\377\0\0\0\0\0\0\0\0\0\0\0\264\0\0\0\0\0\0\100\0\0\0' |
    dd of=turned.mp4 bs=1 seek="$matrix" conv=notrunc status=none
encode 160 180 60 30 -vf setsar=2/1 $h264 wide_pixels.mp4

# Streams that nothing decodes: the codec's name is spoilt, its length kept.
LC_ALL=C sed 's/avc1/zzz1/g' one_second.mp4 >unknown_video.mp4
LC_ALL=C sed 's/mp4a/zz4a/g' one_second.mp4 >unknown_sound.mp4
LC_ALL=C sed 's/avc1/zzz1/g; s/mp4a/zz4a/g' one_second.mp4 >unknown_both.mp4

# Closed captions beside the pictures.
ffmpeg -nostdin -v error -i video_only.mp4 -c copy -bsf:v h264_mp4toannexb -f h264 - |
    python3 "$(dirname "$recipe")/add-captions.py" |
    ffmpeg -nostdin -v error -y -r 30 -f h264 -i - -c copy captions.mp4

# Faults. In the first, the index leads beyond the file.
at=$(($(LC_ALL=C grep -abo stco video_only.mp4 | cut -d: -f1) + 12))
cp video_only.mp4 lost_index.mp4
printf '\177\377\377\377' | dd of=lost_index.mp4 bs=1 seek="$at" conv=notrunc status=none
# Sound with more channels than there are places for loudspeakers, and with a rate beyond all
# numbers: both follow the name and the version.
ffmpeg -nostdin -v error -y $tone -t 1 -c:a libvorbis countless_channels.webm
at=$(($(LC_ALL=C grep -aboP '\x01vorbis' countless_channels.webm | head -n 1 | cut -d: -f1) + 11))
cp countless_channels.webm endless_rate.webm
printf '\136' | dd of=countless_channels.webm bs=1 seek="$at" conv=notrunc status=none
printf '\377\377\377\377' | dd of=endless_rate.webm bs=1 seek=$((at + 1)) conv=notrunc status=none
# Sound in as many channels as GStreamer can't mix any more. With 24 bits the header is of the kind
# that may tell so many.
ffmpeg -nostdin -v error -y -f s24le -ar 8000 -ac 64 -t 0.5 -i /dev/zero -c copy many_channels.wav
: >empty.mp4
printf 'This is a text.\nIt is no video.\n' >text.mp4
head -c 65536 /dev/zero >zeros.mp4
head -c 20000 video_only.mp4 >no_index.mp4
head -c 200000 h264_aac.mp4 >cut_off.mp4

cp one_second.mp4 'naïve %20 видео & 动画.mp4'
