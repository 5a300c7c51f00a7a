#include "orvu/GingaApps.h"
#include "orvu/Ncl.h"
#include "support/Vocabularies.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// Rows of words that all read back, except the first, which any other word reads as.
std::vector<WordRow> rowsOf(const std::vector<std::string>& words)
{
    std::vector<WordRow> rows;
    for (int i = 0; i < static_cast<int>(words.size()); ++i)
        rows.push_back({i, words[static_cast<std::size_t>(i)], i});
    return rows;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Ginga, AVocabulary,
    testing::Values(wordsOf<GingaAppType>("GingaAppType", &RestGingaApp::typeToString, &RestGingaApp::stringToType, 0,
                                          rowsOf({"unknown", "Ginga-NCL", "Ginga-HTML5"})),
                    wordsOf<GingaControlCode>("GingaControlCode", &RestGingaApp::controlCodeToString,
                                              &RestGingaApp::stringToControlCode, 0,
                                              rowsOf({"unknown", "AUTOSTART", "PRESENT", "STORED_AUTOSTART",
                                                      "STORED_PRESENT", "STORED_REMOVE", "DESTROY", "KILL"})),
                    wordsOf<GingaState>("GingaState", &RestGingaApp::stateToString, &RestGingaApp::stringToState, 0,
                                        rowsOf({"unknown", "running", "stored", "unloaded", "loading", "loaded"})),
                    wordsOf<NclNodeType>("NclNodeType", &NCLNode::nodeTypeString, &NCLNode::stringToNode, 0,
                                         rowsOf({"unknown", "media", "context", "switch", "area", "property", "port"})),
                    wordsOf<EditCommand>("EditCommand", &GingaEditCommand::cmdTypeString,
                                         &GingaEditCommand::stringToCmd, 0,
                                         rowsOf({"unknown",
                                                 "addRegion",
                                                 "addRegionBase",
                                                 "addRule",
                                                 "addRuleBase",
                                                 "addFont",
                                                 "addFontBase",
                                                 "addConnector",
                                                 "addConnectorBase",
                                                 "addDescriptor",
                                                 "addDescriptorSwitch",
                                                 "addDescriptorBase",
                                                 "addTransitionBase",
                                                 "addImportBase",
                                                 "addImportedDocumentBase",
                                                 "addImportNCL",
                                                 "addNode",
                                                 "addLink",
                                                 "addInterface",
                                                 "removeRegion",
                                                 "removeRegionBase",
                                                 "removeRule",
                                                 "removeRuleBase",
                                                 "removeFont",
                                                 "removeFontBase",
                                                 "removeConnector",
                                                 "removeConnectorBase",
                                                 "removeDescriptor",
                                                 "removeDescriptorSwitch",
                                                 "removeDescriptorBase",
                                                 "removeTransitionBase",
                                                 "removeImportBase",
                                                 "removeImportedDocumentBase",
                                                 "removeImportNCL",
                                                 "removeNode",
                                                 "removeLink",
                                                 "removeInterface",
                                                 "setPropertyValue"}))),
    tableName);

}  // namespace OrvuTests
