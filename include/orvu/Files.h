#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

// What this header declared, or brought along, before it had headers of its own.
#include "orvu/BinaryData.h"
#include "orvu/EventInformation.h"
#include "orvu/StreamEvents.h"

namespace Orvu {

/// One file. Wire name "file"; also the element of the file lists.
class ORVU_EXPORT File : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeFile;

    std::string name;
    int size = 0;  ///< Bytes.
    std::string mimeType;
    std::string payload;  ///< The content as text; the sender encodes what is none.
    std::string path;

    File();
    File(std::string name, int size);
    File(std::string mimeType, std::string payload);
    ~File() override;
    File(const File&) = default;
    File& operator=(const File&) = default;

    /// Name and size alone, without "HEADER"; formatted. The caller releases it with `free`.
    char* serializeResponse();

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// One directory. Wire name "directory"; also the element of the file lists.
class ORVU_EXPORT Directory : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDirectory;

    std::string name;

    Directory();
    explicit Directory(std::string name);
    ~Directory() override;
    Directory(const Directory&) = default;
    Directory& operator=(const Directory&) = default;

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// Files and directories of an application. Wire name "gingaFileList".
class ORVU_EXPORT GingaFileList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeGingaFileList;

    std::string appid;
    std::string path;
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

    /// Formatted, always with "HEADER". Switches the header flag of every element off, for good: call its
    /// serializeHeader(true) before you send one alone.
    char* serialize() override;
    /// Appends what stands under "files" and "dirs", both required; files stay also when "dirs" is missing.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// Files and directories of a DSM-CC object carousel. Wire name "dsmccFileList".
class ORVU_EXPORT DsmccFileList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDsmccFileList;

    int componentTag = 0;  ///< Of the stream that carries the carousel; not given below 1.
    int carouselId = 0;    ///< Not given below 1.
    std::string path;
    std::vector<File*> files;      ///< Owned; deleted with the list.
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

    /// Formatted, always with "HEADER". Switches the header flag of every element off, for good: call its
    /// serializeHeader(true) before you send one alone.
    char* serialize() override;
    /// Appends what stands under "files" and "dirs", both required; files stay also when "dirs" is missing.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

}  // namespace Orvu
