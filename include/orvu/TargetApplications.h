#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"
#include "orvu/Status.h"

namespace Orvu {

/// Where a target application runs.
enum PriorityType : int {
    PriorityTypeUnknown = 0,     ///< "unknown"
    PriorityTypeForeground = 1,  ///< "foreground"
    PriorityTypeBackground = 2,  ///< "background"
};

/// Which links a target application handles. Wire name "targetAppFilter".
class ORVU_EXPORT TargetAppFilter : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeTargetAppFilter;

    std::string scheme;  ///< URL scheme, such as "https".
    std::string host;    ///< Host of the URL; left out when empty.
    std::string path;    ///< Path of the URL, with or without its first slash; left out when empty.

    TargetAppFilter();
    ~TargetAppFilter() override;
    TargetAppFilter(const TargetAppFilter&) = default;
    TargetAppFilter& operator=(const TargetAppFilter&) = default;

    const std::string& getScheme() const { return scheme; }
    void setScheme(const std::string& value) { scheme = value; }
    const std::string& getHost() const { return host; }
    void setHost(const std::string& value) { host = value; }
    const std::string& getPath() const { return path; }
    void setPath(const std::string& value) { path = value; }

    /// The filter as a URL: scheme, host and, where there is one, path; "" without a scheme or a host.
    std::string getAsUrl();

    char* serialize() override;
    /// "scheme" is required.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// An application on the TV that a companion may address. Wire name "targetApp"; also the element of a TargetAppList.
class ORVU_EXPORT TargetApp : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeTargetApp;

    std::string targetId;                            ///< Identifies the target; any text, never checked here.
    std::string displayName;                         ///< Name shown to the user.
    std::string canonicalName;                       ///< Written only while `writeCanonicalName` is set.
    std::vector<TargetAppFilter*> filters;           ///< Owned; deleted with the target.
    bool running = false;                            ///< Written only while `writeRunningState` is set.
    PriorityType priority = PriorityTypeForeground;  ///< Written only while `writeRunningState` is set.
    bool writeCanonicalName = false;                 ///< Does not travel, so reading never sets it.
    bool writeRunningState = false;                  ///< Does not travel, so reading never sets it.
    bool targetIdRead = false;                       ///< Set by reading a text with "targetId".
    bool displayNameRead = false;                    ///< Set by reading a text with "displayName".
    bool canonicalNameRead = false;                  ///< The last "canonicalName" read was not empty.

    TargetApp();
    ~TargetApp() override;
    TargetApp(const TargetApp&) = delete;
    TargetApp& operator=(const TargetApp&) = delete;

    const std::string& getTargetId() const { return targetId; }
    void setTargetId(const std::string& value) { targetId = value; }
    const std::string& getDisplayName() const { return displayName; }
    void setDisplayName(const std::string& value) { displayName = value; }
    const std::string& getCanonicalName() const { return canonicalName; }
    void setCanonicalName(const std::string& value) { canonicalName = value; }
    bool isRunning() const { return running; }
    void setRunning(bool value) { running = value; }
    PriorityType getPriority() const { return priority; }
    void setPriority(PriorityType value) { priority = value; }
    bool isWriteCanonicalName() const { return writeCanonicalName; }
    void setWriteCanonicalName(bool value) { writeCanonicalName = value; }
    bool isWriteRunningState() const { return writeRunningState; }
    void setWriteRunningState(bool value) { writeRunningState = value; }
    bool isTargetIdRead() const { return targetIdRead; }
    bool isDisplayNameRead() const { return displayNameRead; }
    bool isCanonicalNameRead() const { return canonicalNameRead; }

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* priorityTypeString(PriorityType value);
    /// The value of a word, compared exactly; unknown for any other text.
    static PriorityType stringToPriority(std::string word);
    /// Appends `filter` and takes it; null is ignored.
    void addFilter(TargetAppFilter* filter);
    /// A copy, which the caller deletes: its header flag is set, its `...Read` flags are false. Null when out of
    /// memory.
    TargetApp* clone();

    /// Switches the header flag of every filter off, for good: see serializeHeader(true).
    char* serialize() override;
    /// "filters" is required, and at least one filter must be held afterwards; what was read before stays. Filters are
    /// appended.
    bool deserialize(const char* text) override;
    /// The same, with stricter rules of identity. `error` becomes 1 for a text that is null or not JSON, 2 when neither
    /// a display name is given nor an id known, 3 without "filters", 4 without any filter held, 5 when neither a
    /// canonical name nor an id is known.
    bool deserialize(const char* text, unsigned char& error) override;
};

