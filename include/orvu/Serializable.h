#pragma once

#include <string>

#include "orvu/Export.h"

namespace Orvu {

/// The type of a message. On the wire it travels as a word (see Serializable::dataTypeString), never as the number.
enum DataType : unsigned int {
    DataTypeUnknown = 0,
    DataTypeEmptyData = 1,  ///< Never read back from a "HEADER".
    DataTypeIllegalArgument = 2,
    DataTypePlatformUnavailable = 3,
    DataTypeFormatNotSupported = 4,
    DataTypeActionNotSupported = 5,
    DataTypeParameterNotSupported = 6,
    DataTypeSuccess = 7,
    DataTypeCurrentService = 8,
    DataTypeServiceList = 9,
    DataTypeServiceSelection = 10,
    DataTypeEmptyChannelList = 11,
    DataTypeServiceNotFound = 12,
    DataTypeResourceNotFound = 13,
    DataTypeResourceUnavailable = 14,
    DataTypeNoSignal = 15,
    DataTypeTableNotFound = 16,
    DataTypeCannotConnectToServer = 17,
    DataTypeBounds = 18,
    DataTypePos = 19,  ///< Never read back from a "HEADER".
    DataTypeServiceComponent = 20,
    DataTypeComponents = 21,
    DataTypeServiceComponentTag = 22,
    DataTypeServiceCompTagAction = 23,
    DataTypeServiceTime = 24,
    DataTypePairMobileAppScreen = 25,
    DataTypeConfirmationScreen = 26,
    DataTypeQrCodeScreen = 27,
    DataTypePinScreen = 28,
    DataTypeBinaryNIT = 29,
    DataTypeBinarySDT = 30,
    DataTypeBinaryPAT = 31,
    DataTypeBinaryBAT = 32,
    DataTypeBinaryPMT = 33,
    DataTypeBinaryEPG = 34,
    DataTypeGingaApp = 35,
    DataTypeGingaAppList = 36,
    DataTypeGingaAppAction = 37,
    DataTypeDisplayLayers = 38,
    DataTypeNetworkInterfaces = 39,
    DataTypePlatformCapabilities = 40,
    DataTypeDrmSystem = 41,
    DataTypeDrms = 42,
    DataTypeCodecsSupported = 43,  ///< Never read back from a "HEADER".
    DataTypePlayer = 44,
    DataTypePlayers = 45,
    DataTypePlayerAction = 46,
    DataTypeProperty = 47,
    DataTypeNodeProperties = 48,
    DataTypePersistent = 49,
    DataTypePersistProperty = 50,
    DataTypePersistentVariableValue = 51,  ///< Never read back from a "HEADER".
    DataTypeFile = 52,
    DataTypeDirectory = 53,
    DataTypeGingaFileList = 54,
    DataTypeDsmccFileList = 55,
    DataTypeEmptyResponse = 56,
    DataTypeStreamEventRequest = 57,
    DataTypeStreamEventDispose = 58,
    DataTypeNclEvent = 59,
    DataTypeNclNode = 60,
    DataTypeNclNodeList = 61,
    DataTypeNclNodeAction = 62,
    DataTypeKeyset = 63,
    DataTypeGingaEditCommand = 64,
    DataTypeTargetAppFilter = 65,
    DataTypeTargetApp = 66,
    DataTypeTargetApps = 67,
    DataTypeTargetAppAction = 68,
    DataTypeTargetAppPerformAction = 69,
    DataTypeDeepLink = 70,
    DataTypeEventInfo = 71,
    DataTypeEventInfoList = 72,
    DataTypeContentDescription = 73,        ///< Never read back from a "HEADER".
    DataTypeLinkageDescriptor = 74,         ///< Never read back from a "HEADER".
    DataTypeHyperlinkDescriptor = 75,       ///< Never read back from a "HEADER".
    DataTypeSeriesDescriptor = 76,          ///< Never read back from a "HEADER".
    DataTypeEventGroupDescriptor = 77,      ///< Never read back from a "HEADER".
    DataTypeEventGroup = 78,                ///< Never read back from a "HEADER".
    DataTypeComponentGroup = 79,            ///< Never read back from a "HEADER".
    DataTypeComponentGroupDescriptor = 80,  ///< Never read back from a "HEADER".
    DataTypeCAUnit = 81,                    ///< Never read back from a "HEADER".
    DataTypeServiceBindTokens = 82,
    DataTypeServiceBindTokensList = 83,
    DataTypeServiceBoundTokenList = 84,
    DataTypeRevokeToken = 85,
    DataTypeClientApplication = 86,
    DataTypeClientApplicationList = 87,
    DataTypeBinaryDataMultipart = 88,
    DataTypeScreenDescription = 89,
    DataTypeScreenItem = 90,
    DataTypeMissingArgument = 91,
    DataTypeTvServiceNotInUse = 92,
    DataTypeStreamPidsRequest = 93,
    DataTypeStreamPidsResponse = 94,
    DataTypeSiCacheUnavailable = 95,
    DataTypeRtkChangeComponentStatus = 96,
};

/// The base of every message that crosses a socket: one JSON object, whose "HEADER" member names its type.
///
/// Unless a class or a field says otherwise:
///
/// - The type of a class is its `static constexpr DataType kDataType`.
/// - serialize() writes formatted text (indented, one member a line), with "HEADER" while the header flag is set.
/// - deserialize(text) requires no key and is true for any JSON text; the reader that gives a reason is false.
/// - Texts are UTF-8 and empty by default, numbers have 32 bits. Both are carried as they are: nothing checks their
///   form or range.
/// - A message owns what its pointers point to and deletes it. A function that appends a pointer takes it: it deletes
///   the element when it is out of memory.
///
/// A message has no locks: use it from one thread at a time. Static functions keep no state and may be called from any
/// thread.
class ORVU_EXPORT Serializable {
public:
    explicit Serializable(DataType dataType);
    virtual ~Serializable();

