# Writes the names that the headers given declare for export, one a line, as `nm -C` writes them but without their
# parameters: the functions with ORVU_EXPORT, and of each class with it the functions and constants that are public or
# protected, its virtual table and its type information. What a header defines itself is not among them, nor what says
# ORVU_LOCAL.

function say(name) { print scope name }

# Takes the labels off the statement so far, and keeps the last one.
function readLabels()
{
    gsub(/[ \t]+/, " ", code)
    sub(/^ /, "", code)
    while (match(code, /^(public|protected|private) ?: ?/)) {
        access[depth] = substr(code, 1, index(code, ":") - 1)
        code = substr(code, RLENGTH + 1)
    }
}

function isOffered() { return kind[depth] == "class" && access[depth] != "private" && code !~ /ORVU_LOCAL/ }

function sayTable()
{
    if (hasTable[depth]) return
    hasTable[depth] = 1
    print "vtable for " name[depth]
    print "typeinfo for " name[depth]
    print "typeinfo name for " name[depth]
}

# Says what the statement declares, if that is defined elsewhere.
function endStatement()
{
    readLabels()
    if (code ~ /^(using|friend|typedef|template)/ || code ~ /= ?(default|delete)$/) return
    if (isOffered() && code ~ /(^| )(virtual|override)( |$)/) sayTable()
    if (code ~ /= ?0$/) return
    if (isOffered() || kind[depth] == "namespace" && code ~ /ORVU_EXPORT/) {
        isConstant = code ~ /^static const / && code !~ /[(=]/
        if (code !~ /\(/ && !isConstant) return
        sub(/ ?\(.*/, "", code)
        sub(/.*[ *&]/, "", code)
        say(code)
    }
}

function openBrace()
{
    readLabels()
    if (isOffered() && code ~ /(^| )(virtual|override)( |$)/) sayTable()
    ++depth
    kind[depth] = "other"
    outer[depth] = scope
    if (code ~ /^namespace /) {
        kind[depth] = "namespace"
        scope = scope substr(code, 11) "::"
        sub(/ ?::$/, "::", scope)
    } else if (code ~ /^extern "C"/) {
        kind[depth] = "namespace"
        scope = ""
    } else if (code ~ /^(class|struct) ORVU_EXPORT /) {
        split(code, words, " ")
        kind[depth] = "class"
        access[depth] = words[1] == "class" ? "private" : "public"
        hasTable[depth] = 0
        name[depth] = scope words[3]
        scope = name[depth] "::"
    }
}

function closeBrace()
{
    scope = outer[depth]
    --depth
}

FNR == 1 { depth = 0; scope = code = "" }
/^ *#/ { next }
{
    sub(/\/\/.*/, "")
    code = code " "
    for (i = 1; i <= length($0); ++i) {
        c = substr($0, i, 1)
        if (c !~ /[;{}]/) { code = code c; continue }
        if (c == ";") endStatement()
        if (c == "{") openBrace()
        if (c == "}") closeBrace()
        code = ""
    }
}
