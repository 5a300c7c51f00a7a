#!/usr/bin/env bash
# publisher.sh FOLDER PROGRAM: lets the publisher PROGRAM in FOLDER push on the port ORVU_PORT, and waits for the name
# of a service.
set -eu
cd "$1"

exec {output}< <(exec "./$2" "$ORVU_PORT")
publisher=$!
trap 'kill $publisher' EXIT
read -r line <&"$output"
[ "$line" = "pushing on port $ORVU_PORT" ]

exec {socket}<>"/dev/tcp/127.0.0.1/$ORVU_PORT"
while IFS= read -r line <&"$socket"; do
    [[ $line != *'"serviceName":'* ]] || break
done
echo "$line"
[[ $line == *'"Canal Um"'* ]]
