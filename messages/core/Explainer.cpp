#include "messages/core/Explainer.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <strings.h>
#include <utility>

#include "messages/core/JsonReader.h"
#include "messages/core/Nearest.h"
#include "messages/core/TextPlace.h"
#include "messages/core/ValueKinds.h"
#include "messages/core/Vocabulary.h"

namespace Orvu {
namespace {

constexpr std::size_t kMostFindings = 200;

bool isSameKey(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

}  // namespace

std::string nearestHint(std::string_view word, const std::vector<std::string_view>& words)
{
    const std::string_view near = nearest(word, words);
    if (near.empty()) return "";
    return joined({"; the nearest is ", quoted(near)});
}

Explainer::Explainer(CheckedText& checked, Detail detail)
    : ReadingWitness(detail == Everything ? AfterFault::GoesOn : AfterFault::Stops), checked_(checked), detail_(detail)
{
    checked_.setWitness(this);
}

Explainer::~Explainer()
{
    checked_.setWitness(nullptr);
}

void Explainer::read(const Contract& contract, Serializable& scratch, std::vector<std::string_view> known)
{
    known_ = std::move(known);
    JsonReader json(checked_.value());
    try {
        json.begin(&contract);
        contract.read(json, scratch);
        json.end();
    } catch (const std::invalid_argument&) {
        explainException("holds no number");
    } catch (const std::out_of_range&) {
        explainException("is a number that does not fit 32 bits");
    } catch (const CheckedText::TooMuch&) {
        explainException("makes more objects than a text of this size may");
    }
}

Explanation Explainer::take()
{
    const std::vector<Finding>& findings = explanation_.findings;
    explanation_.isRead = findings.empty() || findings.front().kind != Finding::Fault;
    return std::move(explanation_);
}

void Explainer::begin(JsonValue value, const Contract* contract)
{
    const bool isPart = !frames_.empty() && (contract || frames_.back().isPart);
    if (isSkipped() || (isPart && detail_ == FirstFault)) {
        ++skipped_;
    } else {
        frames_.push_back({value, contract != nullptr, isPart, false, nullptr, 0, {}, {}});
    }
}

void Explainer::asked(const char* key, const Expected& expected, JsonValue found)
{
    last_ = {key, expected, found};
    if (isSkipped()) return;
    Frame& frame = frames_.back();
    if (detail_ == FirstFault) frame.asked.clear();
    frame.asked.push_back(last_);
}

void Explainer::took(JsonValue value, const Expected&)
{
    if (value && !isSkipped() && detail_ == Everything) frames_.back().taken.push_back(value.offset());
}

void Explainer::failed(const char* why)
{
    if (isSkipped() || frames_.back().hasFailed) return;
    Frame& frame = frames_.back();
    if (!frame.isPart && hasFailed()) return;
    frame.hasFailed = true;
    frame.why = why;
    frame.faultAt = frame.asked.size();
}

/// Whether the message itself has.
bool Explainer::hasFailed() const
{
    return std::any_of(frames_.begin(), frames_.end(),
                       [](const Frame& frame) { return frame.hasFailed && !frame.isPart; });
}

void Explainer::end()
{
    if (isSkipped()) {
        --skipped_;
        return;
    }
    const Frame frame = std::move(frames_.back());
    frames_.pop_back();
    if (frame.isPart && frame.value.isNull()) return;  // as good as none
    if (frame.hasFailed) explainFault(frame);
    if (detail_ == FirstFault) return;
    if (frame.isMessage && !frame.hasFailed && !frame.value.isObject()) {
        add(Finding::Ignored, frame.value,
            joined({nameOf(frame.value), " where an object is expected, read as an empty one"}));
    }
    explainValues(frame);
    explainUnread(frame);
}

/// The read was left at what was asked for last, in whatever part.
void Explainer::explainException(const char* why)
{
    if (hasFailed()) return;
    const JsonValue at = last_.found ? last_.found : checked_.value();
    add(Finding::Fault, at, joined({excerptOf(at), " ", why}));
}

void Explainer::explainFault(const Frame& frame)
{
    const Finding::Kind kind = frame.isPart ? Finding::PartFault : Finding::Fault;
    if (!frame.value.isObject()) {
        return add(kind, frame.value, joined({nameOf(frame.value), " where an object is required"}));
    }
    if (frame.faultAt == 0) return add(kind, frame.value, "is refused");
    const Asked& asked = frame.asked[frame.faultAt - 1];
    if (!asked.found) return explainMissing(frame, asked);
    if (frame.why) return add(kind, asked.found, joined({excerptOf(asked.found), " ", frame.why}));
    add(kind, asked.found, joined({nameOf(asked.found), " where ", expectedUnder(frame, asked.key), " is required"}));
}

void Explainer::explainMissing(const Frame& frame, const Asked& asked)
{
    constexpr std::size_t kMostKeys = 1000;  // that anybody compares
    std::vector<std::string> keys;
    for (const JsonMember& member : frame.value.members()) {
        std::string key = member.key.text();
        if (!isRead(frame, member, key)) keys.push_back(std::move(key));
        if (keys.size() == kMostKeys) break;
    }
    const std::string_view near = nearest(asked.key, {keys.begin(), keys.end()});
    const Finding::Kind kind = frame.isPart ? Finding::PartFault : Finding::Fault;
    if (near.empty()) return add(kind, frame.value, "required, missing", asked.key);
    add(kind, frame.value, joined({"required, missing; there is ", quoted(near)}), asked.key);
}

bool Explainer::isFault(const Frame& frame, const Asked& asked) const
{
    return frame.hasFailed && frame.faultAt != 0 && std::strcmp(frame.asked[frame.faultAt - 1].key, asked.key) == 0;
}

void Explainer::explainValues(const Frame& frame)
{
    for (const Asked& asked : frame.asked)
        if (asked.found && !isFault(frame, asked)) explainValue(frame, asked);
}

void Explainer::explainValue(const Frame& frame, const Asked& asked)
{
    const Expected::Kind kind = asked.expected.kind;
    if (kind == Expected::Nothing) return add(Finding::Ignored, asked.found, "has no effect when it is read");
    const auto isElsewhere = [&](const Asked& other) {
        if (std::strcmp(other.key, asked.key) != 0 || other.expected.kind == Expected::Anything) return false;
        return &other < &asked || accepts(other.expected.kind, asked.found);
    };
    if (accepts(kind, asked.found)) {
        if (kind == Expected::Word) explainWord(*asked.expected.words, asked.found);
        if (kind != Expected::Words) return;
        for (const JsonValue item : asked.found.items())
            explainWord(*asked.expected.words, item);
        return;
    }
    const bool isNullField = asked.found.isNull() && !isList(kind);  // as the library writes fields that hold nothing
    if (kind == Expected::Child || isNullField) return;              // a child explains itself
    if (isFaulty(asked.found) || std::any_of(frame.asked.begin(), frame.asked.end(), isElsewhere)) return;
    const char* const sequel = !isList(kind)            ? ", ignored"
                               : asked.found.isObject() ? ": its values are read"
                                                        : ", read as an empty one";
    add(Finding::Ignored, asked.found,
        joined({nameOf(asked.found), " where ", expectedUnder(frame, asked.key), " is expected", sequel}));
}

/// Whether a fault was found in the value itself.
bool Explainer::isFaulty(JsonValue value) const
{
    return std::any_of(explanation_.findings.begin(), explanation_.findings.end(), [&](const Finding& finding) {
        return finding.kind <= Finding::PartFault && finding.offset == value.offset();
    });
}

void Explainer::explainWord(const WordTable& words, JsonValue word)
{
    if (!word.isText())
        return add(Finding::Ignored, word, joined({nameOf(word), " where a text is expected, ignored"}));
    const std::string text = word.text();
    const std::vector<std::string_view> known = words.words();
    if (std::find(known.begin(), known.end(), text) != known.end() || !hasRoom(Finding::Ignored)) return;
    add(Finding::Ignored, word, joined({quoted(text), " is not a word that is read here", nearestHint(text, known)}));
}

void Explainer::explainUnread(const Frame& frame)
{
    std::vector<std::string_view> absent;
    for (const Asked& asked : frame.asked)
        if (!asked.found) absent.emplace_back(asked.key);
    const auto isAsked = [&](std::string_view key) {
        return std::any_of(frame.asked.begin(), frame.asked.end(),
                           [&](const Asked& asked) { return isSameKey(asked.key, key); });
    };
    const auto isKnown = [&](std::string_view key) {
        return !frame.isPart &&
               std::any_of(known_.begin(), known_.end(), [&](std::string_view known) { return isSameKey(known, key); });
    };
    for (const JsonMember& member : frame.value.members()) {
        const std::string key = member.key.text();
        if (isRead(frame, member, key) || (frame.hasFailed && isKnown(key))) continue;  // it may not have got as far
        if (!hasRoom(Finding::NotRead)) continue;
        std::string message = "not read";
        if (isAsked(key)) {
            message = "comes a second time, not read";
        } else {
            message += isKnown(key) ? " in this text" : nearestHint(key, absent);
        }
        put(Finding::NotRead, member.key.offset(), pathOf(checked_.value(), member.value.offset()), message);
    }
}

/// Whether the contract takes the member, or may, or has no need to.
bool Explainer::isRead(const Frame& frame, const JsonMember& member, std::string_view key) const
{
    if (isSameKey(key, "HEADER")) return true;
    if (std::find(frame.taken.begin(), frame.taken.end(), member.value.offset()) != frame.taken.end()) return true;
    return std::any_of(frame.asked.begin(), frame.asked.end(), [&](const Asked& asked) {
        return asked.found && asked.found.offset() == member.value.offset();
    });
}

std::string Explainer::expectedUnder(const Frame& frame, const char* key) const
{
    std::string names;
    for (const Asked& asked : frame.asked) {
        const char* const name = nameOf(asked.expected.kind);
        if (std::strcmp(asked.key, key) != 0 || asked.expected.kind == Expected::Anything) continue;
        if (names.find(name) != std::string::npos) continue;
        if (!names.empty()) names += " or ";
        names += name;
    }
    return names;
}

void Explainer::add(Finding::Kind kind, JsonValue at, std::string message, const char* missingKey)
{
    if (!hasRoom(kind)) return;
    const std::string path = pathOf(checked_.value(), at.offset());
    put(kind, at.offset(), missingKey ? memberPath(path, missingKey) : path, std::move(message));
}

void Explainer::addAt(Finding::Kind kind, std::size_t offset, std::string message)
{
    if (hasRoom(kind)) put(kind, offset, "", std::move(message));
}

/// There always is for the fault that decides.
bool Explainer::hasRoom(Finding::Kind kind)
{
    if (kind == Finding::Fault || explanation_.findings.size() < kMostFindings) return true;
    ++explanation_.further;
    return false;
}

void Explainer::put(Finding::Kind kind, std::size_t offset, std::string path, std::string message)
{
    const TextPlace place = placeOf(checked_.text(), offset);
    const Finding finding{kind, offset, place.line, place.column, std::move(path), std::move(message)};
    std::vector<Finding>& findings = explanation_.findings;
    const auto isBefore = [](const Finding& a, const Finding& b) {
        const bool isFault = a.kind == Finding::Fault;
        return isFault != (b.kind == Finding::Fault) ? isFault : a.offset < b.offset;
    };
    findings.insert(std::upper_bound(findings.begin(), findings.end(), finding, isBefore), finding);
}

}  // namespace Orvu
