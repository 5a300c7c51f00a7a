#pragma once

#include <string>
#include <vector>

#include "orvu/GingaEditCommand.h"  // its classes used to be declared here
#include "orvu/Serializable.h"
#include "orvu/Status.h"

namespace Orvu {

/// What an NCL node is.
enum NclNodeType : int {
    NclNodeTypeUnknown = 0,   ///< "unknown"
    NclNodeTypeMedia = 1,     ///< "media"
    NclNodeTypeContext = 2,   ///< "context"
    NclNodeTypeSwitch = 3,    ///< "switch"
    NclNodeTypeArea = 4,      ///< "area"
    NclNodeTypeProperty = 5,  ///< "property"
    NclNodeTypePort = 6,      ///< "port"
};

/// A reference to an NCL document. Travels nested, and shares the type of NCLEvent.
class ORVU_EXPORT NCLDocument : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNclEvent;  ///< That of NCLEvent; neither writes a "HEADER".

    std::string id;        ///< Identifies the document.
    std::string fileName;  ///< Name of the document's file.

    NCLDocument();
    ~NCLDocument() override;
    NCLDocument(const NCLDocument&) = default;
    NCLDocument& operator=(const NCLDocument&) = default;

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The state machine of one event of a node. Wire name "nclEvent"; travels nested.
class ORVU_EXPORT NCLEvent : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNclEvent;

    StatusType state = StatusTypeUnknown;  ///< What the event is doing, such as occurring or sleeping.
    int occurrences = 0;                   ///< How often it has occurred.
    bool* prepared = nullptr;              ///< Owned; null while it is not known.

    NCLEvent();
    ~NCLEvent() override;
    NCLEvent(const NCLEvent&) = delete;
    NCLEvent& operator=(const NCLEvent&) = delete;

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A node of an NCL document, with its interfaces. Wire name "nclNode"; also the element of an NCLNodeList.
class ORVU_EXPORT NCLNode : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNclNode;

    std::string appid;                      ///< Identifies the interactive application; left out when empty.
    std::string documentId;                 ///< Identifies the NCL document; left out when empty.
    std::string id;                         ///< The node's id in its document.
    NclNodeType type = NclNodeTypeUnknown;  ///< What kind of element it is.
    std::string mimeType;                   ///< MIME type of a media node; left out when empty.
    NCLEvent* presentationEvent = nullptr;  ///< Owned, may be null.
    NCLEvent* preparationEvent = nullptr;   ///< Owned, may be null.
    std::vector<NCLNode*> interfaces;       ///< Owned; deleted with the node.

    NCLNode();
    ~NCLNode() override;
    NCLNode(const NCLNode&) = delete;
    NCLNode& operator=(const NCLNode&) = delete;

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* nodeTypeString(NclNodeType value);
    /// The value of a word, compared exactly; unknown for any other text.
    static NclNodeType stringToNode(std::string word);
    /// Takes `event`. The one held before is the caller's from then on.
    void setPresentationEvent(NCLEvent* event);
    /// Takes `event`. The one held before is the caller's from then on.
    void setPreparationEvent(NCLEvent* event);
    /// Appends `node` and takes it; null is ignored.
    void addInterface(NCLNode* node);

    /// Compact. Switches the header flag of every interface off, for good: see serializeHeader(true). At most 500 nodes
    /// deep.
    char* serialize() override;
    /// Interfaces are appended.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The nodes of a composition. Wire name "nclNodeList".
class ORVU_EXPORT NCLNodeList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNclNodeList;

    std::string appid;            ///< Identifies the interactive application; left out when empty.
    std::string documentId;       ///< Identifies the NCL document; left out when empty.
    std::string compositeId;      ///< NCLNode::id of the composition; left out when empty.
    std::vector<NCLNode*> nodes;  ///< Owned; deleted with the list.

    NCLNodeList();
    ~NCLNodeList() override;
    NCLNodeList(const NCLNodeList&) = delete;
    NCLNodeList& operator=(const NCLNodeList&) = delete;

    /// Appends `node` and takes it; null is ignored.
    void addNode(NCLNode* node);
    /// The nodes alone, without "HEADER" and ids; formatted. The caller releases the text with `free`; null when out of
    /// memory.
    char* serializeResponse();

    /// Always with "HEADER". Switches the header flag of every node off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the nodes under "nodes", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// An action on one node, or on one of its interfaces. Wire name "nclNodeAction".
class ORVU_EXPORT NCLNodeAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeNclNodeAction;

    std::string appid;                      ///< Identifies the interactive application; left out when empty.
    std::string documentId;                 ///< Identifies the NCL document; left out when empty.
    std::string nodeId;                     ///< NCLNode::id of the node; left out when empty.
    StatusType action = StatusTypeUnknown;  ///< One that validateArguments() accepts, such as start.
    std::string interface;                  ///< Name of the interface that is acted on; empty for the node itself.
    bool hasInterface = false;              ///< "interface" was present in the text read. Does not travel.
    bool hasValue = false;                  ///< "value" was present in the text read. Does not travel.
    std::string value;                      ///< The value to set, as text; never interpreted here.

    NCLNodeAction();
    ~NCLNodeAction() override;
    NCLNodeAction(const NCLNodeAction&) = default;
    NCLNodeAction& operator=(const NCLNodeAction&) = default;

    /// Whether the action is one that a node knows and the interface, where it was given, is a name: not empty, and
    /// without "<", "&" and double quotes. The library does not call it: the application does.
    bool validateArguments();

    /// Compact.
    char* serialize() override;
    /// `hasInterface` and `hasValue` say what the last text read had.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
