#include "messages/core/Parsing.h"

#include <memory>
#include <new>

#include "log/Log.h"
#include "messages/core/Catalogue.h"
#include "messages/core/ThreadEnd.h"
#include "orvu/Explanation.h"

namespace Orvu {
namespace {

std::unique_ptr<Serializable> filled(const char* text)
{
    const CheckedText checked(text);
    if (checked.refusal() == CheckedText::Refusal::OutOfMemory) throw std::bad_alloc();
    const HeaderTypes types = headerTypes(checked);
    if (!types.isName || types.mapped != types.named || !entryOf(types.named)->isMade) return nullptr;
    std::unique_ptr<Serializable> message(Serializable::factory(types.mapped));
    if (!message) throw std::bad_alloc();
    if (fill(*message, checked, text)) return message;
    logLine("parse: Cannot deserialize!");
    return nullptr;
}

std::string faultOf(const char* text)
{
    const Explanation explanation = explain(text);
    // Nothing is wrong with the text, so memory ran out.
    if (explanation.isRead || explanation.findings.empty()) return "out of memory";
    return toString(explanation.findings.front());
}

}  // namespace

Serializable* messageIn(const char* text)
{
    try {
        return filled(text).release();
    } catch (const std::bad_alloc&) {
        logLine("parse: ERROR out of memory!");
        return nullptr;
    } catch (...) {  // the number texts of some messages
        passThreadEndOn();
        return nullptr;
    }
}

Serializable* Serializable::parse(const char* text)
{
    return messageIn(text);
}

Serializable* Serializable::parse(const char* text, std::string& reason)
{
    Serializable* const message = messageIn(text);
    try {
        reason = message ? "" : faultOf(text);
    } catch (const std::bad_alloc&) {
        reason = "out of memory";  // short enough to need none
    }
    return message;
}

}  // namespace Orvu
