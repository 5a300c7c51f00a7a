# Doxygen's input filter. Members that say all with their names (fields, their accessors, constructors that take the fields,
# assignments) need no comment of their own: this gives those that have none an empty one, so that only a missing
# description of a class or of another function is an error.
function mark(line) { print line "  ///< &zwj;" }

/^class |^struct / {
    match($0, /[A-Za-z_]+( final)?( :|;| \{)/)
    owner = substr($0, RSTART, RLENGTH)
    sub(/( final)?( :|;| \{)$/, "", owner)
}

previous ~ /^ *\/\/\// || /\/\/\/</ || !/^    / { print; previous = $0; next }

/^ +[A-Za-z_:][A-Za-z0-9_:<>,* ]* [*&]?[A-Za-z_]+( = [^;()]+)?; *(\/\/.*)?$/ && !/using |friend |class |return / { sub(/ *\/\/.*/, ""); mark($0); previous = $0; next }
/ (get|is)[A-Z][A-Za-z]*\(\) const( \{ return [a-zA-Z_]+; \}|;)$/ { mark($0); previous = $0; next }
/ void set[A-Z][A-Za-z]*\([^()]*\)( \{ [a-zA-Z_]+ = [^;]+; \}|;)$/ { mark($0); previous = $0; next }
/ operator=\(const [A-Za-z]+&\) \{ return \*this; \}$/ { mark($0); previous = $0; next }
$0 ~ "^    (explicit )?" owner "\\([^()]*\\)(;| : .*\\{\\})$" { mark($0); previous = $0; next }

{ print; previous = $0 }
