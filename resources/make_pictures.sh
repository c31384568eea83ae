#!/usr/bin/env bash
# Renders the pictures of the program from their SVG sources. Only needed when a source changes; what it writes is
# committed. Needs Debian's librsvg2-bin, imagemagick and fonts-urw-base35.
set -euo pipefail

cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p pictures

# render SOURCE WIDTH HEIGHT OUTPUT
render() {
    rsvg-convert "svg/$1.svg" --width "$2" --height "$3" --format png --output "$4"
}

# write_xpm NAME PNG: pixels are opaque or not there at all, as the format knows nothing in between.
write_xpm() {
    local name=$1 size
    size=$(identify -format '%w %h' "$2")
    convert "$2" -channel A -threshold 50% +channel -depth 8 rgba:- | od -An -v -tu1 -w4 | awk -v name="$name" -v size="$size" '
        BEGIN {
            split(size, extent, " ")
            characters = " .+@#$%&*=-;:>,<1234567890abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
            fixed["#000000"] = "black"
            fixed["#FFFFFF"] = "white"
        }
        {
            colour = $4 == 0 ? "None" : sprintf("#%02X%02X%02X", $1, $2, $3)
            if (colour in fixed)
                colour = fixed[colour]
            if (!(colour in character)) {
                if (count == length(characters))
                    exit failed = 1
                character[colour] = substr(characters, ++count, 1)
                colours[count] = colour
            }
            rows[int((NR - 1) / extent[1])] = rows[int((NR - 1) / extent[1])] character[colour]
        }
        END {
            if (failed)
                exit failed
            printf "/* XPM */\nstatic const char* const %s_xpm[] = {\n", name
            printf "\"%d %d %d 1\",\n", extent[1], extent[2], count
            for (i = 1; i <= count; ++i)
                printf "\"%s c %s\",\n", character[colours[i]], colours[i]
            for (y = 0; y < extent[2]; ++y)
                printf "\"%s\"%s\n", rows[y], y + 1 < extent[2] ? "," : "};"
        }' >"pictures/$name.xpm"
}

# grey PICTURE OUTPUT: the disabled form, between what is legible on light and on dark themes.
grey() {
    convert "$1" -channel RGB -grayscale Rec601Luma +level 42%,78% +channel -strip "$2"
}

# A picture and its disabled form, and both for displays of scale 2.
command_picture() {
    local name=$1 width=$2 height=$3
    render "$name" "$width" "$height" "$work/$name.png"
    write_xpm "$name" "$work/$name.png"
    grey "$work/$name.png" "$work/grey.png"
    write_xpm "${name}_disabled" "$work/grey.png"
    render "$name" $((2 * width)) $((2 * height)) "pictures/$name-2x.png"
    grey "pictures/$name-2x.png" "PNG32:pictures/${name}_disabled-2x.png"
}

for name in new create_hdr save; do
    command_picture "$name" 26 26
done
for name in add remove; do
    command_picture "$name" 14 14
done
for name in move_up move_down; do
    command_picture "$name" 12 13
done

for name in hand_open hand_grip; do
    render "$name" 32 32 "$work/$name.png"
    write_xpm "$name" "$work/$name.png"
done

# The small sizes are drawn on a grid of their own.
for size in 16 24 32 48; do
    render "icon-$size" "$size" "$size" "pictures/icon-$size.png"
done
for size in 64 128 256; do
    render icon "$size" "$size" "pictures/icon-$size.png"
done

render splash 481 294 "$work/splash.png"
# The quantiser takes fewer colours than it may; asked for 256 at this depth it ends at the 236 that are wanted.
convert "$work/splash.png" -alpha off -quantize sRGB -treedepth 7 -dither FloydSteinberg -colors 256 -strip \
    "PNG8:pictures/splash.png"
[ "$(identify -format %k pictures/splash.png)" = 236 ] || {
    echo "The splash picture has another number of colours: choose another depth." >&2
    exit 1
}

render splash 962 588 "$work/splash-2x.png"
convert "$work/splash-2x.png" -alpha off -dither FloydSteinberg -colors 256 -strip "PNG8:pictures/splash-2x.png"

# A test compares these, so that no source changes without its pictures.
sha256sum make_pictures.sh svg/*.svg pictures/*.xpm pictures/*.png >SHA256SUMS
