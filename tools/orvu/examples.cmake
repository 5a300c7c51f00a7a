# cmake -DSCHEMAS=FOLDER -DOUTPUT=FILE -P examples.cmake: writes the examples of each schema, an array, as a C++ table.
file(GLOB schemas "${SCHEMAS}/*.schema.json")
set(rows "")
foreach(file IN LISTS schemas)
    file(READ "${file}" schema)
    string(JSON name GET "${schema}" title)
    string(JSON example ERROR_VARIABLE none GET "${schema}" examples 0)
    if(NOT none)
        # As it is written: CMake itself would sort the keys.
        set(key "\n  \"examples\": ")
        string(FIND "${schema}" "${key}[\n" begin)
        if(begin EQUAL -1)
            message(FATAL_ERROR "${file}: \"examples\" has to begin a line of its own")
        endif()
        string(LENGTH "${key}" size)
        math(EXPR begin "${begin} + ${size}")
        string(SUBSTRING "${schema}" ${begin} -1 example)
        string(FIND "${example}" "\n  ]" end)
        string(SUBSTRING "${example}" 0 ${end} example)
        string(APPEND example "]")
        string(APPEND rows "    {\"${name}\", R\"json(${example})json\"},\n")
    endif()
endforeach()
file(WRITE "${OUTPUT}.new" "#include \"Examples.h\"

namespace OrvuTool {
namespace {

struct Example {
    const char* name;
    const char* text;
};

constexpr Example kExamples[] = {
${rows}};

}  // namespace

const char* examplesOf(const std::string& wireName)
{
    for (const Example& example : kExamples)
        if (wireName == example.name) return example.text;
    return nullptr;
}

}  // namespace OrvuTool
")
file(COPY_FILE "${OUTPUT}.new" "${OUTPUT}" ONLY_IF_DIFFERENT)
