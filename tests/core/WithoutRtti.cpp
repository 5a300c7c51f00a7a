#include "core/WithoutRtti.h"

#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

class ForeignService : public Service {
public:
    explicit ForeignService(std::string text) : text_(std::move(text)) {}
    char* serialize() override { return textOfAnApplication(text_); }

private:
    std::string text_;
};

class Listener {
public:
    virtual ~Listener() = default;
    virtual void notify() {}
};

class ListeningService : public Listener, public Service {
public:
    char* serialize() override { return textOfAnApplication(R"("listening")"); }
};

class ForeignMessage : public Serializable {
public:
    ForeignMessage() : Serializable(DataTypeKeyset) {}
    char* serialize() override { return textOfAnApplication(R"({"own": 1})"); }
    bool deserialize(const char* text) override { return text && text[0] == '{'; }
    using Serializable::deserialize;
};

}  // namespace

std::unique_ptr<Service> plainServiceWithoutRtti()
{
    return std::make_unique<Service>();
}

std::unique_ptr<Service> serviceWithoutRttiSaying(const std::string& text)
{
    return std::make_unique<ForeignService>(text);
}

std::unique_ptr<Service> secondBaseWithoutRtti()
{
    return std::make_unique<ListeningService>();
}

std::unique_ptr<Serializable> ownMessageWithoutRtti()
{
    return std::make_unique<ForeignMessage>();
}

}  // namespace OrvuTests
