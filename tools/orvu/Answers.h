#pragma once

#include <memory>
#include <string>

#include "orvu/Serializable.h"

namespace OrvuTool {

/// A folder of answers: the request of a type is answered with the text of the file `<wire name>.json`.
///
/// Files are read when they are needed, so that a changed one counts from the next request on. Any thread.
class Answers {
public:
    explicit Answers(std::string folder);

    /// Why the folder cannot be read; empty when it can. Reports every file in it that could never be an answer.
    std::string checkFolder() const;

    /// The file's text, byte for byte; a ResourceNotFound without a file; a ResourceUnavailable, and a report on standard
    /// error, when the file cannot be read or is no message of a type that the library knows.
    std::unique_ptr<Orvu::Serializable> answerTo(Orvu::DataType request) const;

private:
    std::string fileOf(const std::string& wireName) const;

    std::string folder_;
};

}  // namespace OrvuTool
