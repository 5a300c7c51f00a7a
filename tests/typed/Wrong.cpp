// Programs that are wrong, each under its macro. With NOTHING_WRONG it compiles.
#include "orvu/Typed.h"

using namespace Orvu;

/// An application's own class that looks as much like one of the library's as it can.
struct Own : Service {
    static constexpr DataType kDataType = DataTypeCurrentService;

    char* serialize() override { return nullptr; }
    bool deserialize(const char*) override { return true; }
    using Serializable::deserialize;
};

void use(Receiver& receiver, Client& tv, Publisher& publisher, Listener& listener, Request<Service>& request)
{
#if defined NOTHING_WRONG
    receiver.on([](const Service&) { return SuccessResponse(); });
    tv.send(ServiceSelection());
    publisher.push(Own());
    listener.on([](const Service&) {});
    listener.on([](const PushedMessage&) {});
    listener.on([](const ListenerStatus&) {});
    request.answer(SuccessResponse());
#elif defined HANDLER_OF_ANY_TYPE
    receiver.on([](const auto&) { return SuccessResponse(); });
#elif defined HANDLER_OF_NOTHING
    receiver.on([] { return SuccessResponse(); });
#elif defined HANDLER_OF_A_COPY
    receiver.on([](Service) { return SuccessResponse(); });
#elif defined HANDLER_OF_A_MUTABLE_MESSAGE
    receiver.on([](Service&) { return SuccessResponse(); });
#elif defined HANDLER_OF_NO_MESSAGE
    receiver.on([](const int&) { return SuccessResponse(); });
#elif defined HANDLER_OF_ANY_MESSAGE
    receiver.on([](const Serializable&) { return SuccessResponse(); });
#elif defined HANDLER_OF_AN_OWN_CLASS
    receiver.on([](const Own&) { return SuccessResponse(); });
#elif defined HANDLER_OF_AN_OWN_CLASS_THAT_OVERRIDES_NOTHING
    struct Plain : Service {};
    receiver.on([](const Plain&) { return SuccessResponse(); });
#elif defined HANDLER_OF_AN_OWN_REQUEST
    receiver.on([](Request<Own>) {});
#elif defined HANDLER_OF_AN_OWN_TABLE
    struct Table : BinaryData {};
    receiver.on<DataTypeBinaryNIT>([](const Table&) { return SuccessResponse(); });
#elif defined HANDLER_OF_A_CLASS_WITHOUT_A_TYPE
    receiver.on([](const NCLDocument&) { return SuccessResponse(); });
#elif defined HANDLER_OF_A_BORROWED_REQUEST
    receiver.on([](const Request<Service>&) {});
#elif defined NOT_A_HANDLER
    receiver.on(7);
#elif defined HANDLER_WITHOUT_AN_ANSWER
    receiver.on([](const Service&) {});
#elif defined HANDLER_THAT_RETURNS_A_POINTER
    receiver.on([](const Service&) { return static_cast<Service*>(nullptr); });
#elif defined HANDLER_THAT_RETURNS_TWICE
    receiver.on([](Request<Service>) { return SuccessResponse(); });
#elif defined HANDLER_OF_SEVERAL_TYPES
    receiver.on([](const BinaryData&) { return SuccessResponse(); });
#elif defined HANDLER_OF_ANOTHER_TYPE
    receiver.on<DataTypeBinaryNIT>([](const Service&) { return SuccessResponse(); });
#elif defined ANSWER_THAT_CANNOT_BE_COPIED
    receiver.on([](const Service&) -> Answer {
        ServiceList list;
        return list;
    });
#elif defined ANSWER_OF_NO_MESSAGE
    receiver.on([](const Service&) -> Answer { return 7; });
#elif defined REQUEST_ANSWERED_WITH_NO_MESSAGE
    request.answer(true);
#elif defined ASKED_FOR_ANY_MESSAGE
    tv.ask<Serializable>();
#elif defined ASKED_FOR_NO_MESSAGE
    tv.ask<int>();
#elif defined ASKED_FOR_AN_OWN_CLASS
    tv.ask<Own>();
#elif defined SENT_FOR_AN_OWN_CLASS
    tv.send<Own>(Service());
#elif defined COMPARED_WITH_AN_OWN_CLASS
    tv.ask<Service>().reason().is<Own>();
#elif defined ASKED_FOR_SEVERAL_TYPES
    tv.ask<BinaryData>();
#elif defined ASKED_BY_NUMBER
    tv.ask<DataTypeServiceList>();
#elif defined SENT_A_CONSTANT_LIST
    const ServiceList list;
    tv.send(list);
#elif defined SENT_A_POINTER
    Service service;
    tv.send(&service);
#elif defined PUSHED_A_NUMBER
    publisher.push(7);
#elif defined LISTENED_TO_ANY_TYPE
    listener.on([](const auto&) {});
#elif defined LISTENED_TO_A_TEXT
    listener.on([](const char*) {});
#elif defined LISTENED_TO_A_COPY
    listener.on([](Service) {});
#elif defined LISTENED_TO_A_MUTABLE_STATUS
    listener.on([](ListenerStatus&) {});
#elif defined LISTENED_TO_REQUESTS
    listener.on([](Request<Service>) {});
#elif defined LISTENED_TO_AN_OWN_CLASS
    listener.on([](const Own&) {});
#elif defined LISTENED_TO_SEVERAL_TYPES
    listener.on([](const BinaryData&) {});
#elif defined LISTENED_TO_ANOTHER_TYPE
    listener.on<DataTypeBinaryNIT>([](const Service&) {});
#elif defined LISTENED_AND_ANSWERED
    listener.on([](const Service&) { return SuccessResponse(); });
#elif defined MADE_A_BUFFER
    BinaryData table(DataTypeBinaryNIT);
    make(table.buffer);
#endif
    static_cast<void>(receiver);
    static_cast<void>(tv);
    static_cast<void>(publisher);
    static_cast<void>(listener);
    static_cast<void>(request);
}
