#include "orvu/Ncl.h"

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/core/Status.h"

namespace Orvu {
namespace {

constexpr Word kNodeTypeWords[] = {
    {NclNodeTypeUnknown, "unknown", WrittenOnly},
    {NclNodeTypeMedia, "media"},
    {NclNodeTypeContext, "context"},
    {NclNodeTypeSwitch, "switch"},
    {NclNodeTypeArea, "area"},
    {NclNodeTypeProperty, "property"},
    {NclNodeTypePort, "port"},
};
constexpr auto kNodeTypes = vocabulary(kNodeTypeWords, NclNodeTypeUnknown);

bool isNodeAction(StatusType action)
{
    switch (action) {
        case StatusTypeStart:
        case StatusTypePause:
        case StatusTypeResume:
        case StatusTypeStop:
        case StatusTypeSelect:
        case StatusTypeSet:
        case StatusTypeAbort:
        case StatusTypeStartPreparation:
        case StatusTypeStopPreparation:
        case StatusTypeAbortPreparation:
        case StatusTypePausePreparation:
        case StatusTypeResumePreparation:
            return true;
        default:
            return false;
    }
}

}  // namespace

NCLDocument::NCLDocument() : Serializable(kDataType) {}  // shares the type of NCLEvent; neither writes a header
NCLDocument::~NCLDocument() = default;

void write(JsonWriter& json, NCLDocument& document)
{
    json.put("id", document.id);
    json.put("fileName", document.fileName);
}

void read(JsonReader& json, NCLDocument& document)
{
    json.optional("id", document.id);
    json.optional("fileName", document.fileName);
}

MESSAGE(NCLDocument, Compact)

NCLEvent::NCLEvent() : Serializable(kDataType) {}
NCLEvent::~NCLEvent()
{
    delete prepared;
}

void write(JsonWriter& json, NCLEvent& event)
{
    json.put("prepared", ifHeld(event.prepared));  // an event travels nested: no header
    json.put("state", asWord(event.state, kStatus));
    json.put("occurrences", event.occurrences);
}

void read(JsonReader& json, NCLEvent& event)
{
    json.optional("prepared", ifHeld(event.prepared));
    json.optional("state", asWord(event.state, kStatus));
    json.optional("occurrences", event.occurrences);
}

MESSAGE(NCLEvent, Compact)

NCLNode::NCLNode() : Serializable(kDataType) {}

NCLNode::~NCLNode()
{
    delete presentationEvent;
    delete preparationEvent;
    deleteAll(interfaces);
}

const char* NCLNode::nodeTypeString(NclNodeType value)
{
    return kNodeTypes.word(value);
}
NclNodeType NCLNode::stringToNode(std::string word)
{
    return kNodeTypes.value(word);
}
void NCLNode::setPresentationEvent(NCLEvent* event)
{
    presentationEvent = event;
}
void NCLNode::setPreparationEvent(NCLEvent* event)
{
    preparationEvent = event;
}
void NCLNode::addInterface(NCLNode* node)
{
    take(interfaces, node);
}

void write(JsonWriter& json, NCLNode& node)
{
    json.headerIfSet(node);
    json.put("id", node.id);
    json.put("type", asWord(node.type, kNodeTypes));
    json.putIf(!node.appid.empty(), "appid", node.appid);
    json.putIf(!node.documentId.empty(), "documentId", node.documentId);
    json.putIf(!node.mimeType.empty(), "mimeType", node.mimeType);
    json.put("presentationEvent", asIs(node.presentationEvent));
    json.put("preparationEvent", asIs(node.preparationEvent));
    if (!node.interfaces.empty()) json.list("interfaces", node.interfaces);
}

void read(JsonReader& json, NCLNode& node)
{
    json.optional("id", node.id);
    json.optional("type", asWord(node.type, kNodeTypes));
    json.optional("appid", node.appid);
    json.optional("documentId", node.documentId);
    json.optional("mimeType", node.mimeType);
    json.optional("presentationEvent", node.presentationEvent);
    json.optional("preparationEvent", node.preparationEvent);
    json.optional("interfaces", node.interfaces);
}

MESSAGE(NCLNode, Compact)

NCLNodeList::NCLNodeList() : Serializable(kDataType) {}
NCLNodeList::~NCLNodeList()
{
    deleteAll(nodes);
}
void NCLNodeList::addNode(NCLNode* node)
{
    take(nodes, node);
}

void write(JsonWriter& json, NCLNodeList& list)
{
    json.header(list);
    json.putIf(!list.appid.empty(), "appid", list.appid);
    json.putIf(!list.documentId.empty(), "documentId", list.documentId);
    json.putIf(!list.compositeId.empty(), "compositeId", list.compositeId);
    json.list("nodes", list.nodes);
}

void read(JsonReader& json, NCLNodeList& list)
{
    json.optional("appid", list.appid);
    json.optional("documentId", list.documentId);
    json.optional("compositeId", list.compositeId);
    json.required("nodes", list.nodes);
}

MESSAGE(NCLNodeList, Formatted)

char* NCLNodeList::serializeResponse()
{
    return writeObject(PrintStyle::Formatted, [this](JsonWriter& json) { json.list("nodes", nodes); });
}

NCLNodeAction::NCLNodeAction() : Serializable(kDataType) {}
NCLNodeAction::~NCLNodeAction() = default;

bool NCLNodeAction::validateArguments()
{
    if (!isNodeAction(action)) return false;
    if (hasInterface && interface.empty()) return false;
    return interface.find_first_of("<&\"") == std::string::npos;
}

void write(JsonWriter& json, NCLNodeAction& action)
{
    json.headerIfSet(action);
    json.putIf(!action.appid.empty(), "appid", action.appid);
    json.putIf(!action.documentId.empty(), "documentId", action.documentId);
    json.putIf(!action.nodeId.empty(), "nodeId", action.nodeId);
    json.put("action", asWord(action.action, kStatus));
    json.put("interface", action.interface);
    json.put("value", action.value);
}

void read(JsonReader& json, NCLNodeAction& action)
{
    json.optional("appid", action.appid);
    json.optional("documentId", action.documentId);
    json.optional("nodeId", action.nodeId);
    json.optional("action", asWord(action.action, kStatus));
    action.hasInterface = json.optional("interface", OfAnyKind());
    json.optional("interface", action.interface);
    action.hasValue = json.optional("value", OfAnyKind());
    json.optional("value", action.value);
}

MESSAGE(NCLNodeAction, Compact)

}  // namespace Orvu
