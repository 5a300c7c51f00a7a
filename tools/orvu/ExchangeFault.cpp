#include "ExchangeFault.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "JsonTrees.h"
#include "orvu/Explanation.h"

namespace OrvuTool {
namespace {

using Orvu::ExchangeReport;

constexpr std::size_t kLongestExcerpt = 120;
constexpr const char* kLongestText = "64 MiB";

/// What the server did, or what the system says of it.
std::string reasonOf(const ExchangeReport& report)
{
    if (report.errorNumber == 0) return "the server closed the connection";
    if (report.errorNumber == ETIMEDOUT) return "nothing happened for 5 s";
    return std::strerror(report.errorNumber);
}

/// The beginning of the text, safe to print.
std::string excerptOf(const std::string& text)
{
    std::size_t size = std::min(text.size(), kLongestExcerpt);
    while (size > 0 && size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80)
        --size;  // a character stays whole
    const std::string more = size < text.size() ? " and " + std::to_string(text.size() - size) + " bytes more" : "";
    return quoted(text.substr(0, size).c_str()) + more;
}

std::string whatCame(const ExchangeReport& report)
{
    const std::string& text = *report.receivedText;
    return text.empty() ? "" : "; what came: " + excerptOf(text);
}

std::string faultOfResolving(const ExchangeReport& report, const std::string& host)
{
    return report.errorNumber == EAFNOSUPPORT ? host + ": IPv4 only" : "cannot resolve " + host;
}

std::string faultOfSending(const ExchangeReport& report)
{
    if (!report.mayHaveArrived) return "the request was not sent: " + reasonOf(report);
    return "only " + std::to_string(report.sentBytes) + " bytes of the request were sent: " + reasonOf(report);
}

/// A connection that ends with the request unread is reset: that is a close as well.
std::string faultOfWaiting(const ExchangeReport& report)
{
    if (report.errorNumber == ETIMEDOUT) return "no answer within 5 s";
    if (report.errorNumber == 0 || report.errorNumber == ECONNRESET)
        return "closed without an answer: nothing listens to requests here?";
    return "no answer: " + reasonOf(report);
}

std::string faultOfCut(const ExchangeReport& report)
{
    const std::string came = report.announcedBytes == 0 ? std::to_string(report.receivedBytes) + " of the first 4"
                                                        : std::to_string(report.receivedText->size()) + " of " +
                                                              std::to_string(report.announcedBytes);
    return "answered, but cut: " + came + " bytes came (" + reasonOf(report) + ")" + whatCame(report);
}

std::string faultOfLength(const ExchangeReport& report)
{
    return "answered, but too long: " + std::to_string(report.announcedBytes) + " bytes are announced, the most is " +
           kLongestText + whatCame(report);
}

/// Why no message could be read from an answer.
std::string faultOfText(const std::string& text)
{
    if (text.empty()) return "it has no text";
    const Orvu::Explanation explanation = Orvu::explain(text.c_str());
    return explanation.isRead ? "no message can be made from it" : toString(explanation.findings.front());
}

std::string faultOfAnswer(const ExchangeReport& report)
{
    return "answered, but not understood: " + faultOfText(*report.receivedText) + whatCame(report);
}

}  // namespace

bool hasNoServer(const ExchangeReport& report)
{
    return report.phase >= Orvu::ExchangePhaseNoPeer && report.phase <= Orvu::ExchangePhaseNotConnected;
}

std::string faultOfExchange(const ExchangeReport& report, const std::string& host, int port)
{
    if (report.phase != Orvu::ExchangePhaseAnswered && report.errorNumber == ENOMEM) return "out of memory";
    switch (report.phase) {
        case Orvu::ExchangePhaseNothingToSend:
            return "nothing to send: the request has no text";
        case Orvu::ExchangePhaseNoPeer:
            return "no host is named";
        case Orvu::ExchangePhaseNotResolved:
            return faultOfResolving(report, host);
        case Orvu::ExchangePhaseNotConnected:
            return "cannot connect to " + host + ":" + std::to_string(port) + ": " + reasonOf(report);
        case Orvu::ExchangePhaseNotSent:
            return faultOfSending(report);
        case Orvu::ExchangePhaseNoAnswer:
            return faultOfWaiting(report);
        case Orvu::ExchangePhaseAnswerCut:
            return faultOfCut(report);
        case Orvu::ExchangePhaseAnswerTooLong:
            return faultOfLength(report);
        case Orvu::ExchangePhaseAnswerNotUnderstood:
            return faultOfAnswer(report);
        case Orvu::ExchangePhaseAnswered:
            break;
    }
    return "";
}

}  // namespace OrvuTool
