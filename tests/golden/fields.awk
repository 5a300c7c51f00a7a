# Writes rows for what the headers declare.
# - each public field of a message, with its description: FIELD(class, field, "text")
# - each serialize(): WRITER(class, "text")
# - each function that sets or shows a field above it: SETTER(class, field, function), GETTER(class, field, function)
# - each enumerator: ENUMERATOR(enumeration, enumerator, "text")
# - each enumeration with two functions for its words: WORDS(enumeration, function to a word, function from a word)

function quoted(text)
{
    gsub(/\\/, "\\\\", text)
    gsub(/"/, "\\\"", text)
    gsub(/^ +| +$/, "", text)
    return "\"" text "\""
}

# Writes the row that waits for the last line of its description.
function flush()
{
    if (row != "") print row ", " quoted(text) ")"
    row = ""
    text = ""
}

function comment(line)
{
    if (line !~ /\/\/\/</) return ""
    sub(/^.*\/\/\/< ?/, "", line)
    return line
}

# The name that a declaration of a field gives.
function nameIn(code)
{
    sub(/ = .*/, "", code)
    sub(/;.*/, "", code)
    sub(/\[[0-9]+\]$/, "", code)
    sub(/^.*[ *]/, "", code)
    return code
}

# Writes a row for a function of this name, which begins with "set", "get" or "is".
function accessor(kind, name,   field)
{
    field = name
    sub(/^(set|get|is)/, "", field)
    field = tolower(substr(field, 1, 1)) substr(field, 2)
    if ((owner, field) in isField) print kind "(" owner ", " field ", " name ")"
}

/^class ORVU_EXPORT / { holder = $3 }
/^    static const char\* [A-Za-z]+\([A-Z][A-Za-z]+ [a-z]+\);/ {
    split($4, parts, "(")
    toWord[parts[2]] = holder "::" parts[1]
}
/^    static [A-Z][A-Za-z]+ [A-Za-z]+\(std::string [a-z]+\);/ {
    split($3, parts, "(")
    toValue[$2] = holder "::" parts[1]
}

/^class ORVU_EXPORT .* : public Serializable/ { owner = $3; isMessage = 1; next }
/^enum / { owner = $2; isEnumeration = 1; next }
/^};/ || /^(private|protected):/ { flush(); isMessage = isEnumeration = 0; above = code = "" }

/^ *\/\/\/</ { text = text " " comment($0); next }
/^    \/\/\/ / { flush(); sub(/^ *\/\/\/ /, ""); above = above " " $0; next }

isEnumeration && /^    [A-Za-z0-9]+ = [0-9]+,/ {
    flush()
    row = "ENUMERATOR(" owner ", " $1
    text = comment($0)
    next
}

isMessage && /^    char\* serialize\(\) override;/ {
    flush()
    row = "WRITER(" owner
    text = above
    above = ""
    next
}

isMessage {
    flush()
    line = $0
    sub(/ *\/\/.*/, "", line)
    code = code line
    if (code ~ /;$/ && code !~ /[(){}]|^ *(static|using|friend|virtual) / || code ~ /^[^()]* = \{\};$/) {
        isField[owner, nameIn(code)] = 1
        row = "FIELD(" owner ", " nameIn(code)
        text = above " " comment($0)
    }
    if (match(line, /set[A-Z][A-Za-z0-9]*\([^,)*]+\)/)) {
        accessor("SETTER", substr(line, RSTART, index(substr(line, RSTART), "(") - 1))
    }
    if (match(line, /(get|is)[A-Z][A-Za-z0-9]*\(\) const/)) accessor("GETTER", substr(line, RSTART, RLENGTH - 8))
    if (code ~ /[;}{:]$/ || line ~ /^ *$/) code = above = ""
}

END {
    flush()
    for (enumeration in toWord) {
        if (!(enumeration in toValue)) continue
        print "WORDS(" enumeration ", " toWord[enumeration] ", " toValue[enumeration] ")"
    }
}
