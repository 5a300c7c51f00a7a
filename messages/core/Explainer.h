#pragma once

#include <vector>

#include "messages/core/Contract.h"
#include "messages/core/ReadingWitness.h"
#include "orvu/Explanation.h"

namespace Orvu {

/// What a report says about a wrong word: `; the nearest is "word"`, or nothing when none is near.
std::string nearestHint(std::string_view word, const std::vector<std::string_view>& words);

/// Finds faults and ignored parts of a text by reading it once more.
class Explainer final : private ReadingWitness {
public:
    /// Only the first fault, which takes no memory for what the text holds, or everything.
    enum Detail : bool { FirstFault, Everything };

    /// For a text that was accepted, and lives longer.
    Explainer(CheckedText& checked, Detail detail);
    ~Explainer();
    Explainer(const Explainer&) = delete;
    Explainer& operator=(const Explainer&) = delete;

    /// Reads the text into `scratch`. `known` are the keys that its contract may ask for.
    void read(const Contract& contract, Serializable& scratch, std::vector<std::string_view> known);

    /// What was found, to be taken once.
    Explanation take();

    /// Adds a finding about a value of the text, or about an object that lacks a key.
    void add(Finding::Kind kind, JsonValue at, std::string message, const char* missingKey = nullptr);
    /// Adds one about a place of the text that is not in its value.
    void addAt(Finding::Kind kind, std::size_t offset, std::string message);

private:
    struct Asked {
        const char* key;
        Expected expected;
        JsonValue found;
    };
    /// An object that is being read.
    struct Frame {
        JsonValue value;
        bool isMessage;  // or an object whose members belong to the message around it
        bool isPart;     // of another message, whose faults are its own
        bool hasFailed = false;
        const char* why = nullptr;
        std::size_t faultAt = 0;  // after what was asked last
        std::vector<Asked> asked;
        std::vector<std::size_t> taken;  // where values begin that were taken by their place
    };

    void begin(JsonValue value, const Contract* contract) override;
    void asked(const char* key, const Expected& expected, JsonValue found) override;
    void took(JsonValue value, const Expected& expected) override;
    void failed(const char* why) override;
    void end() override;

    bool isSkipped() const { return skipped_ != 0; }
    bool hasFailed() const;
    void explainException(const char* why);
    void explainFault(const Frame& frame);
    void explainMissing(const Frame& frame, const Asked& asked);
    void explainValues(const Frame& frame);
    void explainValue(const Frame& frame, const Asked& asked);
    bool isFaulty(JsonValue value) const;
    void explainWord(const WordTable& words, JsonValue word);
    void explainUnread(const Frame& frame);
    bool isRead(const Frame& frame, const JsonMember& member, std::string_view key) const;
    bool isFault(const Frame& frame, const Asked& asked) const;
    std::string expectedUnder(const Frame& frame, const char* key) const;
    bool hasRoom(Finding::Kind kind);
    void put(Finding::Kind kind, std::size_t offset, std::string path, std::string message);

    CheckedText& checked_;
    const Detail detail_;
    std::vector<std::string_view> known_;
    std::vector<Frame> frames_;
    Asked last_{};          // what was asked for last, in whatever part
    unsigned skipped_ = 0;  // parts within each other, when only the first fault is wanted
    Explanation explanation_;
};

}  // namespace Orvu