    /// Writes the message as JSON. The caller releases the text with `free`. Null when out of memory, and for more than
    /// 1000 levels of nesting.
    virtual char* serialize() = 0;

    /// Reads the message from NUL-terminated JSON text. A missing key leaves its field as it was; lists are appended
    /// to. False when the text is null, is not JSON, or lacks what the message requires, and when out of memory. What
    /// was read before the failure stays. Some messages let `std::invalid_argument` and `std::out_of_range` of a number
    /// text pass; they say so.
    virtual bool deserialize(const char* text) = 0;

    /// The same, and why it failed. Messages that know reasons override it and list their codes; for all others it
    /// reads nothing, is false and leaves `error` alone: call deserialize(text).
    virtual bool deserialize(const char* text, unsigned char& error);

    /// The type given at construction.
    DataType getDataType() const { return dataType_; }

    /// Whether serialize() writes the "HEADER" member. True at construction. Lists and containers ignore it for
    /// themselves and switch it off, for good, in the messages that they carry: a message that was once written in a
    /// list has no "HEADER" when you send it alone, and its receiver does not know its type. Call serializeHeader(true)
    /// before you send it.
    void serializeHeader(bool on) { headerFlag_ = on; }

    /// The wire name of a type, "" for a value outside the catalogue. Never null; the text is static.
    static const char* dataTypeString(DataType type);

    /// The type that the "HEADER" member of `text` names; DataTypeUnknown without one, for a word that the library does
    /// not know or never reads back, and when `text` is null or not JSON. The member is found in any letter case, its
    /// value is compared exactly.
    static DataType deserializeHeader(const char* text);

    /// The same JSON, formatted, without its "HEADER" member; null when `text` is null or not JSON, and when out
    /// of memory. Takes `text`, which `malloc` must have made, and releases it in any case. The caller releases the
    /// result with `free`.
    static char* removeHeader(const char* text);

    /// A new, empty message of the type; the caller deletes it. Null for a type that it does not make, and when out of
    /// memory; an UnknowRequest for DataTypeUnknown.
    static Serializable* factory(DataType type);

    /// A new message of the type that the "HEADER" member of `text` names, filled from it; the caller deletes it. It
    /// takes the place of deserializeHeader(), factory() and deserialize(), and checks the text once. Null when `text`
    /// is null or not JSON, names no type that factory() makes, or lacks what the type requires, and when out of
    /// memory. It throws nothing.
    static Serializable* parse(const char* text);

    /// The same; `reason` says why there is no message, in one line such as "line 3, column 5: schedule: required,
    /// missing", and is empty when there is one.
    static Serializable* parse(const char* text, std::string& reason);

    /// Reads the message from a parsed item (a `cJSON*`, passed untyped), through the virtual deserialize(text).
    /// False for a null item, when deserialize(text) is, and when out of memory. The item stays the caller's.
    bool deserializeObject(void* item);

    /// The same through the error-reporting reader; a null item sets `error` to 1.
    bool deserializeObject(void* item, unsigned char& error);

protected:
    /// A copy is a message of the same type whose header flag is set; an assignment changes neither.
    Serializable(const Serializable& other) : dataType_(other.dataType_) {}
    Serializable& operator=(const Serializable&) { return *this; }
    /// For copies that keep the flag.
    void copyHeaderFlag(const Serializable& other) { headerFlag_ = other.headerFlag_; }

private:
    friend class JsonWriter;
    friend class ShownHeader;

    bool headerFlag_ = true;
    const DataType dataType_;
};

}  // namespace Orvu
