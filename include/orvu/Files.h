#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

// This header declared or included these classes before they had headers of their own.
#include "orvu/BinaryData.h"
#include "orvu/EventInformation.h"
#include "orvu/StreamEvents.h"

namespace Orvu {

/// One file. Wire name "file"; also the element of the file lists.
class ORVU_EXPORT File : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeFile;

    std::string name;      ///< Name of the file; never checked here.
    int size = 0;          ///< Bytes.
    std::string mimeType;  ///< Such as "image/png"; never checked here.
    std::string payload;   ///< The content as text. The sender encodes binary content, for example as Base64.
    std::string path;      ///< Where the file is; left out when empty.

    File();
    File(std::string name, int size);
    File(std::string mimeType, std::string payload);
    ~File() override;
    File(const File&) = default;
    File& operator=(const File&) = default;

    /// Name and size alone, without "HEADER"; formatted. The caller releases the text with `free`; null when out of
    /// memory.
    char* serializeResponse();

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// One directory. Wire name "directory"; also the element of the file lists.
class ORVU_EXPORT Directory : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDirectory;

    std::string name;  ///< Name of the directory; never checked here.

    Directory();
    explicit Directory(std::string name);
    ~Directory() override;
    Directory(const Directory&) = default;
    Directory& operator=(const Directory&) = default;

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Files and directories of an application. Wire name "gingaFileList".
class ORVU_EXPORT GingaFileList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeGingaFileList;

    std::string appid;             ///< Identifies the interactive application.
    std::string path;              ///< Path of the listed directory; never checked here.
    std::vector<File*> files;      ///< Owned; deleted with the list.
    std::vector<Directory*> dirs;  ///< Owned; deleted with the list.

    GingaFileList();
    ~GingaFileList() override;
    GingaFileList(const GingaFileList&) = delete;
    GingaFileList& operator=(const GingaFileList&) = delete;

    /// Appends `file` and takes it; null is ignored.
    void addFile(File* file);
    /// Appends `directory` and takes it; null is ignored.
    void addDir(Directory* directory);
    /// The answer to a listing: names and sizes of the files, and the directories where there are any, without
    /// "HEADER"; formatted. With `payloadOnly` the payload of the first file as it is, null without one. The caller
    /// releases it with `free`.
    char* serializeResponse(bool payloadOnly);

    /// Always with "HEADER". Switches the header flag of every element off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends what is under "files" and "dirs", both required; files stay also when "dirs" is missing.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Files and directories of a DSM-CC object carousel. Wire name "dsmccFileList".
class ORVU_EXPORT DsmccFileList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDsmccFileList;

    int componentTag = 0;      ///< component_tag of the stream that carries the carousel, 1 to 255; left out below 1.
    int carouselId = 0;        ///< Identifies the carousel, 1 or more; left out below 1.
    std::string path;          ///< Path of the listed directory; left out when empty.
    std::vector<File*> files;  ///< Owned; deleted with the list.
    std::vector<Directory*> dirs;  ///< Owned; deleted with the list.

    DsmccFileList();
    ~DsmccFileList() override;
    DsmccFileList(const DsmccFileList&) = delete;
    DsmccFileList& operator=(const DsmccFileList&) = delete;

    /// Appends `file` and takes it; null is ignored.
    void addFile(File* file);
    /// Appends `directory` and takes it; null is ignored.
    void addDir(Directory* directory);
    /// The answer to a listing: names and sizes of the files, and the directories where there are any, without
    /// "HEADER"; formatted. With `payloadOnly` the payload of the first file as it is, null without one. The caller
    /// releases it with `free`.
    char* serializeResponse(bool payloadOnly);

    /// Always with "HEADER". Switches the header flag of every element off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends what is under "files" and "dirs", both required; files stay also when "dirs" is missing.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
