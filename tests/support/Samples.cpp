#include "support/Samples.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <type_traits>

#include "messages/core/NewMessage.h"
#include "support/SampleFields.h"
#include "support/WrittenTexts.h"

namespace OrvuTests {

using namespace Orvu;

namespace {

using Made = std::unique_ptr<Serializable>;

/// A class without fields says nothing but its type.
template <class Message>
constexpr bool hasFields = sizeof(Message) > sizeof(SuccessResponse);

template <class Message>
Made newOne(DataType type)
{
    return Made(newMessage<Message>(type));
}

template <class Message>
Made filledOne(DataType type)
{
    std::unique_ptr<Message> message(newMessage<Message>(type));
    if constexpr (hasFields<Message>) fill(*message);
    return message;
}

/// A sample as the compiler takes a hundred of fastest: without objects to construct and destroy.
struct Row {
    const char* name;
    DataType type;
    Made (*empty)(DataType);
    Made (*filled)(DataType);
    bool isWritten;
};

template <class Message>
constexpr Row row(const char* name, DataType type)
{
    return {name, type, newOne<Message>, filledOne<Message>, !std::is_same_v<Message, PersistentVariableValue>};
}

constexpr Row kRows[] = {
#define ORVU_ROW_AS(Type, Class, wireName, ...) row<Class>(wireName, Type),
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
    row<NCLDocument>("NCLDocument", NCLDocument::kDataType),  // shares the type of NCLEvent
};

std::vector<Sample> samplesOfRows()
{
    std::vector<Sample> all;
    for (const Row& row : kRows)
        all.push_back(
            {row.name, [row] { return row.empty(row.type); }, [row] { return row.filled(row.type); }, row.isWritten});
    return all;
}

template <class Message, class... Arguments>
SecondText second(const std::string& name, char* (Message::*text)(Arguments...), Arguments... arguments)
{
    return {name,
            [=] {
                Message message;
                return takenAs(name, (message.*text)(arguments...));
            },
            [=] {
                const std::unique_ptr<Message> message(filled<Message>());
                return takenAs(name, (message.get()->*text)(arguments...));
            }};
}

}  // namespace

const std::vector<Sample>& samples()
{
    static const std::vector<Sample> kSamples = samplesOfRows();
    return kSamples;
}

std::vector<Sample> writtenSamples()
{
    std::vector<Sample> written;
    std::copy_if(samples().begin(), samples().end(), std::back_inserter(written),
                 [](const Sample& sample) { return sample.isWritten; });
    return written;
}

const std::vector<SecondText>& secondTexts()
{
    static const std::vector<SecondText> kTexts = {
        second("file-response", &File::serializeResponse),
        second("gingaFileList-response", &GingaFileList::serializeResponse, false),
        second("dsmccFileList-response", &DsmccFileList::serializeResponse, false),
        second("nclNodeList-response", &NCLNodeList::serializeResponse),
        second("nodeProperties-properties", &NodeProperties::serializeProperties),
        second("persistent-properties", &PersistentProperties::serializeProperties),
        second("persistProperty-properties", &PersistProperty::serializeProperties),
    };
    return kTexts;
}

Tree schemaOf(const std::string& name)
{
    std::ostringstream text;
    text << std::ifstream(std::string(ORVU_SCHEMAS) + "/" + name + ".schema.json", std::ios::binary).rdbuf();
    return treeOf(text.str());
}

std::string withoutBornTimes(std::string text)
{
    static const std::string kKey = "\"bornTime\":";
    for (auto at = text.find(kKey); at != std::string::npos; at = text.find(kKey, at + 1)) {
        const auto time = text.find_first_not_of(" \t", at + kKey.size());
        text.replace(time, text.find_first_not_of("-0123456789", time) - time, "0");
    }
    return text;
}

}  // namespace OrvuTests
