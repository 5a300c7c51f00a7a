#include "orvu/Files.h"

#include <cstring>
#include <utility>

#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {
namespace {

void writeSummary(JsonWriter& json, const File& file)
{
    json.put("name", file.name);
    json.put("size", file.size);
}

/// An array of files without what they hold.
struct AsSummaries {
    const std::vector<File*>& files;

    void write(JsonWriter& json) const
    {
        json.array(files, [&](const File* file) { json.object([&] { writeSummary(json, *file); }); });
    }
};

/// The answer to a listing, without what the files hold.
char* listingOf(const std::vector<File*>& files, const std::vector<Directory*>& dirs)
{
    return writeObject(PrintStyle::Formatted, [&](JsonWriter& json) {
        json.put("files", AsSummaries{files});
        if (!dirs.empty()) json.list("dirs", dirs);
    });
}

char* payloadOfFirst(const std::vector<File*>& files)
{
    return files.empty() || !files.front() ? nullptr : strdup(files.front()->payload.c_str());
}

/// What serializeResponse() of a list answers.
template <class List>
char* responseOf(const List& list, bool payloadOnly)
{
    return payloadOnly ? payloadOfFirst(list.files) : listingOf(list.files, list.dirs);
}

template <class List>
void readFilesAndDirs(JsonReader& json, List& list)
{
    json.required("files", list.files);
    json.required("dirs", list.dirs);
}

}  // namespace

File::File() : Serializable(kDataType) {}
File::File(std::string name, int size) : Serializable(kDataType), name(std::move(name)), size(size) {}
File::File(std::string mimeType, std::string payload)
    : Serializable(kDataType), mimeType(std::move(mimeType)), payload(std::move(payload))
{}
File::~File() = default;

void write(JsonWriter& json, File& file)
{
    json.headerIfSet(file);
    writeSummary(json, file);
    json.put("mimeType", file.mimeType);
    json.put("payload", file.payload);
    json.putIf(!file.path.empty(), "path", file.path);
}

void read(JsonReader& json, File& file)
{
    json.optional("name", file.name);
    json.optional("size", file.size);
    json.optional("mimeType", file.mimeType);
    json.optional("payload", file.payload);
    json.optional("path", file.path);
}

MESSAGE(File, Formatted)

char* File::serializeResponse()
{
    return writeObject(PrintStyle::Formatted, [this](JsonWriter& json) { writeSummary(json, *this); });
}

Directory::Directory() : Serializable(kDataType) {}
Directory::Directory(std::string name) : Serializable(kDataType), name(std::move(name)) {}
Directory::~Directory() = default;

void write(JsonWriter& json, Directory& directory)
{
    json.headerIfSet(directory);
    json.put("name", directory.name);
}

void read(JsonReader& json, Directory& directory)
{
    json.optional("name", directory.name);
}

MESSAGE(Directory, Formatted)

GingaFileList::GingaFileList() : Serializable(kDataType) {}

GingaFileList::~GingaFileList()
{
    deleteAll(files);
    deleteAll(dirs);
}

void GingaFileList::addFile(File* file)
{
    take(files, file);
}
void GingaFileList::addDir(Directory* directory)
{
    take(dirs, directory);
}

void write(JsonWriter& json, GingaFileList& list)
{
    json.header(list);
    json.put("appid", list.appid);
    json.put("path", list.path);
    json.list("files", list.files);
    json.list("dirs", list.dirs);
}

void read(JsonReader& json, GingaFileList& list)
{
    json.optional("appid", list.appid);
    json.optional("path", list.path);
    readFilesAndDirs(json, list);
}

MESSAGE(GingaFileList, Formatted)

char* GingaFileList::serializeResponse(bool payloadOnly)
{
    return responseOf(*this, payloadOnly);
}

DsmccFileList::DsmccFileList() : Serializable(kDataType) {}

DsmccFileList::~DsmccFileList()
{
    deleteAll(files);
    deleteAll(dirs);
}

void DsmccFileList::addFile(File* file)
{
    take(files, file);
}
void DsmccFileList::addDir(Directory* directory)
{
    take(dirs, directory);
}

void write(JsonWriter& json, DsmccFileList& list)
{
    json.header(list);
    json.putIf(list.componentTag >= 1, "componentTag", list.componentTag);
    json.putIf(list.carouselId >= 1, "carouselId", list.carouselId);
    json.putIf(!list.path.empty(), "path", list.path);
    json.list("files", list.files);
    json.list("dirs", list.dirs);
}

void read(JsonReader& json, DsmccFileList& list)
{
    json.optional("componentTag", list.componentTag);
    json.optional("carouselId", list.carouselId);
    json.optional("path", list.path);
    readFilesAndDirs(json, list);
}

MESSAGE(DsmccFileList, Formatted)

char* DsmccFileList::serializeResponse(bool payloadOnly)
{
    return responseOf(*this, payloadOnly);
}

}  // namespace Orvu
