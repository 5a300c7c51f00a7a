#!/bin/sh
# reference.sh HTML_FOLDER: whether the API reference opens with a table of the messages, and lists each reader of a
# message once.
set -eu
cd "$1"

# By two names of families and two of messages.
for text in 'Service components' orvu/PairingScreens.h classOrvu_1_1ServiceList.html classOrvu_1_1PinScreen.html; do
    grep -qF "$text" index.html || { echo "The first page lacks $text"; exit 1; }
done

# own_readers CLASS: how many functions named deserialize the page of the class itself describes.
own_readers()
{
    grep -cE '<td class="memname">.* Orvu::[A-Za-z]+::deserialize ' "classOrvu_1_1$1.html"
}

[ "$(own_readers Serializable)" = 2 ] || { echo "The base does not describe its two readers"; exit 1; }
[ "$(own_readers Service)" = 1 ] || { echo "A Service does not describe its one reader alone"; exit 1; }
crowded=$(grep -lE 'deserialize\(\) <span class="overload">\[[0-9]+/[3-9]\]' class*.html || true)
[ -z "$crowded" ] || { printf 'Three readers or more are described in:\n%s\n' "$crowded"; exit 1; }
