#include "support/Samples.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
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
Sample sample(const std::string& name, DataType type)
{
    return {name, [type]() -> Made { return Made(newMessage<Message>(type)); },
            [type]() -> Made {
                std::unique_ptr<Message> message(newMessage<Message>(type));
                if constexpr (hasFields<Message>) fill(*message);
                return message;
            },
            !std::is_same_v<Message, PersistentVariableValue>};
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
    static const std::vector<Sample> kSamples = {
#define ORVU_ROW_AS(Type, Class, wireName, ...) sample<Class>(wireName, Type),
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
        sample<NCLDocument>("NCLDocument", NCLDocument::kDataType),  // shares the type of NCLEvent
    };
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

std::string withoutBornTimes(const std::string& text)
{
    if (text.find("bornTime") == std::string::npos) return text;
    static const std::regex kTime("(\"bornTime\":\\s*)-?[0-9]+");
    return std::regex_replace(text, kTime, "$010");
}

}  // namespace OrvuTests
