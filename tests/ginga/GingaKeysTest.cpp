#include "orvu/Files.h"
#include "orvu/GingaApps.h"
#include "orvu/Keyset.h"
#include "orvu/Ncl.h"
#include "orvu/Properties.h"
#include "support/KeyRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

Key appType()
{
    return wordShownBy("type", "Ginga-NCL", "Ginga-HTML5", "unknown", [](Serializable& app) {
        return RestGingaApp::typeToString(static_cast<RestGingaApp&>(app).type);
    });
}

Key controlCode()
{
    return wordShownBy("controlCode", "AUTOSTART", "STORED_REMOVE", "unknown", [](Serializable& app) {
        return RestGingaApp::controlCodeToString(static_cast<RestGingaApp&>(app).controlCode);
    });
}

Key appState()
{
    return wordShownBy("state", "running", "loaded", "unknown", [](Serializable& app) {
        return RestGingaApp::stateToString(static_cast<RestGingaApp&>(app).state);
    });
}

Key nodeType()
{
    return wordShownBy("type", "media", "context", "unknown",
                       [](Serializable& node) { return NCLNode::nodeTypeString(static_cast<NCLNode&>(node).type); });
}

template <class Message>
Key status(const std::string& name, StatusType Message::*field)
{
    return wordShownBy(name, "start", "stop", "unknown", [field](Serializable& message) {
        return Status::statusTypeString(static_cast<Message&>(message).*field);
    });
}

Key command()
{
    return wordShownBy("command", "removeFont", "addNode", "unknown", [](Serializable& message) {
        return GingaEditCommand::cmdTypeString(static_cast<GingaEditCommand&>(message).command);
    });
}

/// Of the words only two are accepted.
Key startOrStop()
{
    Key key = refusingOtherWords(wordShownBy("action", "start", "stop", "unknown", [](Serializable& message) {
        return Status::statusTypeString(static_cast<GingaAppAction&>(message).action);
    }));
    key.refused.emplace_back(inQuotes("pause"), inQuotes("pause"));
    key.refused.emplace_back(inQuotes("requesting"), inQuotes("unknown"));
    return required(key);
}

