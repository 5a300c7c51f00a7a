#!/usr/bin/env bash
# listener.sh FOLDER PROGRAM: lets the publisher in FOLDER push on the port ORVU_PORT, and waits until the listener
# PROGRAM prints the name of a service.
set -eu
cd "$1"

exec {output}< <(exec ./publisher "$ORVU_PORT")
publisher=$!
trap 'kill $publisher' EXIT
read -r line <&"$output"
[ "$line" = "pushing on port $ORVU_PORT" ]

exec {heard}< <(exec "./$2" "$ORVU_PORT")
listener=$!
trap 'kill $publisher $listener' EXIT
while IFS= read -r line <&"$heard"; do
    [[ $line != *"Canal Um"* ]] || exit 0
done
exit 1
