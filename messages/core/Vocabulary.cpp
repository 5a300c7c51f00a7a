#include "messages/core/Vocabulary.h"

namespace Orvu {

const char* WordTable::word(int value) const
{
    const auto index = static_cast<std::size_t>(static_cast<unsigned>(value));
    return index < count_ ? words_[index].text : "";
}

int WordTable::value(std::string_view text) const
{
    const char first = text.empty() ? '\0' : text.front();  // spares most of the comparisons
    for (std::size_t i = 0; i < count_; ++i) {
        const bool mayBe = words_[i].readability == ReadBack && *words_[i].text == first;
        if (mayBe && text == words_[i].text) return words_[i].value;
    }
    return otherwise_;
}

std::vector<std::string_view> WordTable::words() const
{
    std::vector<std::string_view> read;
    for (std::size_t i = 0; i < count_; ++i)
        if (words_[i].readability == ReadBack) read.emplace_back(words_[i].text);
    return read;
}

}  // namespace Orvu
