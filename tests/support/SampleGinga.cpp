#include "support/SampleFields.h"

namespace OrvuTests {

using namespace Orvu;

void fill(RestGingaApp& app)
{
    app.serviceContextId = "1.2.01";
    app.appid = "0.1.1";
    app.name = "Enquete";
    app.type = GingaAppTypeGingaNCL;
    app.controlCode = GingaControlCodeAutostart;
    app.state = GingaStateRunning;
    app.entryPoint = "main.ncl";
}

void fill(GingaAppList& list)
{
    list.serviceContextId = "1.2.01";
    list.addGingaApp(filled<RestGingaApp>());
}

void fill(GingaAppAction& action)
{
    action.appid = "0.1.1";
    action.action = StatusTypeStart;
}

void fill(NCLDocument& document)
{
    document.id = "principal";
    document.fileName = "main.ncl";
}

void fill(NCLEvent& event)
{
    event.prepared = new bool(true);
    event.state = StatusTypeOccurring;
    event.occurrences = 2;
}

void fill(NCLNode& node)
{
    node.appid = "0.1.1";
    node.documentId = "principal";
    node.id = "video";
    node.type = NclNodeTypeMedia;
    node.mimeType = "video/mp4";
    node.setPresentationEvent(filled<NCLEvent>());
    node.setPreparationEvent(filled<NCLEvent>());
    auto* const area = new NCLNode;
    area->id = "intervalo";
    area->type = NclNodeTypeArea;
    node.addInterface(area);
}

void fill(NCLNodeList& list)
{
    list.appid = "0.1.1";
    list.documentId = "principal";
    list.compositeId = "corpo";
    list.addNode(filled<NCLNode>());
}

void fill(NCLNodeAction& action)
{
    action.appid = "0.1.1";
    action.documentId = "principal";
    action.nodeId = "video";
    action.action = StatusTypeSet;
    action.interface = "soundLevel";
    action.hasInterface = true;
    action.hasValue = true;
    action.value = "0.5";
}

void fill(GingaEditCommand& command)
{
    command.appid = "0.1.1";
    command.documentId = "principal";
    command.command = EditCommandRemoveFont;
    command.parentId = "base";
    command.xml = "<font fontFamily=\"Tiresias\"/>";
    command.nodeId = "video";
    command.propertyId = "soundLevel";
    command.value = "0.5";
    command.alias = "fontes";
    command.documentURI = "fontes.ncl";
    command.fontFamily = "Tiresias";
    command.fontStyle = "normal";
    command.fontWeight = "bold";
}

void fill(Property& property)
{
    property.name = "soundLevel";
    property.value = "0.5";
}

void fill(NodeProperties& properties)
{
    properties.appid = "0.1.1";
    properties.nodeId = "video";
    properties.varName = "soundLevel";
    properties.addProperty(filled<Property>());
}

void fill(PersistentProperties& properties)
{
    properties.serviceContextId = "1.2.01";
    properties.appid = "0.1.1";
    properties.varName = "pontos";
    properties.addProperty(filled<Property>());
}

void fill(PersistProperty& persist)
{
    persist.serviceContextId = "1.2.01";
    persist.appid = "0.1.1";
    persist.varName = "pontos";
    persist.varValue = "42";
    fill(persist.property);
}

void fill(PersistentVariableValue& variable)
{
    variable.value = "42";
}

void fill(File& file)
{
    file.name = "main.ncl";
    file.size = 7;
    file.mimeType = "application/x-ginga-ncl";
    file.payload = "<ncl/>\n";
    file.path = "/enquete";
}

void fill(Directory& directory)
{
    directory.name = "media";
}

void fill(GingaFileList& list)
{
    list.appid = "0.1.1";
    list.path = "/enquete";
    list.addFile(filled<File>());
    list.addDir(filled<Directory>());
}

void fill(DsmccFileList& list)
{
    list.componentTag = 64;
    list.carouselId = 1;
    list.path = "/enquete";
    list.addFile(filled<File>());
    list.addDir(filled<Directory>());
}

void fill(StreamEventRequest& request)
{
    request.componentTag = 64;
    request.carouselId = 1;
    request.protocol = "tcp";
    request.handle = "eventos";
    request.host = "192.0.2.10";
    request.url = "dsmcc://64/eventos";
    request.port = 7000;
}

void fill(StreamEventDispose& dispose)
{
    dispose.handle = 7;
}

void fill(BinaryDataMultipart& message)
{
    message.serviceContextId = "1.2.01";
    message.addBinaryData(filled<BinaryData>(DataTypeBinaryDataMultipart));
    message.timestamp = "2026-11-21 20:30:00";
}

void fill(GingaKeyset& keyset)
{
    keyset.addKeyset({"interactive_keys", "numeric_keys"});
    keyset.releaseKeyset = true;
}

}  // namespace OrvuTests
