#!/bin/sh
# Shows the mail spooler at work: adds messages to a fresh spool, lists the jobs, and verifies them against their files.
# The spool is gone afterwards. Exit status: 0 when every step went well, else that of the worst step.
#   run.sh PROGRAM [FILE|FOLDER...]      without files: the messages in the folder "mail" beside this script
set -u

if [ $# -lt 1 ]; then
    echo "usage: run.sh PROGRAM [FILE|FOLDER...]" >&2
    exit 2
fi
lProgram=$1
shift
if [ $# -eq 0 ]; then
    set -- "$(dirname "$0")/mail"
fi

lFolder=$(mktemp -d) || exit 2
trap 'rm -rf "$lFolder"' EXIT
trap 'exit 130' HUP INT TERM
lSpool=$lFolder/spool
lWorst=0

step() {
    echo "\$ mail-spool $*"
    "$lProgram" "$@"
    lStatus=$?
    echo
    if [ "$lStatus" -gt "$lWorst" ]; then
        lWorst=$lStatus
    fi
}

step add --spool "$lSpool" -- "$@"
step list --spool "$lSpool"
step verify --spool "$lSpool" -- "$@"
exit "$lWorst"
