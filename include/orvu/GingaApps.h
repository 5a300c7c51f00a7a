#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"
#include "orvu/Status.h"

namespace Orvu {

/// What an interactive application is written in.
enum GingaAppType : int {
    GingaAppTypeUnknown = 0,     ///< "unknown"
    GingaAppTypeGingaNCL = 1,    ///< "Ginga-NCL"
    GingaAppTypeGingaHTML5 = 2,  ///< "Ginga-HTML5"
};

/// The application control code, as signalled.
enum GingaControlCode : int {
    GingaControlCodeUnknown = 0,          ///< "unknown"
    GingaControlCodeAutostart = 1,        ///< "AUTOSTART"
    GingaControlCodePresent = 2,          ///< "PRESENT"
    GingaControlCodeStoredAutostart = 3,  ///< "STORED_AUTOSTART"
    GingaControlCodeStoredPresent = 4,    ///< "STORED_PRESENT"
    GingaControlCodeStoredRemove = 5,     ///< "STORED_REMOVE"
    GingaControlCodeDestroy = 6,          ///< "DESTROY"
    GingaControlCodeKill = 7,             ///< "KILL"
};

/// The life state of an interactive application.
enum GingaState : int {
    GingaStateUnknown = 0,   ///< "unknown"
    GingaStateRunning = 1,   ///< "running"
    GingaStateStored = 2,    ///< "stored"
    GingaStateUnloaded = 3,  ///< "unloaded"
    GingaStateLoading = 4,   ///< "loading"
    GingaStateLoaded = 5,    ///< "loaded"
};

/// One interactive application of a service. Wire name "gingaApp"; also the element of a GingaAppList.
class ORVU_EXPORT RestGingaApp : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeGingaApp;

    using GingaAppType = Orvu::GingaAppType;          ///< The same, by the name of the class.
    using GingaControlCode = Orvu::GingaControlCode;  ///< The same, by the name of the class.
    using GingaState = Orvu::GingaState;              ///< The same, by the name of the class.

    std::string serviceContextId;                            ///< Locator of the service that signals the application.
    std::string appid;                                       ///< Identifies the application.
    std::string name;                                        ///< Name for people, UTF-8, as broadcast.
    GingaAppType type = GingaAppTypeUnknown;                 ///< What it is written in.
    GingaControlCode controlCode = GingaControlCodeUnknown;  ///< application_control_code, as signalled.
    GingaState state = GingaStateUnknown;                    ///< What the middleware is doing with it.
    std::string entryPoint;  ///< Where the application starts, such as "index.html"; never checked here.

    RestGingaApp();
    ~RestGingaApp() override;
    RestGingaApp(const RestGingaApp&) = default;
    RestGingaApp& operator=(const RestGingaApp&) = default;

    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* typeToString(GingaAppType value);
    /// The value of a word, compared exactly; unknown for any other text.
    static GingaAppType stringToType(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* controlCodeToString(GingaControlCode value);
    /// The value of a word, compared exactly; unknown for any other text.
    static GingaControlCode stringToControlCode(std::string word);
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* stateToString(GingaState value);
    /// The value of a word, compared exactly; unknown for any other text.
    static GingaState stringToState(std::string word);

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The interactive applications of a service. Wire name "gingaAppList".
class ORVU_EXPORT GingaAppList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeGingaAppList;

    std::string serviceContextId;     ///< Locator of the service.
    std::vector<RestGingaApp*> apps;  ///< Owned; deleted with the list.

    GingaAppList();
    ~GingaAppList() override;
    GingaAppList(const GingaAppList&) = delete;
    GingaAppList& operator=(const GingaAppList&) = delete;

    /// Appends `app` and takes it; null is ignored.
    void addGingaApp(RestGingaApp* app);

    /// Always with "HEADER". Switches the header flag of every application off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the applications under "apps", which is required; those that cannot be read are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Starts or stops one interactive application. Wire name "gingaAppAction".
class ORVU_EXPORT GingaAppAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeGingaAppAction;

    std::string appid;                      ///< RestGingaApp::appid of the application.
    StatusType action = StatusTypeUnknown;  ///< Start or stop.

    GingaAppAction();
    ~GingaAppAction() override;
    GingaAppAction(const GingaAppAction&) = default;
    GingaAppAction& operator=(const GingaAppAction&) = default;

    /// Whether the action is start or stop; otherwise `code` becomes 3.
    bool checkArguments(unsigned char& code);

    char* serialize() override;
    /// "action" is required and must be "start" or "stop"; another word is stored all the same.
    bool deserialize(const char* text) override;
    /// The same; `error` becomes 1 for a text that is null or not JSON, 2 without an "action" or when it is not a
    /// string, 3 for another action.
    bool deserialize(const char* text, unsigned char& error) override;
};

}  // namespace Orvu
