#include "Types.h"

#include <cstdlib>
#include <cxxabi.h>
#include <typeinfo>

#include "messages/core/Nearest.h"

namespace OrvuTool {

using Orvu::DataType;
using Orvu::Serializable;

std::vector<DataType> catalogue()
{
    std::vector<DataType> types;
    for (unsigned value = 0; *Serializable::dataTypeString(static_cast<DataType>(value)) != '\0'; ++value)
        types.push_back(static_cast<DataType>(value));
    return types;
}

std::optional<DataType> typeNamed(const std::string& name)
{
    for (const DataType type : catalogue())
        if (name == Serializable::dataTypeString(type)) return type;
    return std::nullopt;
}

std::string nearestType(const std::string& name)
{
    std::vector<std::string_view> names;
    for (const DataType type : catalogue())
        names.emplace_back(Serializable::dataTypeString(type));
    return std::string(Orvu::nearest(name, names));
}

std::string faultOfType(const std::string& name)
{
    const std::string hint = didYouMean(nearestType(name));
    return name + ": no such type" + (hint.empty() ? "; \"orvu types\" lists them" : hint);
}

std::string didYouMean(std::string_view near)
{
    return near.empty() ? "" : "; did you mean \"" + std::string(near) + "\"?";
}

std::string readableName(const char* mangled)
{
    int status = 0;
    char* const name = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
    const std::string readable = name != nullptr ? name : mangled;
    std::free(name);
    return readable;
}

std::string className(const Serializable& message)
{
    const std::string name = readableName(typeid(message).name());
    const std::string space = "Orvu::";
    return name.compare(0, space.size(), space) == 0 ? name.substr(space.size()) : name;
}

}  // namespace OrvuTool
