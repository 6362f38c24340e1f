"""A stand-in for an AppImage: an executable file that unpacks itself into a folder below $TMPDIR and becomes the
program in there, with the variables that an AppImage sets. The folder stays."""
import io
import os
import tarfile

START = """#!/bin/sh
if [ "$1" = --appimage-extract ]; then
    mkdir -p squashfs-root && tail -n +LINES "$0" | tar -x -C squashfs-root "$2"
    exit
fi
folder=$(mktemp -d "${TMPDIR:-/tmp}/single-file.XXXXXX")
tail -n +LINES "$0" | tar -x -C "$folder" || exit 1
export APPIMAGE="$(realpath "$0")" APPDIR="$folder" ARGV0="$0" OWD="$PWD"
exec "$folder/usr/bin/ravlin" "$@"
"""


def write_single_file(path, program, settings):
    """Packs `program` and its update settings (a text) into `path`."""
    packed = io.BytesIO()
    with tarfile.open(fileobj=packed, mode="w") as archive:
        archive.add(program, "usr/bin/ravlin")
        data = settings.encode()
        entry = tarfile.TarInfo("usr/share/ravlin/update.ini")
        entry.size, entry.mode = len(data), 0o644
        archive.addfile(entry, io.BytesIO(data))
    start = START.replace("LINES", str(START.count("\n") + 1))
    with open(path, "wb") as file:
        file.write(start.encode() + packed.getvalue())
    os.chmod(path, 0o755)
