#!/bin/sh
# exchange.sh FOLDER: lets the client in FOLDER ask the receiver there, on the port ORVU_PORT.
set -eu
cd "$1"

rm -f ready
mkfifo ready
./receiver "$ORVU_PORT" >ready &
receiver=$!
trap 'kill $receiver' EXIT
read -r line <ready
[ "$line" = "listening" ]

answer=$(./client "$ORVU_PORT")
echo "$answer"
[ "$answer" = "1.2.01 Canal Um" ]
