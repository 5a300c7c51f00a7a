#include "support/SampleFields.h"

namespace OrvuTests {

using namespace Orvu;

void fill(PairMobileAppScreen& screen)
{
    screen.pairingEnabled = true;
}

void fill(ConfirmationScreen& screen)
{
    screen.displayName = "Celular da Ana";
    screen.confirmed = screen.canceled = screen.dispose = screen.success = true;
}

void fill(QrCodeScreen& screen)
{
    screen.displayName = "Celular da Ana";
    screen.qrCodeData = "http://192.0.2.1:44642/dtv/authorize";
    screen.dispose = screen.success = true;
}

void fill(PinScreen& screen)
{
    screen.displayName = "Celular da Ana";
    screen.pin = "4711";
    screen.dispose = screen.success = true;
}

void fill(ScreenItem& item)
{
    item.type = "menu";
    item.enabled = item.focused = item.visible = true;
    item.checked = "true";
    auto* const label = new ScreenItem;
    label->type = "label";
    label->content = "Parear um celular?";
    item.addItem(label);
}

void fill(ScreenDescription& description)
{
    description.addItem(filled<ScreenItem>());
}

void fill(ClientApplication& app)
{
    app.clientId = "celular-ana";
    app.displayName = "Celular da Ana";
    app.copy = 1;
    app.pairingState = 2;
    app.authorized = 1;
    app.bornTime = 1795291200;
    app.refreshToken = "b1946ac9";
}

void fill(ClientApplicationList& list)
{
    list.addApp(filled<ClientApplication>());
    list.addAppIdToDeletion("celular-antigo");
}

void fill(ServiceBindTokens& tokens)
{
    fill(*tokens.service);
    tokens.addToken("591785b7");
}

void fill(ServiceBindTokensList& list)
{
    list.addService(filled<ServiceBindTokens>());
    auto* const byLocator = filled<ServiceBindTokens>();
    byLocator->fullService = false;
    list.addService(byLocator);
}

void fill(ServiceBoundTokenList& list)
{
    list.token = "591785b7";
    list.addService(filled<Service>());
}

void fill(RevokeToken& revoke)
{
    revoke.token = "591785b7";
    revoke.serviceContextId = "1.2.01";
}

void fill(TargetAppFilter& filter)
{
    filter.scheme = "https";
    filter.host = "example.com";
    filter.path = "/filmes";
}

void fill(TargetApp& target)
{
    target.targetId = "filmes";
    target.displayName = "Filmes";
    target.canonicalName = "com.example.filmes";
    target.addFilter(filled<TargetAppFilter>());
    target.running = true;
    target.priority = PriorityTypeBackground;
    target.writeCanonicalName = target.writeRunningState = true;
}

void fill(TargetAppList& list)
{
    list.targetId = "filmes";
    list.addTargetApp(filled<TargetApp>());
}

void fill(TargetAppAction& action)
{
    action.targetId = "filmes";
    action.action = TargetStatusTypeStart;
    action.priority = PriorityTypeForeground;
}

void fill(TargetAppPerformAction& action)
{
    action.action = TargetStatusTypeStop;
    action.priority = PriorityTypeBackground;
    action.canonicalName = "com.example.filmes";
}

void fill(DeepLink& link)
{
    link.targetId = "filmes";
    link.url = "https://example.com/filmes/7";
}

}  // namespace OrvuTests
