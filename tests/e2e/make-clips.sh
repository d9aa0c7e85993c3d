#!/bin/sh
# Makes the clips of the end-to-end tests: make-clips.sh FOLDER MOVING-PICTURES
set -eu

folder=$1
pictures=$2
mkdir -p "$folder"

clip() { # clip NAME SECONDS FRAMES-A-SECOND
    "$pictures" 640 360 $(($2 * $3)) |
        ffmpeg -nostdin -v error -y -f rawvideo -pix_fmt yuv420p -s 640x360 -r "$3" -i pipe:0 \
            -f lavfi -i sine=frequency=440:sample_rate=44100 -t "$2" -c:v libx264 \
            -preset ultrafast -pix_fmt yuv420p -g "$3" -c:a aac -b:a 64k -movflags +faststart \
            "$folder/$1"
}

clip e2e_short.mp4 4 30
clip e2e_long.mp4 130 30
clip e2e_smooth.mp4 30 60

# Nothing to be seen.
ffmpeg -nostdin -v error -y -f lavfi -i sine=frequency=440:sample_rate=44100 -t 60 -c:a aac -b:a 64k \
    "$folder/e2e_sound.m4a"
