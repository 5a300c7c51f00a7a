#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// A raw SI table as bytes. One class for "binaryNIT", "binarySDT", "binaryPAT", "binaryBAT", "binaryPMT" and
/// "binaryEPG"; also the element of a BinaryDataMultipart.
class ORVU_EXPORT BinaryData : public Serializable {
public:
    std::string serviceContextId;  ///< Locator of the service that the table belongs to.
    unsigned bufferSize = 0;       ///< Bytes; at most 64 MiB can be received.
    /// A block made by `malloc`, owned; released with `free`. Comes back as a block without bytes when it is null.
    unsigned char* buffer = nullptr;
    std::string timestamp;  ///< Time of the data, such as "2026-11-21T20:30:00-03:00"; not checked here.

    /// `dataType` is one of DataTypeBinaryNIT to DataTypeBinaryEPG, or DataTypeBinaryDataMultipart for a part.
    explicit BinaryData(DataType dataType);
    ~BinaryData() override;
    BinaryData(const BinaryData&) = delete;
    BinaryData& operator=(const BinaryData&) = delete;

    /// The first `bufferSize` bytes of the block travel as Base64 (RFC 4648), with the zeros after what was read. After
    /// a read that set `bufferSize` but made no new block, only as many bytes travel as the held block has, until the
    /// application sets `buffer` or `bufferSize`.
    char* serialize() override;
    /// "serviceContextId", "bufferSize" and "buffer" are required; those before the missing one stay. Makes a new,
    /// zeroed block of 4 x "bufferSize" bytes; the block held before is the caller's from then on. False, with the
    /// block unchanged, for more bytes than that, for a size above 64 MiB, and when out of memory.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;

private:
    friend class BlockRoom;  // which the library asks for the room of the block

    /// What the last read left that stored `bufferSize`.
    struct Left {
        const unsigned char* buffer;
        unsigned bufferSize;
        unsigned room;  // bytes that the block was made for
    };
    Left left_ = {};
    [[maybe_unused]] unsigned reserved_ = 0;
};

/// Several blocks of bytes in one message. Wire name "binaryDataMultipart".
class ORVU_EXPORT BinaryDataMultipart : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeBinaryDataMultipart;

    std::string serviceContextId;    ///< Locator of the service.
    std::vector<BinaryData*> parts;  ///< Owned; deleted with the message.
    std::string timestamp;           ///< Time of the data, such as "2026-11-21T20:30:00-03:00"; not checked here.

    BinaryDataMultipart();
    ~BinaryDataMultipart() override;
    BinaryDataMultipart(const BinaryDataMultipart&) = delete;
    BinaryDataMultipart& operator=(const BinaryDataMultipart&) = delete;

    /// Appends `part` and takes it when it has bytes; otherwise it stays the caller's.
    void addBinaryData(BinaryData* part);

    /// Switches the header flag of every part off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the parts under "binaryDataMultipart", which is required; those without bytes are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
