#!/bin/sh
# Runs a test program as an unprivileged user. The superuser passes every
# permission check, so tests of read-only files skip themselves under it;
# this runs them where they mean something. Exits 77 (skipped) when the
# process is not the superuser (the normal run covered them) or cannot
# switch to a user that may run the program.
program=$1
shift
[ "$(id -u)" = 0 ] || exit 77
command -v setpriv >/dev/null 2>&1 || exit 77
as_nobody() {
    setpriv --reuid=65534 --regid=65534 --clear-groups "$@"
}
as_nobody test -x "$program" || exit 77
as_nobody env TMPDIR=/tmp "$program" "$@"
