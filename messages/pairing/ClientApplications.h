#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class ClientApplication;
class ClientApplicationList;
class RevokeToken;
class ServiceBindTokens;
class ServiceBindTokensList;
class ServiceBoundTokenList;

void write(JsonWriter& json, ClientApplication& message);
void read(JsonReader& json, ClientApplication& message);

void write(JsonWriter& json, ClientApplicationList& message);
void read(JsonReader& json, ClientApplicationList& message);

void write(JsonWriter& json, ServiceBindTokens& message);
void read(JsonReader& json, ServiceBindTokens& message);

void write(JsonWriter& json, ServiceBindTokensList& message);
void read(JsonReader& json, ServiceBindTokensList& message);

void write(JsonWriter& json, ServiceBoundTokenList& message);
void read(JsonReader& json, ServiceBoundTokenList& message);

void write(JsonWriter& json, RevokeToken& message);
void read(JsonReader& json, RevokeToken& message);

}  // namespace Orvu
