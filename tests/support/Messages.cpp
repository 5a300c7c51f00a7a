#include "support/Messages.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

namespace OrvuTests {

std::string taken(char* text)
{
    const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
    return text ? text : "(null)";
}

std::string textOf(Orvu::Serializable& message)
{
    return taken(message.serialize());
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

}  // namespace OrvuTests
