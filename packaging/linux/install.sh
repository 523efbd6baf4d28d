#!/bin/sh
# Copies Varnoth from this folder to another one, in which menus, file managers and the shell find it. A list of the
# copied files is kept there, for the removal.
# Usage: install.sh [--remove] [FOLDER]
#   FOLDER  ~/.local if none is named; /usr/local for all users, as root
set -eu

action=install
if [ "${1:-}" = --remove ]; then
    action=remove
    shift
fi
target=${1:-$HOME/.local}
case $#:$target in
# Desktop entries have no simple way to write these characters.
*[\"\`\$\\\&\|]*) wrong=yes ;;
[01]:/*) wrong= ;;
*) wrong=yes ;;
esac
if [ "$wrong" ]; then
    echo "usage: install.sh [--remove] [FOLDER], the full path of a folder, without any of \"\`\$\\&|" >&2
    exit 64
fi
list=share/varnoth/installed-files

# Desktops read these caches instead of the files.
update_caches() {
    if [ -d "$target/share/mime/packages" ] && command -v update-mime-database >/dev/null; then
        update-mime-database "$target/share/mime"
    fi
    if [ -d "$target/share/applications" ] && command -v update-desktop-database >/dev/null; then
        update-desktop-database -q "$target/share/applications"
    fi
    if [ -e "$target/share/icons/hicolor/icon-theme.cache" ] && command -v gtk-update-icon-cache >/dev/null; then
        gtk-update-icon-cache -q -t "$target/share/icons/hicolor"
    fi
}

if [ $action = remove ]; then
    if [ ! -e "$target/$list" ]; then
        echo "Varnoth is not installed in $target." >&2
        exit 1
    fi
    # Folders come after the files in them, and stay if other programs use them.
    while IFS= read -r path; do
        if [ -d "$target/$path" ]; then
            rmdir "$target/$path" 2>/dev/null || continue
        else
            rm -f "$target/$path"
        fi
        echo "$target/$path"
    done <"$target/$list"
    rm -f "$target/$list"
    rmdir "$target/share/varnoth" 2>/dev/null || :
    update_caches
    exit
fi

cd "$(dirname "$0")"
if [ -e "$target/$list" ]; then
    echo "Varnoth is installed in $target already. Remove that first: install.sh --remove $target" >&2
    exit 1
fi
mkdir -p "$target/share/varnoth"
find bin share -type d | sort -r >"$target/$list.folders"
find bin share ! -type d | sort >"$target/$list"
# Note the folders that this script creates; in the reverse order, each comes after those in it.
while IFS= read -r path; do
    [ -d "$target/$path" ] || echo "$path"
done <"$target/$list.folders" >>"$target/$list"
rm "$target/$list.folders"

while IFS= read -r path; do
    [ ! -d "$path" ] || continue
    mkdir -p "$target/$(dirname "$path")"
    case $path in
    *.desktop | *.thumbnailer)
        # The folder may not be in the path.
        sed -e "s|^Exec=\([a-z-]*\)|Exec=\"$target/bin/\1\"|" -e "s|^TryExec=|TryExec=$target/bin/|" "$path" \
            >"$target/$path"
        ;;
    *) cp "$path" "$target/$path" ;;
    esac
    echo "$target/$path"
done <"$target/$list"
update_caches
