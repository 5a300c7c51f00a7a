# Doxygen's input filter. Members that say all with their names need no comment of their own: fields, what gets, sets, adds or
# tells a value, constructors that take the fields, assignments. This gives those that have none an empty one, so that only
# a missing description of a class or of another function is an error. What takes a pointer has an owner to tell of.

function isField(line)
{
    return line ~ /^ +[A-Za-z_:][A-Za-z0-9_:<>,* ]* [*&]?[A-Za-z_]+( = [^;()]+)?; *(\/\/.*)?$/ &&
           line !~ /(^| )(using|friend|class|return) /
}

function isPlain(line)
{
    return line ~ / (get|is)[A-Z][A-Za-z]*\([^()*]*\)( const)?( \{ return [a-zA-Z_]+; \}|;)$/ ||
           line ~ / void (set|add)[A-Z][A-Za-z]*\([^()*]*\)( \{ [a-zA-Z_]+ = [^;]+; \}|;)$/ ||
           line ~ / operator=\(const [A-Za-z]+&[a-z ]*\)( \{ return \*this; \}| = default;)$/ ||
           line ~ ("^    (explicit )?" owner "\\([^()]*\\)(;| = default;| : .*\\{\\})$")
}

# Doxygen would copy the base's functions into the class and list them beside those that override them. An empty line
# stays, so that the others keep their numbers.
/^ +using Serializable::deserialize;/ { print ""; previous = ""; next }

/^(class|struct) / {
    owner = $0
    sub(/( final)?( :.*|;| \{)$/, "", owner)
    sub(/.* /, "", owner)
}

previous !~ /^ *\/\/\// && !/\/\/\/</ && /^    / && (isField($0) || isPlain($0)) {
    previous = $0
    sub(/ *\/\/.*/, "")
    print $0 "  ///< &zwj;"
    next
}

{ print; previous = $0 }
