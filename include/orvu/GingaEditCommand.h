#pragma once

#include <string>

#include "orvu/Serializable.h"

namespace Orvu {

/// An NCL editing command.
enum EditCommand : int {
    EditCommandUnknown = 0,                      ///< "unknown"
    EditCommandAddRegion = 1,                    ///< "addRegion"
    EditCommandAddRegionBase = 2,                ///< "addRegionBase"
    EditCommandAddRule = 3,                      ///< "addRule"
    EditCommandAddRuleBase = 4,                  ///< "addRuleBase"
    EditCommandAddFont = 5,                      ///< "addFont"
    EditCommandAddFontBase = 6,                  ///< "addFontBase"
    EditCommandAddConnector = 7,                 ///< "addConnector"
    EditCommandAddConnectorBase = 8,             ///< "addConnectorBase"
    EditCommandAddDescriptor = 9,                ///< "addDescriptor"
    EditCommandAddDescriptorSwitch = 10,         ///< "addDescriptorSwitch"
    EditCommandAddDescriptorBase = 11,           ///< "addDescriptorBase"
    EditCommandAddTransitionBase = 12,           ///< "addTransitionBase"
    EditCommandAddImportBase = 13,               ///< "addImportBase"
    EditCommandAddImportedDocumentBase = 14,     ///< "addImportedDocumentBase"
    EditCommandAddImportNCL = 15,                ///< "addImportNCL"
    EditCommandAddNode = 16,                     ///< "addNode"
    EditCommandAddLink = 17,                     ///< "addLink"
    EditCommandAddInterface = 18,                ///< "addInterface"
    EditCommandRemoveRegion = 19,                ///< "removeRegion"
    EditCommandRemoveRegionBase = 20,            ///< "removeRegionBase"
    EditCommandRemoveRule = 21,                  ///< "removeRule"
    EditCommandRemoveRuleBase = 22,              ///< "removeRuleBase"
    EditCommandRemoveFont = 23,                  ///< "removeFont"
    EditCommandRemoveFontBase = 24,              ///< "removeFontBase"
    EditCommandRemoveConnector = 25,             ///< "removeConnector"
    EditCommandRemoveConnectorBase = 26,         ///< "removeConnectorBase"
    EditCommandRemoveDescriptor = 27,            ///< "removeDescriptor"
    EditCommandRemoveDescriptorSwitch = 28,      ///< "removeDescriptorSwitch"
    EditCommandRemoveDescriptorBase = 29,        ///< "removeDescriptorBase"
    EditCommandRemoveTransitionBase = 30,        ///< "removeTransitionBase"
    EditCommandRemoveImportBase = 31,            ///< "removeImportBase"
    EditCommandRemoveImportedDocumentBase = 32,  ///< "removeImportedDocumentBase"
    EditCommandRemoveImportNCL = 33,             ///< "removeImportNCL"
    EditCommandRemoveNode = 34,                  ///< "removeNode"
    EditCommandRemoveLink = 35,                  ///< "removeLink"
    EditCommandRemoveInterface = 36,             ///< "removeInterface"
    EditCommandSetPropertyValue = 37,            ///< "setPropertyValue"
};

/// A live-editing command. Wire name "gingaEditCommand".
class ORVU_EXPORT GingaEditCommand : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeGingaEditCommand;

    std::string appid;                         ///< Identifies the interactive application.
    std::string documentId;                    ///< The document that is edited.
    EditCommand command = EditCommandUnknown;  ///< What to do; left out when unknown.
    std::string elementId;                     ///< The element to remove or act on.
    std::string parentId;                      ///< The base or composition that holds the element.
    std::string xml;                           ///< The element to add, as XML.
    std::string nodeId;                        ///< The node whose property is set.
    std::string propertyId;                    ///< The property to set.
    std::string value;                         ///< Its new value, as text.
    std::string alias;        ///< Of an import. Written only while `elementId` is empty, as the next four.
    std::string documentURI;  ///< Of an import.
    std::string fontFamily;   ///< Of a font.
    std::string fontStyle;    ///< Of a font.
    std::string fontWeight;   ///< Of a font.

    GingaEditCommand();
    ~GingaEditCommand() override;
    GingaEditCommand(const GingaEditCommand&) = default;
    GingaEditCommand& operator=(const GingaEditCommand&) = default;

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* cmdTypeString(EditCommand value);
    /// The value of a word, compared exactly; unknown for any other text.
    static EditCommand stringToCmd(std::string word);

    /// Empty texts and an unknown command are left out.
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
