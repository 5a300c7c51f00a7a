#!/bin/sh
# exchange.sh FOLDER [PREFIX...]: lets the client in FOLDER ask the receiver there, on the port ORVU_PORT; then those
# whose names have the prefixes.
set -eu
cd "$1"
shift

exchange()
{
    rm -f ready
    mkfifo ready
    "./$1receiver" "$ORVU_PORT" >ready &
    receiver=$!
    trap 'kill $receiver' EXIT
    read -r line <ready
    [ "$line" = "listening" ]

    answer=$("./$1client" "$ORVU_PORT")
    echo "$answer"
    [ "$answer" = "1.2.01 Canal Um" ]
    kill $receiver
    wait $receiver || true
    trap - EXIT
}

exchange ""
for prefix; do
    exchange "$prefix"
done
