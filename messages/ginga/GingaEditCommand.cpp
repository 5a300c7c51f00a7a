#include "orvu/GingaEditCommand.h"

#include "messages/core/Forms.h"
#include "messages/core/Message.h"

namespace Orvu {
namespace {

constexpr Word kCommandWords[] = {
    {EditCommandUnknown, "unknown", WrittenOnly},
    {EditCommandAddRegion, "addRegion"},
    {EditCommandAddRegionBase, "addRegionBase"},
    {EditCommandAddRule, "addRule"},
    {EditCommandAddRuleBase, "addRuleBase"},
    {EditCommandAddFont, "addFont"},
    {EditCommandAddFontBase, "addFontBase"},
    {EditCommandAddConnector, "addConnector"},
    {EditCommandAddConnectorBase, "addConnectorBase"},
    {EditCommandAddDescriptor, "addDescriptor"},
    {EditCommandAddDescriptorSwitch, "addDescriptorSwitch"},
    {EditCommandAddDescriptorBase, "addDescriptorBase"},
    {EditCommandAddTransitionBase, "addTransitionBase"},
    {EditCommandAddImportBase, "addImportBase"},
    {EditCommandAddImportedDocumentBase, "addImportedDocumentBase"},
    {EditCommandAddImportNCL, "addImportNCL"},
    {EditCommandAddNode, "addNode"},
    {EditCommandAddLink, "addLink"},
    {EditCommandAddInterface, "addInterface"},
    {EditCommandRemoveRegion, "removeRegion"},
    {EditCommandRemoveRegionBase, "removeRegionBase"},
    {EditCommandRemoveRule, "removeRule"},
    {EditCommandRemoveRuleBase, "removeRuleBase"},
    {EditCommandRemoveFont, "removeFont"},
    {EditCommandRemoveFontBase, "removeFontBase"},
    {EditCommandRemoveConnector, "removeConnector"},
    {EditCommandRemoveConnectorBase, "removeConnectorBase"},
    {EditCommandRemoveDescriptor, "removeDescriptor"},
    {EditCommandRemoveDescriptorSwitch, "removeDescriptorSwitch"},
    {EditCommandRemoveDescriptorBase, "removeDescriptorBase"},
    {EditCommandRemoveTransitionBase, "removeTransitionBase"},
    {EditCommandRemoveImportBase, "removeImportBase"},
    {EditCommandRemoveImportedDocumentBase, "removeImportedDocumentBase"},
    {EditCommandRemoveImportNCL, "removeImportNCL"},
    {EditCommandRemoveNode, "removeNode"},
    {EditCommandRemoveLink, "removeLink"},
    {EditCommandRemoveInterface, "removeInterface"},
    {EditCommandSetPropertyValue, "setPropertyValue"},
};
constexpr auto kCommands = vocabulary(kCommandWords, EditCommandUnknown);

bool hasAttributes(const GingaEditCommand& command)
{
    return !command.alias.empty() || !command.documentURI.empty() || !command.fontFamily.empty() ||
           !command.fontStyle.empty() || !command.fontWeight.empty();
}

/// What NCL identifies by attributes instead of an id: imports and fonts.
void writeAttributes(JsonWriter& json, const GingaEditCommand& command)
{
    json.putIf(!command.alias.empty(), "alias", command.alias);
    json.putIf(!command.documentURI.empty(), "documentURI", command.documentURI);
    json.putIf(!command.fontFamily.empty(), "fontFamily", command.fontFamily);
    json.putIf(!command.fontStyle.empty(), "fontStyle", command.fontStyle);
    json.putIf(!command.fontWeight.empty(), "fontWeight", command.fontWeight);
}

void readAttributes(JsonReader& json, GingaEditCommand& command)
{
    json.optional("alias", command.alias);
    json.optional("documentURI", command.documentURI);
    json.optional("fontFamily", command.fontFamily);
    json.optional("fontStyle", command.fontStyle);
    json.optional("fontWeight", command.fontWeight);
}

}  // namespace

GingaEditCommand::GingaEditCommand() : Serializable(kDataType) {}
GingaEditCommand::~GingaEditCommand() = default;

const char* GingaEditCommand::cmdTypeString(EditCommand value)
{
    return kCommands.word(value);
}
EditCommand GingaEditCommand::stringToCmd(std::string word)
{
    return kCommands.value(word);
}

void write(JsonWriter& json, GingaEditCommand& command)
{
    json.headerIfSet(command);
    json.putIf(!command.appid.empty(), "appid", command.appid);
    json.putIf(!command.documentId.empty(), "documentId", command.documentId);
    json.putIf(command.command != EditCommandUnknown, "command", asWord(command.command, kCommands));
    json.putIf(!command.parentId.empty(), "parentId", command.parentId);
    if (!command.elementId.empty()) {
        json.put("elementId", command.elementId);  // an id makes the attributes superfluous
    } else if (hasAttributes(command)) {
        json.object("elementId", [&] { writeAttributes(json, command); });
    }
    json.putIf(!command.xml.empty(), "xml", command.xml);
    json.putIf(!command.nodeId.empty(), "nodeId", command.nodeId);
    json.putIf(!command.propertyId.empty(), "propertyId", command.propertyId);
    json.putIf(!command.value.empty(), "value", command.value);
}

void read(JsonReader& json, GingaEditCommand& command)
{
    json.optional("appid", command.appid);
    json.optional("documentId", command.documentId);
    json.optional("command", asWord(command.command, kCommands));
    json.optional("parentId", command.parentId);
    if (!json.optional("elementId", command.elementId)) {
        json.object("elementId", [&](JsonReader& attributes) { readAttributes(attributes, command); });
    }
    json.optional("xml", command.xml);
    json.optional("nodeId", command.nodeId);
    json.optional("propertyId", command.propertyId);
    json.optional("value", command.value);
}

MESSAGE(GingaEditCommand, Formatted)

}  // namespace Orvu
