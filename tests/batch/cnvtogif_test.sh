#!/bin/sh
# The conversion script ($1) converts the bitmaps its pattern names, no
# others, and names them in the log it writes when done. 77: skipped.
command -v mogrify >/dev/null || { echo "ImageMagick is not installed"; exit 77; }
dir=$(mktemp -d) && trap 'rm -rf "$dir"' EXIT
convert -size 3x2 xc:gray "$dir/ACMEprc.bmp" && cp "$dir/ACMEprc.bmp" "$dir/OTHERprc.bmp" &&
    "$1" -r "$dir/ACME*.bmp" -l "$dir/cnvtogif.log" || exit 1
[ "$(head -c 4 "$dir/ACMEprc.gif")" = GIF8 ] || { echo "no GIF written"; exit 1; }
[ ! -e "$dir/OTHERprc.gif" ] || { echo "a bitmap outside the pattern was converted"; exit 1; }
grep -q "ACMEprc.bmp" "$dir/cnvtogif.log" || { echo "the log does not name the bitmap"; exit 1; }
