#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "Input.h"
#include "orvu/Serializable.h"

namespace OrvuTool {

/// A folder of answers: the request of a type is answered with the text of the file `<wire name>.json`. When there is
/// no such file, `<wire name>.1.json`, `<wire name>.2.json` and so on answer in turn, over and over.
///
/// Files are read when they are needed, so a change takes effect with the next request. Any thread.
class Answers {
public:
    explicit Answers(std::string folder);

    /// Why the folder cannot be read; empty when it can. Reports every file in it that could never be an answer.
    std::string checkFolder() const;

    /// The file's text, byte for byte; a ResourceNotFound without a file; a ResourceUnavailable, and a report on
    /// standard error, when the file cannot be read or is not a message of a type that the library knows.
    std::unique_ptr<Orvu::Serializable> answerTo(Orvu::DataType request);

private:
    struct File {
        std::string path;
        Input input;
    };

    std::string pathOf(const std::string& name) const;
    bool exists(const std::string& name) const;
    File read(const std::string& name) const;
    File next(Orvu::DataType request);
    std::string faultOfName(const std::string& name) const;
    std::string faultOfTurn(const std::string& wireName, const std::string& turn) const;

    std::string folder_;
    std::mutex mutex_;
    std::map<Orvu::DataType, int> turns_;  // the file that answered last
};

}  // namespace OrvuTool