/// The target applications. Wire name "targetApps".
class ORVU_EXPORT TargetAppList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeTargetApps;

    std::string targetId;             ///< TargetApp::targetId of one target; left out when empty.
    std::vector<TargetApp*> targets;  ///< Owned; deleted with the list.
    bool writeCanonicalNames = true;  ///< Given to every target when the list is written. Does not travel.

    TargetAppList();
    ~TargetAppList() override;
    TargetAppList(const TargetAppList&) = delete;
    TargetAppList& operator=(const TargetAppList&) = delete;

    const std::string& getTargetId() const { return targetId; }
    void setTargetId(const std::string& value) { targetId = value; }
    bool isWriteCanonicalNames() const { return writeCanonicalNames; }
    void setWriteCanonicalNames(bool value) { writeCanonicalNames = value; }

    /// Appends `target` and takes it; null is ignored.
    void addTargetApp(TargetApp* target);

    /// Always with "HEADER". Switches the header flag of every target off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the targets under "targetApps", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Starts or stops a target application, or opens a link. Wire name "targetAppAction".
class ORVU_EXPORT TargetAppAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeTargetAppAction;

    std::string url;                                    ///< With a URL nothing else is written.
    std::string targetId;                               ///< Written only without a `url`.
    TargetStatusType action = TargetStatusTypeUnknown;  ///< Written only without a `url`.
    PriorityType priority = PriorityTypeUnknown;        ///< Never written.
    bool urlRead = false;                               ///< Set by reading a text with "url".
    bool targetIdRead = false;                          ///< Set by reading a text with "targetId".
    bool actionRead = false;                            ///< Set by reading a text with "action".
    bool priorityRead = false;                          ///< Set by reading a text with "priority".

    TargetAppAction();
    ~TargetAppAction() override;
    TargetAppAction(const TargetAppAction&) = default;
    TargetAppAction& operator=(const TargetAppAction&) = default;

    const std::string& getUrl() const { return url; }
    void setUrl(const std::string& value) { url = value; }
    const std::string& getTargetId() const { return targetId; }
    void setTargetId(const std::string& value) { targetId = value; }
    TargetStatusType getAction() const { return action; }
    void setAction(TargetStatusType value) { action = value; }
    PriorityType getPriority() const { return priority; }
    void setPriority(PriorityType value) { priority = value; }
    bool isUrlRead() const { return urlRead; }
    bool isTargetIdRead() const { return targetIdRead; }
    bool isActionRead() const { return actionRead; }
    bool isPriorityRead() const { return priorityRead; }

    char* serialize() override;
    /// False for a text that is not an object, and for a "targetId", "action" or "priority" that is a number or a
    /// boolean; what was read before stays.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Tells an application to start or stop a target. Wire name "targetAppPerformAction".
class ORVU_EXPORT TargetAppPerformAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeTargetAppPerformAction;

    TargetStatusType action = TargetStatusTypeUnknown;  ///< Start or stop.
    PriorityType priority = PriorityTypeForeground;     ///< Where it runs. Default: foreground.
    std::string canonicalName;                          ///< Canonical name of the target; left out when empty.
    bool actionRead = false;                            ///< Set by reading a text with "action".
    bool priorityRead = false;                          ///< Set by reading a text with "priority".
    bool canonicalNameRead = false;                     ///< Set by reading a text with "canonicalName".
    std::string reservedText;                           ///< Does not travel.

    TargetAppPerformAction();
    ~TargetAppPerformAction() override;
    TargetAppPerformAction(const TargetAppPerformAction&) = default;
    TargetAppPerformAction& operator=(const TargetAppPerformAction&) = default;

    TargetStatusType getAction() const { return action; }
    void setAction(TargetStatusType value) { action = value; }
    PriorityType getPriority() const { return priority; }
    void setPriority(PriorityType value) { priority = value; }
    const std::string& getCanonicalName() const { return canonicalName; }
    void setCanonicalName(const std::string& value) { canonicalName = value; }
    bool isActionRead() const { return actionRead; }
    bool isPriorityRead() const { return priorityRead; }
    bool isCanonicalNameRead() const { return canonicalNameRead; }

    char* serialize() override;
    /// False for a text that is not an object; every key is optional.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A link for a target application to open. Wire name "deepLink".
class ORVU_EXPORT DeepLink : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeDeepLink;

    std::string targetId;  ///< Identifies the target (TargetApp::targetId); left out when empty.
    std::string url;       ///< The link to open.

    DeepLink();
    ~DeepLink() override;
    DeepLink(const DeepLink&) = default;
    DeepLink& operator=(const DeepLink&) = default;

    const std::string& getTargetId() const { return targetId; }
    void setTargetId(const std::string& value) { targetId = value; }
    const std::string& getUrl() const { return url; }
    void setUrl(const std::string& value) { url = value; }

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
