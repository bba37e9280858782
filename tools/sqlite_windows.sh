#!/usr/bin/env bash
# Builds SQLite for Windows from Debian's source package, once, into build/sqlite/windows (sqlite3.h, libsqlite3.a):
#   tools/sqlite_windows.sh
# The package is fetched with apt's own checks of signatures, over lists of our own: the machine's settings stay as they
# are, and no rights of the administrator are needed.
set -euo pipefail
cd "$(dirname "$0")/.."
out=$PWD/build/sqlite/windows
[ -f "$out/libsqlite3.a" ] && exit 0

work=$PWD/build/sqlite/work
rm -rf "$work"
mkdir -p "$work/lists/partial" "$work/archives/partial" "$out"

# Every place where this machine finds packages of the distribution may have the sources as well.
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
apt-get indextargets --format "deb-src [signed-by=$keyring] \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" 'Created-By: Packages' 'Origin: Debian' |
    sort -u >"$work/sources.list"
apt=(-qq -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=/dev/null -o "Dir::State::Lists=$work/lists"
    -o "Dir::Cache=$work/archives" -o APT::Sandbox::User="$(id -un)")
echo "Fetching the sources of SQLite" >&2
apt-get "${apt[@]}" update
(cd "$work" && apt-get "${apt[@]}" source sqlite3 >/dev/null 2>"$work/source.log") || { cat "$work/source.log" >&2; exit 1; }

echo "Building SQLite for Windows" >&2
cd "$work"/sqlite3-*/
# The script that joins the sources into one file, and the C compiler it needs for its own tools, run on this machine.
env -u CC ./configure --disable-tcl --disable-readline >"$work/configure.log" 2>&1
make sqlite3.c sqlite3.h >"$work/make.log" 2>&1 || { tail -n 40 "$work/make.log" >&2; exit 1; }
x86_64-w64-mingw32-gcc-posix -O2 -c -o "$work/sqlite3.o" sqlite3.c -DSQLITE_ENABLE_COLUMN_METADATA -DSQLITE_THREADSAFE=1 \
    -DSQLITE_DEFAULT_MEMSTATUS=0 -DSQLITE_OMIT_LOAD_EXTENSION -DSQLITE_OMIT_DEPRECATED -DSQLITE_TEMP_STORE=1
cp sqlite3.h "$out/"
x86_64-w64-mingw32-ar rcs "$out/libsqlite3.a.new" "$work/sqlite3.o"
mv "$out/libsqlite3.a.new" "$out/libsqlite3.a"
rm -rf "$work"