/// The property's name or value, which stand flat beside the others.
Key ofProperty(const std::string& name, std::string Property::*field)
{
    return textShownBy(name, [field](Serializable& message) {
        return inQuotes(static_cast<PersistProperty&>(message).property.*field);
    });
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Applications, AMessage,
    testing::Values(keysOf<RestGingaApp>("RestGingaApp", {text("serviceContextId", &RestGingaApp::serviceContextId),
                                                          text("appid", &RestGingaApp::appid),
                                                          text("name", &RestGingaApp::name), appType(), controlCode(),
                                                          appState(), text("entryPoint", &RestGingaApp::entryPoint)}),
                    keysOf<GingaAppList>("GingaAppList", {text("serviceContextId", &GingaAppList::serviceContextId)},
                                         {"apps"}),
                    givingReasons(keysOf<GingaAppAction>("GingaAppAction",
                                                         {text("appid", &GingaAppAction::appid), startOrStop()}))),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Ncl, AMessage,
    testing::Values(
        keysOf<NCLDocument>("NCLDocument", {text("id", &NCLDocument::id), text("fileName", &NCLDocument::fileName)}),
        keysOf<NCLEvent>("NCLEvent",
                         {status("state", &NCLEvent::state), number("occurrences", &NCLEvent::occurrences)}),
        keysOf<NCLNode>("NCLNode", {text("id", &NCLNode::id), nodeType(), text("appid", &NCLNode::appid),
                                    text("documentId", &NCLNode::documentId), text("mimeType", &NCLNode::mimeType)}),
        keysOf<NCLNodeList>("NCLNodeList",
                            {text("appid", &NCLNodeList::appid), text("documentId", &NCLNodeList::documentId),
                             text("compositeId", &NCLNodeList::compositeId)},
                            {"nodes"}),
        keysOf<NCLNodeAction>("NCLNodeAction",
                              {text("appid", &NCLNodeAction::appid), text("documentId", &NCLNodeAction::documentId),
                               text("nodeId", &NCLNodeAction::nodeId), status("action", &NCLNodeAction::action),
                               text("interface", &NCLNodeAction::interface), text("value", &NCLNodeAction::value)}),
        keysOf<GingaEditCommand>(
            "GingaEditCommand",
            {text("appid", &GingaEditCommand::appid), text("documentId", &GingaEditCommand::documentId), command(),
             text("parentId", &GingaEditCommand::parentId), text("elementId", &GingaEditCommand::elementId),
             text("xml", &GingaEditCommand::xml), text("nodeId", &GingaEditCommand::nodeId),
             text("propertyId", &GingaEditCommand::propertyId), text("value", &GingaEditCommand::value)})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Properties, AMessage,
    testing::Values(
        keysOf<Property>("Property", {text("name", &Property::name), text("value", &Property::value)}),
        keysOf<NodeProperties>("NodeProperties",
                               {text("appid", &NodeProperties::appid), text("node-id", &NodeProperties::nodeId),
                                text("var-name", &NodeProperties::varName)},
                               {"nodeProperties"}),
        keysOf<PersistentProperties>("PersistentProperties",
                                     {text("serviceContextId", &PersistentProperties::serviceContextId),
                                      text("appid", &PersistentProperties::appid),
                                      text("var-name", &PersistentProperties::varName)},
                                     {"persistent"}),
        keysOf<PersistProperty>("PersistProperty",
                                {text("serviceContextId", &PersistProperty::serviceContextId),
                                 text("appid", &PersistProperty::appid), text("var-name", &PersistProperty::varName),
                                 text("var-value", &PersistProperty::varValue), ofProperty("name", &Property::name),
                                 ofProperty("value", &Property::value)}),
        neverWritten(keysOf<PersistentVariableValue>(
            "PersistentVariableValue", {neverWritten(text("varValue", &PersistentVariableValue::value))}))),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Files, AMessage,
    testing::Values(
        keysOf<File>("File", {text("name", &File::name), number("size", &File::size), text("mimeType", &File::mimeType),
                              text("payload", &File::payload), text("path", &File::path)}),
        keysOf<Directory>("Directory", {text("name", &Directory::name)}),
        keysOf<GingaFileList>("GingaFileList",
                              {text("appid", &GingaFileList::appid), text("path", &GingaFileList::path)},
                              {"files", "dirs"}),
        keysOf<DsmccFileList>("DsmccFileList",
                              {fromZero(number("componentTag", &DsmccFileList::componentTag)),
                               fromZero(number("carouselId", &DsmccFileList::carouselId)),
                               text("path", &DsmccFileList::path)},
                              {"files", "dirs"}),
        keysOf<StreamEventRequest>("StreamEventRequest",
                                   {text("handle", &StreamEventRequest::handle),
                                    fromZero(number("componentTag", &StreamEventRequest::componentTag)),
                                    fromZero(number("carouselId", &StreamEventRequest::carouselId)),
                                    text("url", &StreamEventRequest::url), text("host", &StreamEventRequest::host),
                                    fromZero(number("port", &StreamEventRequest::port)),
                                    text("protocol", &StreamEventRequest::protocol)}),
        keysOf<StreamEventDispose>("StreamEventDispose", {required(number("handle", &StreamEventDispose::handle))}),
        keysOf<BinaryDataMultipart>("BinaryDataMultipart",
                                    {text("serviceContextId", &BinaryDataMultipart::serviceContextId),
                                     text("timestamp", &BinaryDataMultipart::timestamp)},
                                    {"binaryDataMultipart"})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(Keys, AMessage,
                         testing::Values(keysOf<GingaKeyset>("GingaKeyset",
                                                             {boolean("releaseKeyset", &GingaKeyset::releaseKeyset)},
                                                             {"keyset"})),
                         nameOf);

}  // namespace OrvuTests
