#!/bin/sh
# Shows the mail spooler at work: adds messages to a fresh spool, some hours of the day closed, lists the jobs, verifies
# them against their files, and plans their delivery.
# A step that fails is the last one. The spool is gone afterwards. Exit status: that of the last step.
#   run.sh PROGRAM [FILE|FOLDER...]      without files: the messages in the folder "mail" beside this script
set -u

if [ $# -lt 1 ]; then
    echo "usage: run.sh PROGRAM [FILE|FOLDER...]" >&2
    exit 2
fi
lProgram=$1
shift
lWindows="--window 22-6"
if [ $# -eq 0 ]; then
    # These messages go by routes that are known here, so each can have hours of its own.
    lWindows="--window north.example=22-6 --window south.example=12-13 --window nord.example=0-23"
    set -- "$(dirname "$0")/mail"
fi

lFolder=$(mktemp -d) || exit 2
trap 'rm -rf "$lFolder"' EXIT
trap 'exit 130' HUP INT TERM
lSpool=$lFolder/spool

step() {
    echo "\$ mail-spool $*"
    "$lProgram" "$@" || exit
    echo
}

# shellcheck disable=SC2086 # several words
step add --spool "$lSpool" $lWindows -- "$@"
step list --spool "$lSpool"
step verify --spool "$lSpool" -- "$@"
step plan --spool "$lSpool"
