#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"
#include "orvu/Services.h"

namespace Orvu {

/// A paired companion application. Wire name "clientApplication"; also the element of a ClientApplicationList.
class ORVU_EXPORT ClientApplication : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeClientApplication;

    std::string clientId;     ///< Identifies the client; any text, never checked here.
    std::string displayName;  ///< Name shown to the user.
    int copy = 0;             ///< Which copy of the application it is; the applications agree on the numbers.
    int pairingState = 0;     ///< The applications agree on what each number means.
    int authorized = 0;       ///< 1 when the client is authorized, otherwise 0; a number on the wire, too.
    int bornTime;  ///< When it was paired, in seconds since 1970-01-01 00:00 UTC. Default: the time of construction.
    std::string refreshToken;  ///< The client's refresh token; any text, never checked here.

    ClientApplication();
    ~ClientApplication() override;
    /// Copies every field, `bornTime` too; the copy's header flag is set.
    ClientApplication(const ClientApplication& other) = default;
    ClientApplication& operator=(const ClientApplication& other) = default;

    const std::string& getClientId() const { return clientId; }
    void setClientId(const std::string& value) { clientId = value; }
    const std::string& getDisplayName() const { return displayName; }
    void setDisplayName(const std::string& value) { displayName = value; }
    int getCopy() const { return copy; }
    void setCopy(int value) { copy = value; }
    int getPairingState() const { return pairingState; }
    void setPairingState(int value) { pairingState = value; }
    int getAuthorized() const { return authorized; }
    void setAuthorized(int value) { authorized = value; }
    int getBornTime() const { return bornTime; }
    void setBornTime(int value) { bornTime = value; }
    const std::string& getRefreshToken() const { return refreshToken; }
    void setRefreshToken(const std::string& value) { refreshToken = value; }

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The registry of paired applications. Wire name "clientApplicationList".
class ORVU_EXPORT ClientApplicationList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeClientApplicationList;

    std::vector<ClientApplication*> apps;  ///< Owned; deleted with the list.
    std::vector<std::string> deletionIds;  ///< `clientId` of each client to delete. Travels as "deletionItens".

    ClientApplicationList();
    ~ClientApplicationList() override;
    ClientApplicationList(const ClientApplicationList&) = delete;
    ClientApplicationList& operator=(const ClientApplicationList&) = delete;

    /// Appends `app` and takes it; null is ignored.
    void addApp(ClientApplication* app);
    /// Appends the id of a client to be deleted; null is ignored.
    void addAppIdToDeletion(const char* id);

    /// Always with "HEADER". Switches the header flag of every application off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the applications under "clientApplicationList", which is required; those that cannot be read are left
    /// out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The bind tokens granted for one service. Wire name "serviceBindTokens"; also the element of a ServiceBindTokensList.
class ORVU_EXPORT ServiceBindTokens : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceBindTokens;

    Service* service = nullptr;           ///< Owned; made with the message.
    std::vector<std::string> bindTokens;  ///< In order. addToken() leaves out empty texts and duplicates.
    bool fullService = true;  ///< Whether the whole service is written, or only its locator. Does not travel itself.

    ServiceBindTokens();
    ~ServiceBindTokens() override;
    /// Copies the service, the tokens and `fullService`; the copy's header flag is set.
    ServiceBindTokens(const ServiceBindTokens& other);
    ServiceBindTokens& operator=(const ServiceBindTokens&) = delete;

    /// Appends `token` unless it is empty or held already.
    void addToken(std::string token);
    /// A copy, which the caller deletes; its header flag is set. Null when out of memory.
    ServiceBindTokens* clone();
    bool isFullService() const { return fullService; }
    void setFullService(bool value) { fullService = value; }

    /// Always with "HEADER". Switches the header flag of the service off, for good: see serializeHeader(true).
    char* serialize() override;
    /// "serviceContextId" counts where "service" is absent. Tokens are appended.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The bind tokens granted, service by service. Wire name "serviceBindTokensList".
class ORVU_EXPORT ServiceBindTokensList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceBindTokensList;

    std::string reservedText;                  ///< Does not travel.
    bool reservedFlag = true;                  ///< Does not travel.
    std::vector<ServiceBindTokens*> services;  ///< Owned; deleted with the list.

    ServiceBindTokensList();
    ~ServiceBindTokensList() override;
    ServiceBindTokensList(const ServiceBindTokensList&) = delete;
    ServiceBindTokensList& operator=(const ServiceBindTokensList&) = delete;

    /// Appends `service` and takes it; null is ignored.
    void addService(ServiceBindTokens* service);

    /// Always with "HEADER". Switches the header flag of every element off, for good.
    char* serialize() override;
    /// Appends what is under "boundServices"; what cannot be read is left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The services bound to one token. Wire name "ServiceBoundTokenList", with a capital S.
class ORVU_EXPORT ServiceBoundTokenList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeServiceBoundTokenList;

    std::string token;                    ///< The bind token; any text, left out when empty.
    std::vector<Service*> boundServices;  ///< Owned; deleted with the list.

    ServiceBoundTokenList();
    ~ServiceBoundTokenList() override;
    ServiceBoundTokenList(const ServiceBoundTokenList&) = delete;
    ServiceBoundTokenList& operator=(const ServiceBoundTokenList&) = delete;

    const std::string& getToken() const { return token; }
    void setToken(const std::string& value) { token = value; }

    /// Appends `service` and takes it; null is ignored.
    void addService(Service* service);

    /// Always with "HEADER". Switches the header flag of every service off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the services under "boundServices", which is required; the token stays without it.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// Takes a bind token back. Wire name "revokeToken".
class ORVU_EXPORT RevokeToken : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeRevokeToken;

    std::string token;             ///< The bind token that is taken back.
    std::string serviceContextId;  ///< Locator of the service (see ServiceContext); never checked here.

    RevokeToken();
    ~RevokeToken() override;
    RevokeToken(const RevokeToken&) = default;
    RevokeToken& operator=(const RevokeToken&) = default;

    const std::string& getToken() const { return token; }
    void setToken(const std::string& value) { token = value; }
    const std::string& getServiceContextId() const { return serviceContextId; }
    void setServiceContextId(const std::string& value) { serviceContextId = value; }

    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
