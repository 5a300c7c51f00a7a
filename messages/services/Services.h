#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class Service;
class ServiceList;
class ServiceSelection;
class ServiceTime;

void write(JsonWriter& json, Service& service);
void read(JsonReader& json, Service& service);

void write(JsonWriter& json, ServiceList& list);
void read(JsonReader& json, ServiceList& list);

void write(JsonWriter& json, ServiceSelection& selection);
void read(JsonReader& json, ServiceSelection& selection);

void write(JsonWriter& json, ServiceTime& time);
void read(JsonReader& json, ServiceTime& time);

}  // namespace Orvu
