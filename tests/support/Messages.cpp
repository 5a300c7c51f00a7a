#include "support/Messages.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

#include "support/WrittenTexts.h"

namespace OrvuTests {

std::string taken(char* text)
{
    const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
    return text ? text : "(null)";
}

std::string textOf(Orvu::Serializable& message)
{
    const std::string text = taken(message.serialize());
    keepText(message, text);
    return text;
}

Tree treeOf(const std::string& text)
{
    Tree tree(cJSON_Parse(text.c_str()));
    if (!tree) throw std::invalid_argument("no JSON: " + text);
    return tree;
}

char* mallocText(const std::string& text)
{
    char* const copy = strdup(text.c_str());
    if (!copy) throw std::bad_alloc();
    return copy;
}

char* textOfAnApplication(const std::string& text)
{
    noteTextOfAnApplication();
    return mallocText(text);
}

std::vector<Orvu::DataType> allTypes()
{
    std::vector<Orvu::DataType> types;
    while (*Orvu::Serializable::dataTypeString(static_cast<Orvu::DataType>(types.size())) != '\0')
        types.push_back(static_cast<Orvu::DataType>(types.size()));
    return types;
}

}  // namespace OrvuTests
