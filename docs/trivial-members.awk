# Doxygen's input filter. Constructors that take the fields, assignments and functions of one line that get or set a
# field say all with their names. This gives those without a comment an empty one, so that a missing description of a
# class, a field or another function is an error.

function isPlain(line)
{
    return line ~ / (get|is)[A-Z][A-Za-z]*\(\) const \{ return [a-zA-Z_]+; \}$/ ||
           line ~ / void set[A-Z][A-Za-z]*\([^()*]*\) \{ [a-zA-Z_]+ = [^;]+; \}$/ ||
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

# Every message has one; the page of the base says what it is.
previous !~ /^ *\/\/\// && /^    static constexpr DataType kDataType = [A-Za-z]+;$/ {
    previous = $0
    print $0 "  ///< The type of this class: see Serializable."
    next
}

previous !~ /^ *\/\/\// && !/\/\/\/</ && /^    / && isPlain($0) {
    previous = $0
    print $0 "  ///< &zwj;"
    next
}

{ print; previous = $0 }
