#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvu/BinaryData.h"
#include "orvu/Serializable.h"

namespace Orvu {

/// Appends a new child, made of `arguments`, to a list of a message such as `list.services`. The message owns it.
///
///     Orvu::Service& service = Orvu::append(list.services);
template <class Child, class... Arguments>
Child& append(std::vector<Child*>& children, Arguments&&... arguments)
{
    auto child = std::make_unique<Child>(std::forward<Arguments>(arguments)...);
    children.push_back(child.get());
    return *child.release();
}

/// Puts a new child, made of `arguments`, into a field of a message such as `event.linkage`, and deletes the one that
/// was there. The message owns it. For optional values too, such as `action.vol`.
///
///     Orvu::LinkageDescriptor& linkage = Orvu::make(event.linkage);
template <class Child, class... Arguments>
Child& make(Child*& field, Arguments&&... arguments)
{
    static_assert(!std::is_same_v<Child, unsigned char>,
                  "Orvu: a buffer is not made with make(): use Orvu::setBytes(data, bytes)");
    const std::unique_ptr<Child> before(
        std::exchange(field, std::make_unique<Child>(std::forward<Arguments>(arguments)...).release()));
    return *field;
}

/// Gives `data` a copy of `bytes` in place of the bytes that it had. False, and nothing changes, when out of memory,
/// and for more bytes than its `bufferSize` can count.
inline bool setBytes(BinaryData& data, std::string_view bytes)
{
    const auto size = static_cast<unsigned>(bytes.size());
    if (size != bytes.size()) return false;
    void* const block = std::malloc(size + std::size_t{1});
    if (!block) return false;
    if (size > 0) std::memcpy(block, bytes.data(), size);
    std::free(data.buffer);
    data.buffer = static_cast<unsigned char*>(block);
    data.bufferSize = size;
    return true;
}

}  // namespace Orvu
