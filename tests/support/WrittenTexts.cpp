#include "support/WrittenTexts.h"

#include <cstdlib>
#include <cxxabi.h>
#include <fstream>
#include <memory>
#include <utility>

#include "messages/core/Exact.h"
#include "support/Messages.h"

namespace OrvuTests {
namespace {

bool isAnApplications = false;  // the text that is written next, or a part of it

/// The name of the library's class of `message`; "" for an application's.
std::string classOf(const Orvu::Serializable& message)
{
    constexpr char kOurs[] = "Orvu::";
    const std::type_info* const type = Orvu::typeOf(message);
    const std::unique_ptr<char, decltype(&std::free)> name(
        type ? abi::__cxa_demangle(type->name(), nullptr, nullptr, nullptr) : nullptr, &std::free);
    const std::string whole = name ? name.get() : "";
    return whole.rfind(kOurs, 0) == 0 ? whole.substr(sizeof kOurs - 1) : "";
}

}  // namespace

void keepText(const std::string& name, const std::string& text)
{
    static const char* const file = std::getenv("ORVU_WRITTEN_TEXTS");
    if (!file || text == "(null)") return;
    static std::ofstream out(file, std::ios::binary);
    out << name << '\0' << text << '\0';
}

void keepText(const Orvu::Serializable& message, const std::string& text)
{
    const bool isOurs = !std::exchange(isAnApplications, false);
    const std::string name = classOf(message);
    if (isOurs && !name.empty()) keepText(name + "/" + Orvu::Serializable::dataTypeString(message.getDataType()), text);
}

void noteTextOfAnApplication()
{
    isAnApplications = true;
}

std::string takenAs(const std::string& name, char* text)
{
    const std::string copy = taken(text);
    keepText(name, copy);
    return copy;
}

}  // namespace OrvuTests
