#include "messages/core/CJsonBridge.h"

#include <atomic>
#include <clocale>
#include <cstring>
#include <new>
#include <string>

#include "messages/core/Json.h"
#include "orvu/Serializable.h"

namespace Orvu {
namespace {

static_assert(kMaxDepth == CJSON_NESTING_LIMIT);

/// A NUL-terminated copy, in place for texts of usual size: cJSON measures what it is given up to its NUL, so a pointer
/// into a long text would make it read the rest of that text each time.
class Copy {
public:
    explicit Copy(std::string_view text)
    {
        if (text.size() >= sizeof small_) {
            large_ = text;
            return;
        }
        std::memcpy(small_, text.data(), text.size());
        small_[text.size()] = '\0';
    }
    const char* text() const { return large_.empty() ? small_ : large_.c_str(); }

private:
    char small_[kSureNumberSize + 1];
    std::string large_;
};

/// The size of the number that a text begins with, all of which may be one.
std::size_t parsedSize(const char* text)
{
    const char* end = text;
    const JsonTree number(cJSON_ParseWithOpts(text, &end, false));
    return number ? static_cast<std::size_t>(end - text) : 0;
}

JsonTree parsed(const char* json)
{
    JsonTree tree = parseJson(json);
    if (!tree) throw std::bad_alloc();  // it was JSON: only memory can have failed
    return tree;
}

/// What `number` reads as once it is printed and parsed again; of another kind when it prints as no number
/// (infinities).
JsonTree reprinted(const cJSON& number)
{
    char text[64];  // cJSON writes at most 26
    cJSON_PrintPreallocated(const_cast<cJSON*>(&number), text, sizeof text, false);
    return parsed(text);
}

void printObject(JsonPrinter& json, const cJSON& object)
{
    json.beginObject();
    for (const cJSON* item = object.child; item && !json.failed(); item = item->next) {
        json.anyKey(item->string);
        printTree(json, *item);
    }
    json.endObject();
}

void printArray(JsonPrinter& json, const cJSON& array)
{
    json.beginArray();
    for (const cJSON* item = array.child; item && !json.failed(); item = item->next) {
        json.element();
        printTree(json, *item);
    }
    json.endArray();
}

void printNumber(JsonPrinter& json, const cJSON& number)
{
    char text[64] = "";  // cJSON writes at most 26
    if (!cJSON_PrintPreallocated(const_cast<cJSON*>(&number), text, sizeof text, false)) json.fail();
    json.raw(text);
}

}  // namespace

bool cJsonReadsLongNumbers()
{
    constexpr std::size_t kLong = kSureNumberSize + 1;
    static std::atomic<std::size_t> read{0};  // of so many digits; 0 before it was found
    if (read == 0) {
        read = parsedSize(std::string(kLong, '1').c_str());
        if (read == 0) throw std::bad_alloc();
    }
    return read == kLong;
}

bool pointIsUsual()
{
    return std::strcmp(std::localeconv()->decimal_point, ".") == 0;
}

std::size_t numberSizeInCJson(std::string_view characters)
{
    const Copy copy(characters);
    const std::size_t size = parsedSize(copy.text());
    if (size != 0) return size;
    parsed("0");  // throws when it was memory that failed
    return parsedSize(copy.text());
}

bool integerInCJson(std::string_view number, bool nested, int& value)
{
    JsonTree tree = parsed(Copy(number).text());
    const bool isSame = !nested || tree->valuedouble == tree->valueint;
    if (!isSame) tree = reprinted(*tree);
    if (!cJSON_IsNumber(tree.get())) return false;
    value = tree->valueint;
    return true;
}

JsonTree treeInCJson(std::string_view value)
{
    return parsed(std::string(value).c_str());
}

void printTree(JsonPrinter& json, const cJSON& value)
{
    if (cJSON_IsObject(&value)) return printObject(json, value);
    if (cJSON_IsArray(&value)) return printArray(json, value);
    if (cJSON_IsString(&value)) return json.text(value.valuestring);
    if (cJSON_IsNumber(&value)) return printNumber(json, value);
    if (cJSON_IsBool(&value)) return json.boolean(cJSON_IsTrue(&value));
    if (cJSON_IsNull(&value)) return json.null();
    if (!cJSON_IsRaw(&value) || !value.valuestring) return json.fail();
    json.raw(value.valuestring);
}

char* printed(const cJSON& value)
{
    JsonPrinter json(PrintStyle::Formatted);
    printTree(json, value);
    return json.take();
}

bool printParsed(JsonPrinter& json, char* text, bool isMinified)
{
    if (isMinified) cJSON_Minify(text);
    const JsonTree tree = parseJson(text);
    if (tree) printTree(json, *tree);
    return tree != nullptr;
}

bool readTree(Serializable& child, std::string_view value, unsigned char* error)
{
    const JsonTree tree = treeInCJson(value);
    return error ? child.deserializeObject(tree.get(), *error) : child.deserializeObject(tree.get());
}

bool Serializable::deserializeObject(void* item)
{
    if (!item) return false;
    const JsonText text(printed(*static_cast<const cJSON*>(item)));
    return text && deserialize(text.get());
}

bool Serializable::deserializeObject(void* item, unsigned char& error)
{
    if (!item) {
        error = 1;
        return false;
    }
    const JsonText text(printed(*static_cast<const cJSON*>(item)));
    return text && deserialize(text.get(), error);
}

char* Serializable::removeHeader(const char* text)
{
    const JsonText owned(const_cast<char*>(text));
    const JsonTree tree = parseJson(text);
    if (!tree) return nullptr;
    cJSON_DeleteItemFromObject(tree.get(), "HEADER");
    return printed(*tree);
}

}  // namespace Orvu
