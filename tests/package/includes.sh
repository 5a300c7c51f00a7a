#!/bin/sh
# includes.sh SOURCE_FOLDER: whether every file of the library includes what stands below it alone: the floors, log/ and
# codecs/, messages/core/, the families in messages/, transport/, listener/; above them the facade and Typed.h. A family
# includes another one's shared records at most.
set -eu
folder=$1
cd "$folder"

shared='orvu/(BinaryData|Codecs|Services)\.h'

# above_or_beside: of lines "FILE HEADER", those where the file must not include the header.
above_or_beside()
{
    { find messages transport listener -name '*.cpp' | sed 's/^/source /'; cat; } | awk -v shared="^$shared\$" '
        # The family that a public header belongs to: that of the source of its name.
        $1 == "source" { family[name($2)] = folder($2); next }

        function name(path) { sub(/.*\//, "", path); sub(/\.[a-z]+$/, "", path); return path }
        function folder(path) { sub(/\/[^\/]*$/, "", path); return path }
        function room(path) { return path ~ /orvu\// ? family[name(path)] : folder(path) }
        function floor(path,    at) {
            if (path ~ /orvu\/(OrvuRestInterface|Orvu|Typed)\.h$|orvu\/typed\//) return 9
            if (path == "transport/OrvuRestInterface.cpp") return 9
            at = room(path)
            if (at == "log" || at == "codecs") return 1
            if (at == "messages/core") return 2
            if (at ~ /^messages\//) return 3
            if (at == "transport") return 4
            if (at == "listener") return 5
            return 0  # a public header that every floor may use
        }

        { above = floor($2) > floor($1) && (floor($1) > 0 || floor($2) == 9) }
        { beside = floor($1) == 3 && floor($2) == 3 && room($1) != room($2) && $2 !~ shared }
        $1 == "messages/core/Catalogue.cpp" && floor($2) == 3 { next }  # it alone knows every message
        $0 == "include/orvu/Files.h orvu/EventInformation.h" { next }   # applications may rely on it
        above || beside'
}

# The search itself must find what there is to find, and nothing else.
finds() { [ -n "$(echo "$*" | above_or_beside)" ] || { echo "It does not find: $*"; exit 1; }; }
allows() { [ -z "$(echo "$*" | above_or_beside)" ] || { echo "It finds: $*"; exit 1; }; }
finds transport/Workers.cpp orvu/OrvuRestInterface.h
finds messages/core/Catalogue.cpp orvu/Orvu.h
finds listener/Delivery.cpp orvu/typed/Client.h
finds include/orvu/Results.h orvu/OrvuRestInterface.h
finds include/orvu/Version.h orvu/OrvuRestInterface.h
finds log/Log.cpp transport/Socket.h
finds messages/core/Json.h orvu/Services.h
finds messages/ginga/Files.cpp messages/platform/Vocabularies.h
finds messages/pairing/PairingScreens.cpp orvu/EventInformation.h
finds include/orvu/Ncl.h orvu/ServiceComponents.h
finds transport/Socket.h listener/Delivery.h
allows include/orvu/ClientApplications.h orvu/Services.h
allows transport/OrvuRestInterface.cpp orvu/OrvuRestInterface.h
allows messages/services/EventGroups.cpp orvu/EventDescriptors.h
allows listener/Delivery.cpp transport/Socket.h

wrong=$(grep -rE '^ *# *include "' codecs listener log messages transport include |
            sed -E 's/^([^:]*):[^"]*"([^"]*)".*/\1 \2/' | above_or_beside)
[ -z "$wrong" ] || { printf 'A file that includes one of a floor above, or of another family:\n%s\n' "$wrong"; exit 1; }
